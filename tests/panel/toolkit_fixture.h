// One toolkit connection per test program, on the display the launcher
// provides; each test builds its items in a Form of its own window.
#pragma once

// GoogleTest first: the X headers define macros such as None and Bool.
#include <gtest/gtest.h>

#include <X11/Intrinsic.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/common/x_screen.h"

class ToolkitTest : public ::testing::Test {
 protected:
  void SetUp() override;

  /// Maps the test's window and handles every event that results.
  void show();
  /// Lets the server and the toolkit catch up with everything sent so far.
  void settle();
  /// Real pointer and key events through XTest, each handled before the
  /// call returns.
  void move_to(Widget widget);
  void press();
  void release();
  void key(const char* keysym);
  /// The colour of one pixel of the widget's window as it is on screen.
  Pixel pixel_at(Widget widget, int x, int y);
  static Dimension width_of(Widget widget);
  static std::string label_of(Widget widget);

  /// Items live as long as their widgets: for the whole test program.
  template <class Item, class... Args>
  static Item* make(Args&&... args) {
    Item* item = new Item(std::forward<Args>(args)...);
    kept_items->push_back(item);
    return item;
  }

  /// Never destroyed, so the items stay reachable until the very end.
  static std::vector<void*>* kept_items;
  static XtAppContext app;
  static Widget top_level;
  XScreen screen;
  Widget shell = nullptr;
  Widget form = nullptr;
};
