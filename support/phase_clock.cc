#include "support/phase_clock.h"

#include <chrono>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

std::vector<PhaseTime> ended;
const char* current = nullptr;
Clock::time_point started;
std::function<void(const char*)> watcher;

void close_current() {
  if (!current) return;
  const std::chrono::duration<double> spent = Clock::now() - started;
  ended.push_back(PhaseTime{current, spent.count()});
  current = nullptr;
}

}  // namespace

void begin_first_phase(const char* name) {
  ended.clear();
  current = nullptr;
  begin_phase(name);
}

void begin_phase(const char* name) {
  close_current();
  current = name;
  started = Clock::now();
  if (watcher) watcher(name);
}

void end_phase() {
  if (!current) return;
  close_current();
  if (watcher) watcher(nullptr);
}

const std::vector<PhaseTime>& phase_times() { return ended; }

void watch_phases(std::function<void(const char*)> w) { watcher = std::move(w); }
