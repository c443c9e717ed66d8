// An int, real or enumerated output: a label "title : value".
#pragma once

#include "panel/form_item.h"

class ValueItem final : public FormItem {
 public:
  ValueItem(const char* name, Widget parent, FormItem* above, const char* title,
            const char* initial_text);

  /// Formats the first bound variable into the label; with none bound the
  /// label stays as it is.
  int show() override;
  /// Back to the title and the initial text.
  void reset() override;

  const int* bound_int = nullptr;
  const double* bound_double = nullptr;
  const char* const* bound_text = nullptr;

 private:
  void set_label(const char* text);

  const char* title_;
  const char* initial_text_;
};
