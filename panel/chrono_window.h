// The live chronogram: a fourth shell, "<node>-chrono", drawing the last
// steps of every input and output with plain Xlib, redrawn after each step,
// marked at resets and scrollable back over the history the window keeps.
// It opens only when the resource Korvel.chronogram is true.
#pragma once

#include <X11/Intrinsic.h>

#include <memory>

#include "engine/step_cycle.h"
#include "history/run_history.h"

/// Steps kept for scrolling back.
constexpr size_t kChronoHistoryTicks = 10000;

class ChronoWindow final : public HistoryListener {
 public:
  /// Null unless the resource asks for the window; otherwise the window,
  /// watching `cycle` from now on.
  static std::unique_ptr<ChronoWindow> open_if_wanted(Widget top_level, const char* node_name,
                                                      SimProgram& program, StepCycle& cycle);
  ChronoWindow(Widget top_level, const char* node_name, SimProgram& program, StepCycle& cycle);
  ChronoWindow(const ChronoWindow&) = delete;
  ChronoWindow& operator=(const ChronoWindow&) = delete;
  ~ChronoWindow() override;

  Widget shell() const { return shell_; }

  void appended(const RunHistory&, size_t) override { follow(); }
  void reset_seen(const RunHistory&) override { follow(); }

 private:
  static void on_expose(Widget, XtPointer window, XEvent* event, Boolean*);
  static void on_scroll(Widget, XtPointer window, XtPointer position);
  static void on_jump(Widget, XtPointer window, XtPointer fraction);

  /// Back to the newest steps, then redrawn.
  void follow();
  void scroll_to(size_t first);
  void draw();
  void draw_row(int y, size_t signal, size_t from, size_t end);
  void update_thumb();

  RunHistory history_;
  Widget shell_;
  Widget canvas_;
  Widget scrollbar_;
  GC gc_ = nullptr;
  /// The first tick shown.
  size_t first_ = 0;
  struct Colours;
  std::unique_ptr<Colours> colours_;
};
