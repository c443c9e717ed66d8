#include "batch/load_progress.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "support/phase_clock.h"

LoadProgress::LoadProgress() : on_terminal_(isatty(2)) {
  if (!on_terminal_) return;
  watch_phases([this](const char* phase) { entered(phase); });
  timer_ = std::thread([this] { wait_a_second(); });
}

// The main thread, which loads, draws every change after the first; the
// timer draws only the first, since no phase boundary may come for long.
void LoadProgress::entered(const char* phase) {
  if (!phase) return;
  std::lock_guard lock(mutex_);
  phase_ = phase;
  if (late_) show(phase);
}

void LoadProgress::wait_a_second() {
  std::unique_lock lock(mutex_);
  if (finished_.wait_for(lock, std::chrono::seconds(1), [this] { return done_; })) return;
  late_ = true;
  if (phase_) show(phase_);
}

void LoadProgress::show(const char* phase) {
  const std::string text = std::string("loading: ") + phase + " ...";
  // Blanks cover the rest of a longer line shown before.
  const size_t width = std::max(text.size(), shown_width_);
  std::fprintf(stderr, "\r%-*s", static_cast<int>(width), text.c_str());
  std::fflush(stderr);
  shown_width_ = width;
}

void LoadProgress::done() {
  if (!on_terminal_) return;
  on_terminal_ = false;
  watch_phases({});
  {
    std::lock_guard lock(mutex_);
    done_ = true;
  }
  finished_.notify_one();
  timer_.join();
  if (shown_width_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(shown_width_), "");
}
