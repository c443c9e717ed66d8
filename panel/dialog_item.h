// An int, real or text input: an Athena dialog, a label above a text field.
// A frame shows while the pointer is over the item; Return or the keypad's
// Enter in the field, or a click on the item outside the field, notifies the
// item's callback. The field never takes a line break.
#pragma once

#include <string>

#include "panel/form_item.h"

class DialogItem final : public FormItem {
 public:
  DialogItem(const char* name, Widget parent, FormItem* above, const char* label,
             const char* initial_value, XtCallbackProc callback, XtPointer client_data);

  /// Its key no longer names it.
  ~DialogItem() override;

  /// The dialog's width is that of its children plus its margins.
  Dimension fit_width(Dimension min_width) override;
  /// Reads the field into the bound variable; a number that does not parse
  /// leaves the variable alone and yields a text naming the label, and the
  /// field shows in reverse video until a read of it succeeds.
  const char* get() override;
  /// Back to the initial value text, unmarked.
  void reset() override;

  /// Registers the three actions the items' translations name; once per
  /// application, before any item is made.
  static void add_actions(XtAppContext app);

  bool entered() const { return entered_; }
  bool pressed() const { return pressed_; }

  /// The field's text itself; it stays owned by the widget, which frees it
  /// at the next read of the field.
  const char** bound_text = nullptr;
  int* bound_int = nullptr;
  double* bound_double = nullptr;

 private:
  static void on_crossing(Widget, XtPointer self, XEvent* event, Boolean*);
  static void return_action(Widget, XEvent*, String* params, Cardinal* count);
  static void button_down_action(Widget, XEvent*, String* params, Cardinal* count);
  static void button_up_action(Widget, XEvent*, String* params, Cardinal* count);
  /// The item whose key the action's one parameter names, or null.
  static DialogItem* from_key(String* params, Cardinal* count);

  void enter();
  void leave(const XCrossingEvent& event);
  void draw_frame();
  void notify();
  void mark_unreadable(bool unreadable);

  std::string label_;
  int key_;
  const char* initial_value_;
  bool entered_ = false;
  static constexpr int kFrameThickness = 2;
  GC frame_gc_;
  GC erase_gc_;
  bool pressed_ = false;
  bool unreadable_ = false;
  Widget label_child_;
  Widget value_child_;
  XtCallbackProc callback_;
  XtPointer client_data_;
};
