// A button that flips between two labels on every press: the input panel's
// mode button.
#pragma once

#include "panel/form_item.h"

class SwitchLabelItem final : public FormItem {
 public:
  SwitchLabelItem(const char* name, Widget parent, FormItem* above, const char* label_off,
                  const char* label_on, XtCallbackProc callback, XtPointer client_data);

  /// Writes the state (0 or 1) to `bound_int`, when bound.
  const char* get() override;
  /// Back to off, without calling the callback.
  void reset() override;

  bool state() const { return state_; }

  int* bound_int = nullptr;

 private:
  static void on_press(Widget, XtPointer self, XtPointer);
  void toggle();

  const char* label_off_;
  const char* label_on_;
  bool state_ = false;
};
