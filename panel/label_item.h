// A fixed text.
#pragma once

#include "panel/form_item.h"

class LabelItem final : public FormItem {
 public:
  /// Without `keep_border` the border is painted over, so only the text shows.
  LabelItem(const char* name, Widget parent, FormItem* above, const char* label,
            bool keep_border);
};
