// A bool output: a label lit in reverse video while its value is non-zero.
#pragma once

#include "panel/form_item.h"

class LightItem final : public FormItem {
 public:
  LightItem(const char* name, Widget parent, FormItem* above, const char* label);

  int show() override;
  /// Light off.
  void reset() override;

  bool lit() const;

  const int* bound_value = nullptr;

 private:
  void light(bool on);

  Pixel background_;
  Pixel foreground_;
};
