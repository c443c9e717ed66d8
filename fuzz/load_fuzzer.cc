// Fuzz target over the whole loading path: lexer, parser, Net,
// normalisation, minimal network and the evaluation graph, as korvel loads
// a program before its window opens.
#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/sim_program.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/one_run.h"
#include "net/net.h"
#include "reader/parser.h"
#include "reader/pnet_interface.h"
#include "support/pty_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const fuzz::FuzzInput input = fuzz::split_input({reinterpret_cast<const char*>(data), size});
  const std::string path = fuzz::scratch_file("program.qv", input.program);
  fuzz::run_as_process([&] {
    SymbolTable table;
    SimProgram program(path.c_str(), &table, input.load);
  });
  if (!input.print) return 0;
  // The dumps run on what korvel-run's dump modes load: a built program
  // keeps neither the parsed nodes nor the normal form.
  fuzz::run_as_process([&] {
    SymbolTable table;
    Net net(&table);
    if (QvParse(&net, &table, path.c_str()) != 0) return;
    PtyStream out(80);
    net.print_program(out, false);
  });
  fuzz::run_as_process([&] {
    SymbolTable table;
    PNetInterface program(path.c_str(), &table, input.load);
    program.net->print();
    program.net->print_classes();
  });
  return 0;
}
