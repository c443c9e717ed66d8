#include "panel/label_item.h"

#include <X11/Xaw/Label.h>

#include "panel/widget_resources.h"

LabelItem::LabelItem(const char* name, Widget parent, FormItem* above, const char* label,
                     bool keep_border)
    : FormItem(parent, above) {
  create_widget(name, labelWidgetClass, label);
  if (!keep_border) hide_border(widget);
}
