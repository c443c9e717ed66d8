// The phases of loading a program, timed as they pass. The loading path
// marks each boundary with one call; a front end reads the durations
// afterwards, or watches the phases go by to show progress.
#pragma once

#include <functional>
#include <vector>

struct PhaseTime {
  /// As given to `begin_phase`.
  const char* name;
  double seconds;
};

/// Forgets the phases recorded so far and starts `name`: the first phase
/// of a load, so a process that loads many programs keeps only the last.
void begin_first_phase(const char* name);
/// Ends the phase under way, if any, and starts `name`, a text that lives
/// as long as the process (it is not copied).
void begin_phase(const char* name);
/// Ends the phase under way, if any.
void end_phase();
/// The phases ended since the last `begin_first_phase`, in order.
const std::vector<PhaseTime>& phase_times();

/// Told of each phase as it begins, and with null when a phase ends with
/// no other beginning; an empty function watches nothing.
void watch_phases(std::function<void(const char*)> watcher);
