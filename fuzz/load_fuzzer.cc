// Fuzz target over the whole loading path: lexer, parser, Net,
// normalisation, minimal network and the evaluation graph, as korvel loads
// a program before its window opens. A refused program ends in exit(1),
// which is a normal outcome here.
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/sim_program.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/process_guard.h"
#include "reader/parse_actions.h"
#include "support/diagnostics.h"
#include "support/pty_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzz::FuzzInput input = fuzz::split_input({reinterpret_cast<const char*>(data), size});
  const std::string path = fuzz::scratch_file("program.qv", input.program);
  auto load = [&] {
    reset_conversions();
    SymbolTable table;
    SimProgram program(path.c_str(), &table, input.load);
    if (!input.print) return;
    PtyStream out(80);
    program.net->print_program(out, false);
    program.net->print();
    program.net->print_classes();
  };
  auto guarded = [&] {
    try {
      load();
    } catch (const ProcessEnd&) {
    }
  };
  fuzz::run_guarded(guarded);
  return 0;
}
