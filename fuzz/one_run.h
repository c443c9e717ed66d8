// One fuzz input runs the way a whole korvel process runs its program, but
// inside the fuzzer's process, which goes on to millions more: each run
// starts from the state a process starts in, and the ProcessEnd a fatal
// report throws ends that run only. What the run opened or allocated is
// released by the unwinding, as everywhere in korvel.
#pragma once

#include "reader/lexer.h"
#include "reader/parse_actions.h"
#include "support/diagnostics.h"

namespace fuzz {

/// Runs `body`, which ends in a message and a status or returns; either
/// is a normal outcome here.
template <class Body>
void run_as_process(Body body) {
  // The process-wide settings a previous run changed or counted into.
  reset_diagnostics();
  reset_conversions();
  reset_characters_read();
  try {
    body();
  } catch (const ProcessEnd&) {
  }
}

}  // namespace fuzz
