#include "reader/pnet_interface.h"

#include <cstdint>
#include <cstdio>

#include "reader/parser.h"
#include "support/diagnostics.h"
#include "support/phase_clock.h"

PNetInterface::Record::~Record() {
  delete output_positions;
  delete local_positions;
}

PNetInterface::PNetInterface(const char* path, SymbolTable* table, const LoadOptions& options)
    : record_key(new_pass_key()) {
  if (build(path, table, options) != 0) end_process(1);
}

PNetInterface::~PNetInterface() = default;

int PNetInterface::build(const char* path, SymbolTable* table, const LoadOptions& options) {
  net = std::make_unique<NormNet>(table, options);
  std::vector<EquationPlace> equations;
  begin_first_phase("parse");
  if (QvParse(net.get(), table, path, &equations) != 0) {
    std::fprintf(stderr, "syntax errors...\n");
    return 1;
  }
  check_operand_kinds(*net, path, equations);
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

PNetInterface::Record* PNetInterface::record(const Exp* e) const {
  return reinterpret_cast<Record*>(e->get_mark(record_key));
}

PNetInterface::Record& PNetInterface::record_of(Exp* e) {
  if (Record* r = record(e)) return *r;
  Record& r = records_.emplace_back();
  e->set_mark(record_key, reinterpret_cast<std::intptr_t>(&r));
  return r;
}

void PNetInterface::add_output(Exp* e, int name) {
  Record& r = record_of(e);
  output_nodes[n_outputs] = e;
  output_names[n_outputs] = name;
  ++n_outputs;
  r.output_positions = IndexList::join(new IndexList(n_outputs), r.output_positions);
}

void PNetInterface::add_local(Exp* e, int name) {
  Record& r = record_of(e);
  local_nodes[n_locals] = e;
  local_names[n_locals] = name;
  ++n_locals;
  r.local_positions = IndexList::join(new IndexList(n_locals), r.local_positions);
  if (e->ident == 0) e->ident = name;
}

void PNetInterface::add_assert(Exp* e) {
  Record& r = record_of(e);
  assert_nodes[n_asserts] = e;
  ++n_asserts;
  r.assert_no = n_asserts;
}
