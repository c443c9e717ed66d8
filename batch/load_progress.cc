#include "batch/load_progress.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>

#include "support/phase_clock.h"

LoadProgress::LoadProgress() : on_terminal_(isatty(2)) {
  if (!on_terminal_) return;
  // Messages come from every stage of the loader, each writing to stderr
  // itself; a stream of our own in its place sees them all.
  stderr_ = stderr;
  stderr = fopencookie(this, "w", {nullptr, &LoadProgress::write_message, nullptr, nullptr});
  if (stderr) {
    setvbuf(stderr, nullptr, _IONBF, 0);
  } else {
    stderr = stderr_;
  }
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
  std::fprintf(stderr_, "\r%-*s", static_cast<int>(width), text.c_str());
  shown_width_ = width;
}

void LoadProgress::erase() {
  if (shown_width_ > 0) std::fprintf(stderr_, "\r%*s\r", static_cast<int>(shown_width_), "");
  shown_width_ = 0;
}

ssize_t LoadProgress::write_message(void* progress, const char* text, size_t size) {
  LoadProgress& self = *static_cast<LoadProgress*>(progress);
  std::lock_guard lock(self.mutex_);
  self.erase();
  return static_cast<ssize_t>(std::fwrite(text, 1, size, self.stderr_));
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
  erase();
  if (stderr != stderr_) {
    std::fclose(stderr);
    stderr = stderr_;
  }
}
