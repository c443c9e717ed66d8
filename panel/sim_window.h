// The simulator's top object once a program is loaded: it starts the X
// toolkit, builds the main window with Reset and Quit and the two panels,
// writes the first trace lines and runs the event loop. Steps and resets
// arrive as callbacks and go to the engine's step cycle.
#pragma once

#include <X11/Intrinsic.h>

#include <memory>

#include "engine/step_cycle.h"
#include "panel/button_item.h"
#include "panel/chrono_window.h"
#include "panel/input_panel.h"
#include "panel/output_panel.h"

class SimProgram;

class SimWindow final : public StepTrigger {
 public:
  /// Builds everything and enters the event loop, which the process leaves
  /// only by exit: status 0 on Quit, 1 on a fatal error during a step or
  /// when the display cannot be opened. A variable of a type the panels
  /// cannot show throws ProcessEnd before the loop starts.
  SimWindow(int argc, char** argv, SimProgram& program);
  SimWindow(const SimWindow&) = delete;
  SimWindow& operator=(const SimWindow&) = delete;

  /// One step; a bad input field aborts it with the reason in the trace.
  void step() override;
  /// Program, panels and step number back to their initial state; the
  /// input panel keeps its mode.
  void reset_run();

 private:
  static void on_reset(Widget, XtPointer window, XtPointer);
  [[noreturn]] static void on_quit(Widget, XtPointer window, XtPointer);

  Widget top_level_;
  XtAppContext app_;
  Widget main_form_;
  std::unique_ptr<ButtonItem> reset_button_;
  std::unique_ptr<ButtonItem> quit_button_;
  std::unique_ptr<InputPanel> input_panel_;
  std::unique_ptr<OutputPanel> output_panel_;
  /// Runs the steps and keeps the step number.
  std::unique_ptr<StepCycle> cycle_;
  /// Null unless the resources ask for the live chronogram.
  std::unique_ptr<ChronoWindow> chrono_;
};
