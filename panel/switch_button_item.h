// A bool input. In push mode the button reads as pressed exactly while its
// callback runs; in switch mode every press flips it and it stays.
#pragma once

#include "panel/form_item.h"

class SwitchButtonItem final : public FormItem {
 public:
  SwitchButtonItem(const char* name, Widget parent, FormItem* above, const char* label,
                   XtCallbackProc callback, XtPointer client_data);

  /// Writes whether the button is reversed (0 or 1) to `bound_int`.
  const char* get() override;
  /// Flips between push and switch mode, leaving the button not reversed.
  void switch_mode() override;
  /// Ends not reversed and in push mode.
  void reset() override;

  /// Flips the reverse video and the state it stands for.
  void reverse();
  bool reversed() const { return reversed_; }
  bool in_switch_mode() const { return switch_mode_; }

  int* bound_int = nullptr;

 private:
  static void on_reverse(Widget, XtPointer self, XtPointer);
  static void on_restore(Widget, XtPointer self, XtPointer);

  bool switch_mode_ = false;
  bool reversed_ = false;
};
