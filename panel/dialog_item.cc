#include "panel/dialog_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Dialog.h>
#include <X11/Xaw/Form.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "engine/input_text.h"
#include "panel/text_buffer.h"
#include "panel/widget_resources.h"

namespace {

// An item's key in its translations is its position here. A destroyed
// item leaves a null in its place, which the next item made takes, with
// the translations parsed for that key: the toolkit never frees a parsed
// table, so each is parsed once and kept here.
struct KeySlot {
  DialogItem* item;
  XtTranslations field_keys;
  XtTranslations clicks;
};

std::vector<KeySlot>& dialog_items() {
  static std::vector<KeySlot> items;
  return items;
}

int take_key(DialogItem* item) {
  std::vector<KeySlot>& slots = dialog_items();
  for (size_t key = 0; key < slots.size(); key++) {
    if (!slots[key].item) {
      slots[key].item = item;
      return static_cast<int>(key);
    }
  }
  int key = static_cast<int>(slots.size());
  // The field holds one line: the keypad's Enter is Return, the keys that
  // would insert a line break do nothing, and so do those that pop up the
  // text widget's search and insert-file dialogs.
  XtTranslations field_keys = XtParseTranslationTable(format_text(
      "\t\t<Key>Return: ReturnInDialogItem(%d)\n"
      "\t\t:<Key>KP_Enter: ReturnInDialogItem(%d)\n"
      "\t\t<Key>Linefeed: no-op()\n"
      "\t\tCtrl<Key>J: no-op()\n"
      "\t\tCtrl<Key>M: no-op()\n"
      "\t\tCtrl<Key>O: no-op()\n"
      "\t\tCtrl<Key>R: no-op()\n"
      "\t\tCtrl<Key>S: no-op()\n"
      "\t\tMeta<Key>I: no-op()\t",
      key, key));
  XtTranslations clicks =
      XtParseTranslationTable(format_text("\t\t<Btn1Down>: BtnDownInDialogItem(%d)\n"
                                          "\t\t<Btn1Up>:   BtnUpInDialogItem(%d)\t",
                                          key, key));
  slots.push_back({item, field_keys, clicks});
  return key;
}

GC make_gc(Widget widget, Pixel foreground, Pixel background, int line_width) {
  XGCValues values;
  values.foreground = foreground;
  values.background = background;
  values.line_width = line_width;
  values.cap_style = CapProjecting;
  return XtGetGC(widget, GCForeground | GCBackground | GCLineWidth | GCCapStyle, &values);
}

}  // namespace

DialogItem::DialogItem(const char* name, Widget parent, FormItem* above, const char* label,
                       const char* initial_value, XtCallbackProc callback, XtPointer client_data)
    : FormItem(parent, above),
      label_(label),
      initial_value_(initial_value),
      callback_(callback),
      client_data_(client_data) {
  create_widget(name, dialogWidgetClass, label_.c_str());
  set_resource(widget, XtNvalue, reinterpret_cast<XtArgVal>(initial_value));
  label_child_ = XtNameToWidget(widget, "label");
  value_child_ = XtNameToWidget(widget, "value");

  Pixel ink = get_resource<Pixel>(label_child_, XtNforeground);
  Pixel paper = get_resource<Pixel>(widget, XtNbackground);
  frame_gc_ = make_gc(widget, ink, paper, kFrameThickness);
  erase_gc_ = make_gc(widget, paper, ink, kFrameThickness);
  XtAddEventHandler(widget, EnterWindowMask | LeaveWindowMask, False, on_crossing, this);

  key_ = take_key(this);
  XtOverrideTranslations(value_child_, dialog_items()[key_].field_keys);
  XtOverrideTranslations(widget, dialog_items()[key_].clicks);
}

DialogItem::~DialogItem() { dialog_items()[key_].item = nullptr; }

Dimension DialogItem::fit_width(Dimension min_width) {
  int margin = 2 * (get_resource<int>(widget, XtNdefaultDistance) +
                    get_resource<Dimension>(widget, XtNborderWidth));
  int natural = get_resource<Dimension>(label_child_, XtNwidth) + margin;
  Dimension result = static_cast<Dimension>(std::min(natural, 0xffff));
  result = std::max(result, min_width);
  if (above) result = above->fit_width(result);
  XtArgVal inner = std::max(1, result - margin);
  set_resource(label_child_, XtNwidth, inner);
  set_resource(value_child_, XtNwidth, inner);
  return result;
}

const char* DialogItem::get() {
  const char* bad = nullptr;
  const char* text = XawDialogGetValueString(widget);
  if (bound_text) *bound_text = text;
  if (bound_int && !read_int(text, bound_int)) {
    bad = format_text("Bad integer value for '%s'", label_.c_str());
  }
  if (bound_double && !read_real(text, bound_double)) {
    bad = format_text("Bad double value for '%s'", label_.c_str());
  }
  mark_unreadable(bad != nullptr);
  return bad;
}

void DialogItem::reset() {
  set_resource(widget, XtNvalue, reinterpret_cast<XtArgVal>(initial_value_));
  mark_unreadable(false);
}

void DialogItem::mark_unreadable(bool unreadable) {
  if (unreadable == unreadable_) return;
  unreadable_ = unreadable;
  reverse_colours(value_child_);
}

void DialogItem::add_actions(XtAppContext app) {
  static XtActionsRec actions[] = {
      {const_cast<char*>("ReturnInDialogItem"), return_action},
      {const_cast<char*>("BtnDownInDialogItem"), button_down_action},
      {const_cast<char*>("BtnUpInDialogItem"), button_up_action},
  };
  XtAppAddActions(app, actions, XtNumber(actions));
}

DialogItem* DialogItem::from_key(String* params, Cardinal* count) {
  int key;
  if (*count != 1 || std::sscanf(params[0], "%d", &key) != 1) return nullptr;
  if (key < 0 || static_cast<size_t>(key) >= dialog_items().size()) return nullptr;
  return dialog_items()[key].item;
}

void DialogItem::return_action(Widget, XEvent*, String* params, Cardinal* count) {
  if (DialogItem* item = from_key(params, count)) item->notify();
}

void DialogItem::button_down_action(Widget, XEvent*, String* params, Cardinal* count) {
  DialogItem* item = from_key(params, count);
  if (!item) return;
  item->pressed_ = true;
  reverse_colours(item->label_child_);
}

void DialogItem::button_up_action(Widget, XEvent*, String* params, Cardinal* count) {
  DialogItem* item = from_key(params, count);
  if (!item || !item->pressed_) return;
  item->pressed_ = false;
  reverse_colours(item->label_child_);
  item->notify();
}

void DialogItem::on_crossing(Widget, XtPointer self, XEvent* event, Boolean*) {
  auto* item = static_cast<DialogItem*>(self);
  if (event->type == EnterNotify) {
    item->enter();
  } else if (event->type == LeaveNotify) {
    item->leave(event->xcrossing);
  }
}

void DialogItem::enter() {
  if (entered_) return;
  entered_ = true;
  if (XtIsRealized(widget)) draw_frame();
}

void DialogItem::leave(const XCrossingEvent& event) {
  if (!entered_) return;
  int width = get_resource<Dimension>(widget, XtNwidth);
  int height = get_resource<Dimension>(widget, XtNheight);
  // Still inside: the pointer only moved into the label or the field.
  if (event.x >= 0 && event.x <= width && event.y >= 0 && event.y <= height) return;
  entered_ = false;
  if (XtIsRealized(widget)) draw_frame();
  if (pressed_) {
    pressed_ = false;
    reverse_colours(label_child_);
  }
}

void DialogItem::draw_frame() {
  Display* display = XtDisplay(widget);
  Window window = XtWindow(widget);
  unsigned width = get_resource<Dimension>(widget, XtNwidth);
  unsigned height = get_resource<Dimension>(widget, XtNheight);
  XFillRectangle(display, window, entered_ ? frame_gc_ : erase_gc_, 0, 0, width, height);
  if (entered_ && width > 2 * kFrameThickness && height > 2 * kFrameThickness) {
    XFillRectangle(display, window, erase_gc_, kFrameThickness, kFrameThickness,
                   width - 2 * kFrameThickness, height - 2 * kFrameThickness);
  }
  XFlush(display);
}

void DialogItem::notify() {
  if (callback_) callback_(widget, client_data_, nullptr);
}
