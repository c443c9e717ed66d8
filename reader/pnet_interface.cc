#include "reader/pnet_interface.h"

#include <cstdio>

#include "reader/parser.h"
#include "support/diagnostics.h"
#include "support/phase_clock.h"

PNetInterface::Record::~Record() {
  delete output_positions;
  delete local_positions;
}

PNetInterface::PNetInterface(const char* path, SymbolTable* table, const LoadOptions& options) {
  if (build(path, table, options) != 0) end_process(1);
}

PNetInterface::~PNetInterface() = default;

int PNetInterface::build(const char* path, SymbolTable* table, const LoadOptions& options) {
  net = std::make_unique<NormNet>(table, options);
  {
    // Where each equation was read matters for the warnings alone.
    std::vector<EquationPlace> equations;
    begin_first_phase("parse");
    if (QvParse(net.get(), table, path, &equations) != 0) {
      std::fprintf(stderr, "syntax errors...\n");
      return 1;
    }
    check_operand_kinds(*net, path, equations);
  }
  net->build();

  input_nodes.assign(net->n_inputs, nullptr);
  input_names.assign(net->n_inputs, 0);
  output_nodes.assign(net->n_outputs, nullptr);
  output_names.assign(net->n_outputs, 0);
  assert_nodes.assign(net->n_asserts, nullptr);
  local_nodes.assign(net->n_locals, nullptr);
  local_names.assign(net->n_locals, 0);

  IndexListIter it(net->inputs);
  for (int name = it.next(); name; name = it.next()) {
    input_nodes[n_inputs] = net->final_exp(name);
    input_names[n_inputs] = name;
    ++n_inputs;
  }
  it.reset(net->outputs);
  for (int name = it.next(); name; name = it.next()) add_output(net->final_exp(name), name);
  it.reset(net->asserts);
  for (int name = it.next(); name; name = it.next()) add_assert(net->final_exp(name));
  it.reset(net->locals);
  for (int name = it.next(); name; name = it.next()) {
    // A local on a slower clock is evaluated unheld; a plain copy of another
    // name or of a constant needs no evaluation of its own.
    Exp* e = net->final_exp(name);
    if (e->op == IF_n && e->operand(2) == net->bottom_exp) e = e->operand(1);
    if (e->arity() == 0) continue;
    add_local(e, name);
  }
  end_phase();
  return 0;
}

std::unique_ptr<PNetInterface::Record> PNetInterface::record(const Exp* e) const {
  auto r = std::make_unique<Record>();
  bool found = false;
  // Positions are 1-based and listed latest first.
  const auto positions = [&](const std::vector<Exp*>& nodes, IndexList** list) {
    for (size_t i = 0; i < nodes.size(); ++i) {
      if (nodes[i] != e) continue;
      *list = IndexList::join(new IndexList(static_cast<int>(i) + 1), *list);
      found = true;
    }
  };
  positions(output_nodes, &r->output_positions);
  positions(local_nodes, &r->local_positions);
  for (size_t i = 0; i < assert_nodes.size(); ++i) {
    if (assert_nodes[i] != e) continue;
    r->assert_no = static_cast<int>(i) + 1;
    found = true;
  }
  return found ? std::move(r) : nullptr;
}

void PNetInterface::add_output(Exp* e, int name) {
  output_nodes[n_outputs] = e;
  output_names[n_outputs] = name;
  ++n_outputs;
}

void PNetInterface::add_local(Exp* e, int name) {
  local_nodes[n_locals] = e;
  local_names[n_locals] = name;
  ++n_locals;
  if (e->ident == 0) e->ident = name;
}

void PNetInterface::add_assert(Exp* e) {
  assert_nodes[n_asserts] = e;
  ++n_asserts;
}
