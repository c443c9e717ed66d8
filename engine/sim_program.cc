#include "engine/sim_program.h"

#include <malloc.h>

#include <cstdio>

#include "support/diagnostics.h"
#include "support/phase_clock.h"

namespace {

// A program that runs shows no dump of its normal form: it goes as soon as
// the partition has read it, which lowers the load's peak.
LoadOptions to_run(LoadOptions options) {
  options.keep_normal_form = false;
  return options;
}

}  // namespace

SimProgram::SimProgram(const char* path, SymbolTable* table, const LoadOptions& options)
    : PNetInterface(path, table, to_run(options)) {
  // A file of declarations alone is a valid program, but nothing to run.
  if (net->node_name == 0) {
    std::fprintf(stderr, "No node to simulate in '%s'\n", path);
    end_process(1);
  }
  begin_phase("build");
  output_types_.resize(n_outputs);
  for (int i = 0; i < n_outputs; ++i) {
    const IdentInfo* info = net->ident_info(output_names[i]);
    output_types_[i] = info && info->type ? info->type : net->type(output_nodes[i]);
  }
  if (build_eval(*this) != 0) end_process(1);
  // The items stand for the final nodes from now on; a million of them
  // would weigh as much as the items while the schedule is derived.
  net->release_final_nodes();
  for (std::vector<Exp*>* nodes : {&output_nodes, &local_nodes, &assert_nodes}) {
    std::vector<Exp*>().swap(*nodes);
  }
  schedule_.emplace(derive_step_code(*this));
  // The schedule computes every item from now on: the front ends need only
  // the items they write and read. What the load freed lies in the middle
  // of the heap, which the allocator would keep for later allocations that
  // a running program does not make; it goes back to the system.
  if (!options.keep_items) {
    std::vector<EvalItem*>().swap(memories);
    items_.release_unkept();
    malloc_trim(0);
  }
  end_phase();
}

void SimProgram::step_by_items() {
  if (items_.released()) {
    internal_error("file 'sim_program':\nSimProgram::step_by_items : the items were released\n");
  }
  by_items_ = true;
}

void SimProgram::begin_step() {
  ++step_counter;
  if (!by_items_) schedule_->begin_step();
}

void SimProgram::compute_assertion(size_t i) {
  if (by_items_) {
    assert_items[i]->ensure(step_counter);
  } else {
    schedule_->sample(i);
  }
}

void SimProgram::compute_output(size_t i) {
  if (by_items_) {
    output_items[i]->ensure(step_counter);
  } else {
    schedule_->sample(assert_items.size() + i);
  }
}

void SimProgram::end_step() {
  if (!by_items_) {
    schedule_->advance();
    return;
  }
  for (auto m = memories.rbegin(); m != memories.rend(); ++m) (*m)->compute_next(step_counter);
  for (auto m = memories.rbegin(); m != memories.rend(); ++m) (*m)->rewrite();
}

void SimProgram::reset_eval() {
  if (by_items_) {
    for (EvalItem* item : assert_items) item->reset_walk();
    for (EvalItem* item : output_items) item->reset_walk();
  } else {
    schedule_->reset();
  }
  step_counter = 0;
}
