// Drives windows, another client's or the test's own, with real input
// events through XTest, finding widgets by the window tree: a window's
// children, sorted from top to bottom, are the items of an Athena Form in
// the order they were added.
#pragma once

// GoogleTest first: the X headers define macros such as None and Bool.
#include <gtest/gtest.h>

#include <X11/Xlib.h>

#include <string>
#include <vector>

class XScreen {
 public:
  XScreen();
  XScreen(const XScreen&) = delete;
  XScreen& operator=(const XScreen&) = delete;
  ~XScreen();

  /// False when there is no display or it lacks XTest.
  bool ok() const { return display_ != nullptr; }
  /// The test's own connection, for what the methods here do not cover.
  Display* display() const { return display_; }
  /// The viewable top-level window titled `name`; 0 after the timeout.
  Window wait_for_window(const std::string& name, int timeout_ms);
  /// The children of `window`, top to bottom.
  std::vector<Window> children(Window window);
  /// The items of a shell's Form, top to bottom.
  std::vector<Window> items(Window shell) { return children(children(shell).at(0)); }

  /// Button 1 pressed and released at the centre of `window`.
  void click(Window window);
  /// Moves the pointer to the centre of `window`, after raising the
  /// window's top-level above the others; keys then go to it.
  void point_at(Window window);
  /// Moves the pointer to the screen's bottom right corner, off the
  /// windows the tests open, which open at the top left.
  void point_off();
  /// Presses or releases button 1 where the pointer is.
  void button(bool down);
  /// Presses and releases the keys that type `text`.
  void type(const std::string& text);
  /// A key by keysym name, with Control held when `control`.
  void key(const char* keysym, bool control = false);
  /// The colour shown at (x, y) of `window`, as 0xRRGGBB.
  unsigned long colour_at(Window window, int x, int y);

 private:
  void raise_top_level(Window window);
  void key_code(KeySym keysym, bool shift, bool control);

  Display* display_;
};
