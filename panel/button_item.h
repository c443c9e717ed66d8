// A button that acts once per click and comes back up: Reset, Quit and
// STEP.
#pragma once

#include "panel/form_item.h"

class ButtonItem final : public FormItem {
 public:
  ButtonItem(const char* name, Widget parent, FormItem* above, const char* label,
             XtCallbackProc callback, XtPointer client_data);

  /// Writes whether the button is set (0 or 1) to `bound_int`, when bound.
  const char* get() override;

  int* bound_int = nullptr;
};
