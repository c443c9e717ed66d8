// The real korvel on the display the launcher provides: its process, its
// three windows and what a user does in them, for every GUI test program.
#pragma once

// GoogleTest before the X headers, whose macros (None, Bool) it would trip on.
#include "tests/common/test_io.h"
// (the line keeps the order)
#include "tests/common/x_screen.h"
// (the line keeps the order)
#include <string>
#include <vector>

#include "tests/gui/child_process.h"

// Generous: a sanitizer build starts slowly on a loaded machine, but every
// wait ends as soon as its condition holds.
constexpr int kTimeoutMs = 30000;

/// A program of tests/gui/programs.
std::string program_path(const char* name);

/// Sets one environment variable for the korvel runs of a test.
class ScopedEnv {
 public:
  ScopedEnv(const char* name, const std::string& value);
  ScopedEnv(const ScopedEnv&) = delete;
  ScopedEnv& operator=(const ScopedEnv&) = delete;
  ~ScopedEnv();

 private:
  const char* name_;
  std::string old_;
  bool had_;
};

struct Finished {
  int status;
  std::string out;
  std::string err;
};

/// korvel-run with `args`, then a temporary file holding `text`.
Finished korvel_run(std::vector<std::string> args, const std::string& text);

class KorvelSession {
 public:
  explicit KorvelSession(const std::string& path) : process_({KORVEL_BINARY, "-v", path}) {}

  /// Waits for the header and the three windows, named after the node.
  void open();

  /// The items of the input window's Form: the mode button, one row per
  /// input, then STEP.
  std::vector<Window> input_items() { return screen.items(inputs); }
  /// The text field of input `input` (an int or real dialog).
  Window field(int input) { return screen.children(input_items().at(1 + input)).at(1); }
  void step() { screen.click(input_items().back()); }
  void mode() { screen.click(input_items().at(0)); }
  void press(int input) { screen.click(input_items().at(1 + input)); }
  /// Clicks choice `choice` of an enumerated input (below its title).
  void choose(int input, int choice) {
    screen.click(screen.children(input_items().at(1 + input)).at(1 + choice));
  }
  void reset() { screen.click(screen.items(main).at(0)); }
  /// Replaces the text of a numeric field; with `ret`, ends it with Return.
  void enter(int input, const std::string& text, bool ret = false);
  /// Waits until the trace holds `count` lines.
  bool wait_lines(size_t count);
  /// Quits and returns the exit status.
  int quit() {
    screen.click(screen.items(main).at(1));
    return wait_end();
  }
  int wait_end() { return process_.wait_end(kTimeoutMs); }

  const std::string& trace() const { return process_.out(); }
  const std::string& errors() const { return process_.err(); }

  XScreen screen;
  Window main = 0, inputs = 0, outputs = 0;

 private:
  ChildProcess process_;
};
