#include "panel/button_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Toggle.h>

#include "panel/widget_resources.h"

namespace {

// Of the two bindings of the press the toolkit keeps the first, set(); the
// toggle's own binding of the release then flips it back and notifies, so
// the button acts once per click and never stays down as a toggle would.
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
