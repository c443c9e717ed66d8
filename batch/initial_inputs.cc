#include "batch/initial_inputs.h"

#include "engine/offered_ports.h"

InitialInputs::InitialInputs(SimProgram& program) {
  ProgramInterface described = describe_interface(program);
  check_offered_ports(described);
  for (const Port& port : described.inputs) {
    switch (port.kind) {
      case PortKind::kBool:
      case PortKind::kInt:
        port.value->i = 0;
        break;
      case PortKind::kReal:
        port.value->d = 0.0;
        break;
      case PortKind::kNamed:
        // The offered ports have at least one constant.
        port.value->s = port.constants.front();
        break;
    }
  }
}
