#include "app/run.h"

#include <cstdio>

#include "engine/sim_program.h"
#include "panel/sim_window.h"
#include "support/diagnostics.h"
#include "support/string_table.h"

namespace {

// Set once and never destroyed: the event loop owns the process until exit.
FILE* input_stream = nullptr;
SymbolTable* symbol_table = nullptr;
SimProgram* program = nullptr;
SimWindow* window = nullptr;

}  // namespace

void run(int argc, char** argv, const char* path) {
  // The stream only proves the file is readable; the parser opens it again.
  input_stream = std::fopen(path, "r");
  if (!input_stream) {
    std::fprintf(stderr, "Can't open file '%s'\n", path);
    end_process(1);
  }
  symbol_table = new SymbolTable();
  program = new SimProgram(path, symbol_table);
  window = new SimWindow(argc, argv, *program);
}
