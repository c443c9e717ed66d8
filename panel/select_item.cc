#include "panel/select_item.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>

#include <algorithm>

#include "panel/label_item.h"
#include "panel/switch_button_item.h"
#include "panel/widget_resources.h"

namespace {

// What the inner Form adds around a child's width: the child's distance
// from the left side, its border on both sides and the Form's own margin
// on the right.
int margin_of(Widget form, Widget child) {
  return get_resource<int>(child, XtNhorizDistance) +
         2 * get_resource<Dimension>(child, XtNborderWidth) +
         get_resource<int>(form, XtNdefaultDistance);
}

}  // namespace

SelectItem::SelectItem(const char* name, Widget parent, FormItem* above, const char* label,
                       int choice_count, const char* const* choices, XtCallbackProc callback,
                       XtPointer client_data)
    : FormItem(parent, above),
      choice_count_(choice_count),
      callback_(callback),
      client_data_(client_data) {
  create_widget(name, formWidgetClass, nullptr);
  // The inner items chain from the title label down through the buttons.
  FormItem* inner_tail = new LabelItem("SelectItemLabel", widget, nullptr, label, false);
  // Filled before any button exists, so the entries never move.
  entries_.reserve(choice_count);
  for (int i = 0; i < choice_count; i++) entries_.push_back({i, choices[i], this});
  for (Entry& entry : entries_) {
    auto* button = new SwitchButtonItem("SelectItemButton", widget, inner_tail, entry.text,
                                        on_choice, &entry);
    button->switch_mode();
    buttons_.push_back(button);
    inner_tail = button;
  }
  if (choice_count > 0) buttons_[0]->reverse();
}

Dimension SelectItem::fit_width(Dimension min_width) {
  WidgetList children = nullptr;
  Cardinal count = 0;
  XtVaGetValues(widget, XtNchildren, &children, XtNnumChildren, &count, nullptr);
  int natural = get_resource<Dimension>(widget, XtNwidth);
  for (Cardinal i = 0; i < count; i++) {
    natural = std::max(natural, get_resource<Dimension>(children[i], XtNwidth) +
                                    margin_of(widget, children[i]));
  }
  Dimension result = std::max(static_cast<Dimension>(std::min(natural, 0xffff)), min_width);
  if (above) result = above->fit_width(result);
  // The Form sizes itself after its children when it is realized, and
  // after their first sizes when its own width is set: only the children's
  // widths are set, which make the Form's the one returned.
  for (Cardinal i = 0; i < count; i++) {
    set_resource(children[i], XtNwidth, std::max(1, result - margin_of(widget, children[i])));
  }
  return result;
}

void SelectItem::on_choice(Widget, XtPointer entry, XtPointer) {
  auto* chosen = static_cast<Entry*>(entry);
  chosen->owner->choose(chosen->index);
}

void SelectItem::choose(int index) {
  // The pressed button has just flipped itself; the old choice flips back,
  // which also keeps a repeated choice shown as chosen.
  buttons_[selected_]->reverse();
  selected_ = index;
  if (callback_) callback_(widget, client_data_, nullptr);
}

const char* SelectItem::get() {
  if (choice_count_ == 0) return nullptr;
  if (bound_text) *bound_text = entries_[selected_].text;
  if (bound_index) *bound_index = selected_;
  return nullptr;
}
