#include "panel/input_panel.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>

#include <string>

#include "panel/button_item.h"
#include "panel/dialog_item.h"
#include "panel/select_item.h"
#include "panel/scrolling.h"
#include "panel/switch_button_item.h"
#include "panel/switch_label_item.h"
#include "panel/text_buffer.h"
#include "panel/widget_resources.h"
#include "panel/window_manager.h"

namespace {

// Both eleven characters, so the button keeps its width across modes.
const char kAutoStepLabel[] = " Auto Step ";
const char kComposeLabel[] = "  Compose  ";

constexpr Dimension kMinWidth = 300;

}  // namespace

InputPanel::InputPanel(StepTrigger* window, Widget top_level, const char* node_name)
    : window_(window) {
  std::string shell_name = std::string(node_name) + "-inputs";
  shell_ = XtCreatePopupShell(shell_name.c_str(), topLevelShellWidgetClass, top_level, nullptr, 0);
  place_from_resource(shell_, "inputsGeometry");
  form_ = XtCreateManagedWidget("InputsForm", formWidgetClass, shell_, nullptr, 0);
  items_.add([this] {
    mode_button_ = items_.push(new SwitchLabelItem("Chmod", form_, nullptr, kAutoStepLabel,
                                                   kComposeLabel, on_mode_pressed, this));
    hide_border(mode_button_->widget);
  });
}

void InputPanel::add_bool(const char* name, EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(
        new SwitchButtonItem("BoolItem", form_, items_.tail(), name, on_input_changed, this));
    item->bound_int = &value->i;
  });
}

void InputPanel::add_int(const char* name, EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(new DialogItem("IntItem", form_, items_.tail(),
                                            format_text("%s (int)", name), "0", on_input_changed,
                                            this));
    item->bound_int = &value->i;
  });
}

void InputPanel::add_real(const char* name, EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(new DialogItem("FloatItem", form_, items_.tail(),
                                            format_text("%s (double)", name), "0.0",
                                            on_input_changed, this));
    item->bound_double = &value->d;
  });
}

void InputPanel::add_enum(const char* name, int count, const char* const* choices,
                          EvalValue* value) {
  items_.add([this, name, count, choices, value] {
    auto* item = items_.push(new SelectItem("EnumItem", form_, items_.tail(), name, count,
                                            choices, on_input_changed, this));
    item->bound_text = &value->s;
  });
}

void InputPanel::finish() {
  items_.add([this] {
    auto* step_button =
        items_.push(new ButtonItem("Step", form_, items_.tail(), "STEP", on_step_pressed, this));
    hide_border(step_button->widget);
    items_.tail()->fit_width(kMinWidth);
  });
  if (Widget viewport = viewport_if_too_tall(shell_, form_)) {
    form_ = XtCreateManagedWidget("InputsForm", formWidgetClass, viewport, nullptr, 0);
    items_.remake();
  }
}

const char* InputPanel::check() {
  return get_all(items_.tail());
}

void InputPanel::reset() {
  // Leaving Compose mode first un-presses every bool button.
  bool was_composing = compose_ != 0;
  if (was_composing) toggle_mode();
  reset_all(items_.tail());
  if (was_composing) toggle_mode();
}

void InputPanel::show_step_number(int number) {
  if (number == shown_step_number_) return;
  shown_step_number_ = number;
  const char* title =
      number > 0 ? format_text("%s (step %d)", XtName(shell_), number) : XtName(shell_);
  // The shell copies the title.
  set_resource(shell_, XtNtitle, reinterpret_cast<XtArgVal>(title));
}

void InputPanel::on_input_changed(Widget, XtPointer panel, XtPointer) {
  auto* self = static_cast<InputPanel*>(panel);
  if (self->compose_ == 0) self->window_->step();
}

void InputPanel::on_mode_pressed(Widget, XtPointer panel, XtPointer) {
  static_cast<InputPanel*>(panel)->toggle_mode();
}

void InputPanel::on_step_pressed(Widget, XtPointer panel, XtPointer) {
  static_cast<InputPanel*>(panel)->window_->step();
}

void InputPanel::toggle_mode() {
  compose_ = 1 - compose_;
  set_resource(mode_button_->widget, XtNlabel,
               reinterpret_cast<XtArgVal>(compose_ ? kComposeLabel : kAutoStepLabel));
  switch_all(items_.tail());
}
