#include "engine/sim_program.h"

#include <cstdlib>

SimProgram::SimProgram(const char* path, SymbolTable* table, int skip_minimise, int bool_opt)
    : PNetInterface(path, table, skip_minimise, bool_opt) {
  if (build_eval(*this) != 0) std::exit(1);
}

EvalItem* SimProgram::own(EvalItem* item) {
  items_.emplace_back(item);
  return item;
}

void SimProgram::end_step() {
  for (auto m = memories.rbegin(); m != memories.rend(); ++m) (*m)->compute_next(step_counter);
  for (auto m = memories.rbegin(); m != memories.rend(); ++m) (*m)->rewrite();
}

void SimProgram::reset_eval() {
  for (EvalItem* item : assert_items) item->reset_walk();
  for (EvalItem* item : output_items) item->reset_walk();
  step_counter = 0;
}
