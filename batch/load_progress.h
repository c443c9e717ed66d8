// Progress of a long load on a terminal. Once loading has taken a second,
// the phase under way is shown on standard error, overwritten as phases
// pass and erased when the load ends; nothing is shown when standard error
// is not a terminal, and nothing ever reaches standard output. A message
// written to standard error meanwhile erases the line first, so that it
// starts on a line of its own; the next phase is shown below it.
#pragma once

#include <sys/types.h>

#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

class LoadProgress {
 public:
  /// Starts watching the load phases (support/phase_clock.h).
  LoadProgress();
  LoadProgress(const LoadProgress&) = delete;
  LoadProgress& operator=(const LoadProgress&) = delete;
  /// A load that fails unwinds through here, so the line is erased then.
  ~LoadProgress() { done(); }

  /// Stops watching and erases what was shown.
  void done();

 private:
  void entered(const char* phase);
  void wait_a_second();
  /// Overwrites the line; called with `mutex_` held.
  void show(const char* phase);
  /// Erases the line if it is shown; called with `mutex_` held.
  void erase();
  /// Where standard error's writes go while the line may be shown.
  static ssize_t write_message(void* progress, const char* text, size_t size);

  bool on_terminal_;
  std::mutex mutex_;
  std::condition_variable finished_;
  const char* phase_ = nullptr;
  bool late_ = false;
  bool done_ = false;
  size_t shown_width_ = 0;
  /// The process's own standard error, put back by `done`.
  FILE* stderr_ = nullptr;
  std::thread timer_;
};
