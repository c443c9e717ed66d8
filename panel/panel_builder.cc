#include "panel/panel_builder.h"

#include "engine/interface.h"
#include "engine/offered_ports.h"
#include "panel/input_panel.h"
#include "panel/output_panel.h"

void build_panels(SimProgram& program, InputPanel& inputs, OutputPanel& outputs) {
  const ProgramInterface described = describe_interface(program);
  check_offered_ports(described);
  for (const Port& port : described.inputs) {
    switch (port.kind) {
      case PortKind::kBool:
        inputs.add_bool(port.name, port.value);
        break;
      case PortKind::kInt:
        inputs.add_int(port.name, port.value);
        break;
      case PortKind::kReal:
        inputs.add_real(port.name, port.value);
        break;
      case PortKind::kNamed:
        // The item keeps the texts themselves, not this array.
        inputs.add_enum(port.name, static_cast<int>(port.constants.size()), port.constants.data(),
                        port.value);
        break;
    }
  }
  for (const Port& port : described.outputs) {
    switch (port.kind) {
      case PortKind::kBool:
        outputs.add_bool(port.name, port.value);
        break;
      case PortKind::kInt:
        outputs.add_int(port.name, port.value);
        break;
      case PortKind::kReal:
        outputs.add_real(port.name, port.value);
        break;
      case PortKind::kNamed:
        outputs.add_enum(port.name, port.value);
        break;
    }
  }
}
