// An enumerated input: a title and one button per choice, exactly one of
// them shown chosen. Choosing notifies the item's callback.
#pragma once

#include <vector>

#include "panel/form_item.h"

class SwitchButtonItem;

class SelectItem final : public FormItem {
 public:
  /// The choice texts are kept, not copied: `get` hands out these very
  /// pointers, so equal choices compare equal as pointers.
  SelectItem(const char* name, Widget parent, FormItem* above, const char* label,
             int choice_count, const char* const* choices, XtCallbackProc callback,
             XtPointer client_data);

  /// The title and every button take the width of the item, which is that
  /// of the widest of them plus the Form's margins, or more.
  Dimension fit_width(Dimension min_width) override;
  /// Writes the chosen text and its index to the bindings that are set.
  const char* get() override;

  int selected() const { return selected_; }
  SwitchButtonItem* button(int index) const { return buttons_[index]; }

  const char** bound_text = nullptr;
  int* bound_index = nullptr;

 private:
  struct Entry {
    int index;
    const char* text;
    SelectItem* owner;
  };

  static void on_choice(Widget, XtPointer entry, XtPointer);
  void choose(int index);

  int selected_ = 0;
  int choice_count_;
  std::vector<SwitchButtonItem*> buttons_;
  std::vector<Entry> entries_;
  XtCallbackProc callback_;
  XtPointer client_data_;
};
