#include "panel/form_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>

#include <algorithm>

#include "panel/widget_resources.h"

void FormItem::create_widget(const char* name, WidgetClass widget_class, const char* label) {
  Arg args[2];
  Cardinal n = 0;
  XtSetArg(args[n], XtNfromVert, above ? above->widget : nullptr);
  n++;
  if (label) {
    XtSetArg(args[n], XtNlabel, label);
    n++;
  }
  widget = XtCreateManagedWidget(name, widget_class, parent, args, n);
}

Dimension FormItem::fit_width(Dimension min_width) {
  Dimension result = std::max(get_resource<Dimension>(widget, XtNwidth), min_width);
  if (above) result = above->fit_width(result);
  set_resource(widget, XtNwidth, result);
  return result;
}

const char* get_all(FormItem* tail) {
  for (FormItem* item = tail; item; item = item->above) {
    if (const char* bad = item->get()) return bad;
  }
  return nullptr;
}

int show_all(FormItem* tail) {
  for (FormItem* item = tail; item; item = item->above) {
    if (int result = item->show()) return result;
  }
  return 0;
}

void switch_all(FormItem* tail) {
  for (FormItem* item = tail; item; item = item->above) item->switch_mode();
}

void reset_all(FormItem* tail) {
  for (FormItem* item = tail; item; item = item->above) item->reset();
}
