#include "panel/widget_resources.h"

#include <X11/StringDefs.h>

void set_resource(Widget widget, const char* name, XtArgVal value) {
  Arg arg;
  XtSetArg(arg, name, value);
  XtSetValues(widget, &arg, 1);
}

void reverse_colours(Widget widget) {
  Pixel foreground = get_resource<Pixel>(widget, XtNforeground);
  Pixel background = get_resource<Pixel>(widget, XtNbackground);
  Arg args[2];
  XtSetArg(args[0], XtNforeground, background);
  XtSetArg(args[1], XtNbackground, foreground);
  XtSetValues(widget, args, 2);
}

void hide_border(Widget widget) {
  set_resource(widget, XtNborderColor, get_resource<Pixel>(widget, XtNbackground));
}
