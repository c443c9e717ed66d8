#include "panel/value_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Label.h>

#include "panel/text_buffer.h"
#include "panel/widget_resources.h"

ValueItem::ValueItem(const char* name, Widget parent, FormItem* above, const char* title,
                     const char* initial_text)
    : FormItem(parent, above), title_(title), initial_text_(initial_text) {
  create_widget(name, labelWidgetClass, format_text("%s : %s", title, initial_text));
}

int ValueItem::show() {
  if (bound_text) {
    // An enumerated output never computed yet holds no name.
    set_label(format_text("%s : %s", title_, *bound_text ? *bound_text : initial_text_));
  } else if (bound_int) {
    set_label(format_text("%s : %d", title_, *bound_int));
  } else if (bound_double) {
    set_label(format_text("%s : %.3f", title_, *bound_double));
  }
  return 0;
}

void ValueItem::reset() { set_label(format_text("%s : %s", title_, initial_text_)); }

void ValueItem::set_label(const char* text) {
  // The label widget copies the text, so the shared buffer is free again.
  set_resource(widget, XtNlabel, reinterpret_cast<XtArgVal>(text));
}
