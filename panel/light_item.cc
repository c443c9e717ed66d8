#include "panel/light_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Label.h>

#include "panel/widget_resources.h"

LightItem::LightItem(const char* name, Widget parent, FormItem* above, const char* label)
    : FormItem(parent, above) {
  create_widget(name, labelWidgetClass, label);
  background_ = get_resource<Pixel>(widget, XtNbackground);
  foreground_ = get_resource<Pixel>(widget, XtNforeground);
}

int LightItem::show() {
  if (bound_value) light(*bound_value != 0);
  return 0;
}

void LightItem::reset() { light(false); }

bool LightItem::lit() const { return get_resource<Pixel>(widget, XtNbackground) != background_; }

void LightItem::light(bool on) {
  Arg args[2];
  XtSetArg(args[0], XtNbackground, on ? foreground_ : background_);
  XtSetArg(args[1], XtNforeground, on ? background_ : foreground_);
  XtSetValues(widget, args, 2);
}
