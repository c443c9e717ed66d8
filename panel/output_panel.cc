#include "panel/output_panel.h"

#include <X11/Shell.h>
#include <X11/Xaw/Form.h>

#include <string>

#include "panel/light_item.h"
#include "panel/scrolling.h"
#include "panel/value_item.h"
#include "panel/window_manager.h"

namespace {

const char kNoValue[] = "......";

constexpr Dimension kMinWidth = 300;

}  // namespace

OutputPanel::OutputPanel(Widget top_level, const char* node_name) {
  std::string shell_name = std::string(node_name) + "-outputs";
  shell_ = XtCreatePopupShell(shell_name.c_str(), topLevelShellWidgetClass, top_level, nullptr, 0);
  place_from_resource(shell_, "outputsGeometry");
  form_ = XtCreateManagedWidget("OutputsForm", formWidgetClass, shell_, nullptr, 0);
}

void OutputPanel::add_bool(const char* name, const EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(new LightItem("BoolItem", form_, items_.tail(), name));
    item->bound_value = &value->i;
  });
}

void OutputPanel::add_int(const char* name, const EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(new ValueItem("IntItem", form_, items_.tail(), name, kNoValue));
    item->bound_int = &value->i;
  });
}

void OutputPanel::add_real(const char* name, const EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(new ValueItem("FloatItem", form_, items_.tail(), name, kNoValue));
    item->bound_double = &value->d;
  });
}

void OutputPanel::add_enum(const char* name, const EvalValue* value) {
  items_.add([this, name, value] {
    auto* item = items_.push(new ValueItem("EnumItem", form_, items_.tail(), name, kNoValue));
    item->bound_text = &value->s;
  });
}

void OutputPanel::finish() {
  if (!items_.tail()) return;
  items_.tail()->fit_width(kMinWidth);
  if (Widget viewport = viewport_if_too_tall(shell_, form_)) {
    form_ = XtCreateManagedWidget("OutputsForm", formWidgetClass, viewport, nullptr, 0);
    items_.remake();
    items_.tail()->fit_width(kMinWidth);
  }
}

void OutputPanel::update() {
  show_all(items_.tail());
}

void OutputPanel::reset() {
  reset_all(items_.tail());
}
