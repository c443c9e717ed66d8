// A run's history as a Value Change Dump, written as the run goes: one
// scope named after the node with a variable per input and output, and a
// scope "korvel" with the run's own marks (reset, aborted, step number).
// One time unit is one tick of the history.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "history/run_history.h"

class VcdWriter : public HistoryListener {
 public:
  /// Writes the declarations; `out` stays the caller's.
  VcdWriter(FILE* out, const RunHistory& history);

  void appended(const RunHistory& history, size_t tick) override;
  /// The closing time stamp, after a last reset if one is pending.
  void finish(const RunHistory& history);

 private:
  struct Var {
    std::string id;
    /// The last value written, as written, to write changes only.
    std::string last;
  };
  void declare(const char* type, int width, const char* name);
  void change(Var& var, const char* text, size_t size);
  void time_stamp(size_t t);

  FILE* out_;
  std::vector<Var> vars_;
  /// The index of the first companion variable and of the run's marks.
  size_t first_status_ = 0;
  size_t first_mark_ = 0;
};
