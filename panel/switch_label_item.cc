#include "panel/switch_label_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Command.h>

#include "panel/widget_resources.h"

SwitchLabelItem::SwitchLabelItem(const char* name, Widget parent, FormItem* above,
                                 const char* label_off, const char* label_on,
                                 XtCallbackProc callback, XtPointer client_data)
    : FormItem(parent, above), label_off_(label_off), label_on_(label_on) {
  create_widget(name, commandWidgetClass, label_off);
  // The label flips first, so the given callback already sees the new state.
  XtAddCallback(widget, XtNcallback, on_press, this);
  if (callback) XtAddCallback(widget, XtNcallback, callback, client_data);
}

void SwitchLabelItem::on_press(Widget, XtPointer self, XtPointer) {
  static_cast<SwitchLabelItem*>(self)->toggle();
}

void SwitchLabelItem::toggle() {
  state_ = !state_;
  set_resource(widget, XtNlabel, reinterpret_cast<XtArgVal>(state_ ? label_on_ : label_off_));
}

const char* SwitchLabelItem::get() {
  if (bound_int) *bound_int = state_ ? 1 : 0;
  return nullptr;
}

void SwitchLabelItem::reset() {
  if (state_) toggle();
}
