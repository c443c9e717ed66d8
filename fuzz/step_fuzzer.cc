// Fuzz target over korvel-run's batch mode: a program, then its step input
// lines, run through the step cycle with its trace (or checked against the
// lines as a recorded trace).
#include <cstddef>
#include <cstdint>
#include <string>

#include "batch/batch_run.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/one_run.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzz::FuzzInput input = fuzz::split_input({reinterpret_cast<const char*>(data), size});
  const std::string program = fuzz::scratch_file("program.qv", input.program);
  const std::string lines = fuzz::scratch_file("inputs", input.lines);
  BatchOptions options;
  options.program = program.c_str();
  options.inputs = lines.c_str();
  options.check = input.check;
  options.load = input.load;
  fuzz::run_as_process([&] { run_batch(options); });
  return 0;
}
