// The input window: a mode button, one editable item per input of the
// program, and STEP. It turns the user's actions into steps, in Auto Step
// mode (every change steps) or Compose mode (only STEP steps).
#pragma once

#include <X11/Intrinsic.h>


#include "engine/eval_value.h"
#include "engine/step_io.h"
#include "panel/item_stack.h"

class ButtonItem;
class SwitchLabelItem;

/// What the input panel drives: one step of the simulation.
class StepTrigger {
 public:
  virtual void step() = 0;

 protected:
  ~StepTrigger() = default;
};

class InputPanel final : public StepInputs {
 public:
  /// The shell is a pop-up of `top_level` named "<node>-inputs".
  InputPanel(StepTrigger* window, Widget top_level, const char* node_name);

  // Each adds the item for one input below the last one, bound to the
  // value field of the input's evaluation item. Names and choice texts are
  // kept, not copied.
  void add_bool(const char* name, EvalValue* value);
  void add_int(const char* name, EvalValue* value);
  void add_real(const char* name, EvalValue* value);
  void add_enum(const char* name, int count, const char* const* choices, EvalValue* value);
  /// Adds STEP and gives every item one width of at least 300 pixels.
  /// A panel taller than the screen is made again inside a viewport.
  void finish();

  const char* check() override;
  /// Every input back to its initial value; the mode stays.
  void reset() override;

  /// The window's title: the shell's name, followed by " (step N)" once a
  /// step was taken.
  void show_step_number(int number);

  Widget shell() const { return shell_; }
  bool composing() const { return compose_ != 0; }

 private:
  static void on_input_changed(Widget, XtPointer panel, XtPointer);
  static void on_mode_pressed(Widget, XtPointer panel, XtPointer);
  static void on_step_pressed(Widget, XtPointer panel, XtPointer);
  void toggle_mode();

  StepTrigger* window_;
  Widget shell_;
  Widget form_;
  ItemStack items_;
  SwitchLabelItem* mode_button_;
  int compose_ = 0;
  int shown_step_number_ = 0;
};
