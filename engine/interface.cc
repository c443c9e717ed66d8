#include "engine/interface.h"

#include "engine/sim_program.h"

namespace {

PortKind port_kind(int value_kind) {
  switch (value_kind) {
    case VK_BOOL:
      return PortKind::kBool;
    case VK_INT:
      return PortKind::kInt;
    case VK_REAL:
      return PortKind::kReal;
    default:
      return PortKind::kNamed;
  }
}

Port describe(Net& net, const QvType* type, int name, EvalItem& item) {
  const SymbolTable& strings = *net.strings;
  Port port{strings.text(name),
            port_kind(item.value_kind),
            type->name ? strings.text(type->name) : "tuple",
            type->number != 0,
            {},
            &item.value};
  for (const IndexList* c = type->consts; c; c = c->next) {
    port.constants.push_back(strings.text(c->value));
  }
  return port;
}

}  // namespace

ProgramInterface describe_interface(SimProgram& program) {
  Net& net = *program.net;
  ProgramInterface described;
  for (int i = 0; i < program.n_inputs; ++i) {
    described.inputs.push_back(
        describe(net, net.type(program.input_nodes[i]), program.input_names[i], *program.input_items[i]));
  }
  for (int i = 0; i < program.n_outputs; ++i) {
    described.outputs.push_back(
        describe(net, program.output_type(i), program.output_names[i], *program.output_items[i]));
  }
  return described;
}
