// The output window: one display item per output of the program.
#pragma once

#include <X11/Intrinsic.h>


#include "engine/eval_value.h"
#include "engine/step_io.h"
#include "panel/item_stack.h"

class OutputPanel final : public StepOutputs {
 public:
  /// The shell is a pop-up of `top_level` named "<node>-outputs".
  OutputPanel(Widget top_level, const char* node_name);

  // Each adds the item for one output below the last one, showing the value
  // field of the output's evaluation item. Names are kept, not copied.
  void add_bool(const char* name, const EvalValue* value);
  void add_int(const char* name, const EvalValue* value);
  void add_real(const char* name, const EvalValue* value);
  void add_enum(const char* name, const EvalValue* value);
  /// Gives every item one width of at least 300 pixels. A panel taller
  /// than the screen is made again inside a viewport.
  void finish();

  void update() override;
  void reset() override;

  Widget shell() const { return shell_; }

 private:
  Widget shell_;
  Widget form_;
  ItemStack items_;
};
