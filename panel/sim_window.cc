#include "panel/sim_window.h"

#include <X11/Shell.h>
#include <X11/Xaw/Form.h>

#include <cstdlib>

#include "engine/sim_program.h"
#include "panel/button_item.h"
#include "panel/dialog_item.h"
#include "panel/panel_builder.h"
#include "panel/window_manager.h"
#include "support/diagnostics.h"

namespace {

constexpr char kApplicationClass[] = "Korvel";

// Steps and resets run inside the toolkit's C frames, which no exception
// may cross: a fatal report during one ends the process right here.
template <class Action>
void at_callback_boundary(Action action) {
  try {
    action();
  } catch (const ProcessEnd& end) {
    std::exit(end.status);
  }
}

}  // namespace

SimWindow::SimWindow(int argc, char** argv, SimProgram& program) {
  // The toolkit takes out the options it knows; a display that cannot be
  // opened is reported by the toolkit, which ends the process.
  top_level_ =
      XtAppInitialize(&app_, kApplicationClass, nullptr, 0, &argc, argv, nullptr, nullptr, 0);
  DialogItem::add_actions(app_);
  main_form_ = XtCreateManagedWidget("MainForm", formWidgetClass, top_level_, nullptr, 0);
  reset_button_ =
      std::make_unique<ButtonItem>("Reset", main_form_, nullptr, "reset", on_reset, this);
  quit_button_ =
      std::make_unique<ButtonItem>("Quit", main_form_, reset_button_.get(), "QUIT", on_quit, this);
  XtRealizeWidget(top_level_);
  close_through_window_manager(top_level_, on_quit, this);

  const char* node_name = program.net->strings->text(program.net->node_name);
  input_panel_ = std::make_unique<InputPanel>(this, top_level_, node_name);
  output_panel_ = std::make_unique<OutputPanel>(top_level_, node_name);
  build_panels(program, *input_panel_, *output_panel_);
  input_panel_->finish();
  close_through_window_manager(input_panel_->shell(), on_quit, this);
  XtPopup(input_panel_->shell(), XtGrabNone);
  output_panel_->finish();
  close_through_window_manager(output_panel_->shell(), on_quit, this);
  XtPopup(output_panel_->shell(), XtGrabNone);

  cycle_ = std::make_unique<StepCycle>(program, *input_panel_, *output_panel_);
  cycle_->trace_header();
  chrono_ = ChronoWindow::open_if_wanted(top_level_, node_name, program, *cycle_);
  if (chrono_) close_through_window_manager(chrono_->shell(), on_quit, this);
  XtAppMainLoop(app_);
}

void SimWindow::step() {
  at_callback_boundary([this] { cycle_->step(); });
  input_panel_->show_step_number(cycle_->step_number());
}

void SimWindow::reset_run() {
  at_callback_boundary([this] { cycle_->reset_run(); });
  input_panel_->show_step_number(cycle_->step_number());
}

void SimWindow::on_reset(Widget, XtPointer window, XtPointer) {
  static_cast<SimWindow*>(window)->reset_run();
}

void SimWindow::on_quit(Widget, XtPointer window, XtPointer) {
  XtDestroyWidget(static_cast<SimWindow*>(window)->top_level_);
  std::exit(0);
}
