#include "engine/sim_program.h"

#include <cstdio>

#include "support/diagnostics.h"

SimProgram::SimProgram(const char* path, SymbolTable* table, const LoadOptions& options)
    : PNetInterface(path, table, options) {
  // A file of declarations alone is a valid program, but nothing to run.
  if (net->node_name == 0) {
    std::fprintf(stderr, "No node to simulate in '%s'\n", path);
    end_process(1);
  }
  // Only the final nodes are built; the normal form behind them would
  // double the memory a large program takes.
  net->release_normal_form();
  if (build_eval(*this) != 0) end_process(1);
}

EvalItem* SimProgram::own(EvalItem* item) {
  items_.emplace_back(item);
  return item;
}

QvType* SimProgram::output_type(int i) const {
  const IdentInfo* info = net->ident_info(output_names[i]);
  return info && info->type ? info->type : net->type(output_nodes[i]);
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
