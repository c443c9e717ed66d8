#include "panel/button_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Toggle.h>

#include "panel/widget_resources.h"

namespace {

// A toggle that notifies on the press and unsets itself, so it never stays
// down the way a plain toggle would.
const char kPressTranslations[] =
    "\t\t<EnterWindow>:\thighlight()\n"
    "\t\t<LeaveWindow>:\treset()\n"
    "\t\t<Btn1Down>:\t\tset()\n"
    "\t\t<Btn1Down>:\t\tnotify() unset()\t";

}  // namespace

ButtonItem::ButtonItem(const char* name, Widget parent, FormItem* above, const char* label,
                       XtCallbackProc callback, XtPointer client_data)
    : FormItem(parent, above) {
  create_widget(name, toggleWidgetClass, label);
  XtOverrideTranslations(widget, XtParseTranslationTable(kPressTranslations));
  if (callback) XtAddCallback(widget, XtNcallback, callback, client_data);
}

const char* ButtonItem::get() {
  if (bound_int) *bound_int = get_resource<Boolean>(widget, XtNstate) ? 1 : 0;
  return nullptr;
}
