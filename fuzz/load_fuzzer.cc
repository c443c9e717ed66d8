// Fuzz target over the whole loading path: lexer, parser, Net,
// normalisation, minimal network and the evaluation graph, as korvel loads
// a program before its window opens.
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/sim_program.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/one_run.h"
#include "support/pty_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzz::FuzzInput input = fuzz::split_input({reinterpret_cast<const char*>(data), size});
  const std::string path = fuzz::scratch_file("program.qv", input.program);
  fuzz::run_as_process([&] {
    SymbolTable table;
    SimProgram program(path.c_str(), &table, input.load);
    if (!input.print) return;
    PtyStream out(80);
    program.net->print_program(out, false);
    program.net->print();
    program.net->print_classes();
  });
  return 0;
}
