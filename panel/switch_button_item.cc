#include "panel/switch_button_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Command.h>

#include "panel/widget_resources.h"

SwitchButtonItem::SwitchButtonItem(const char* name, Widget parent, FormItem* above,
                                   const char* label, XtCallbackProc callback,
                                   XtPointer client_data)
    : FormItem(parent, above) {
  create_widget(name, commandWidgetClass, label);
  // The given callback runs between the two, so in push mode it sees the
  // button pressed, and the press leaves no trace once it is over.
  XtAddCallback(widget, XtNcallback, on_reverse, this);
  if (callback) XtAddCallback(widget, XtNcallback, callback, client_data);
  XtAddCallback(widget, XtNcallback, on_restore, this);
}

void SwitchButtonItem::on_reverse(Widget, XtPointer self, XtPointer) {
  static_cast<SwitchButtonItem*>(self)->reverse();
}

void SwitchButtonItem::on_restore(Widget, XtPointer self, XtPointer) {
  auto* item = static_cast<SwitchButtonItem*>(self);
  if (!item->switch_mode_) item->reverse();
}

void SwitchButtonItem::reverse() {
  reverse_colours(widget);
  reversed_ = !reversed_;
}

const char* SwitchButtonItem::get() {
  if (bound_int) *bound_int = reversed_ ? 1 : 0;
  return nullptr;
}

void SwitchButtonItem::switch_mode() {
  switch_mode_ = !switch_mode_;
  if (reversed_) reverse();
}

void SwitchButtonItem::reset() {
  if (reversed_) reverse();
  if (switch_mode_) switch_mode();
}
