// Progress of a long load on a terminal. Once loading has taken a second,
// the phase under way is shown on standard error, overwritten as phases
// pass and erased when the load ends; nothing is shown when standard error
// is not a terminal, and nothing ever reaches standard output.
#pragma once

#include <condition_variable>
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

  bool on_terminal_;
  std::mutex mutex_;
  std::condition_variable finished_;
  const char* phase_ = nullptr;
  bool late_ = false;
  bool done_ = false;
  size_t shown_width_ = 0;
  std::thread timer_;
};
