#include "engine/offered_ports.h"

#include <cstdio>

#include "support/diagnostics.h"

namespace {

bool can_offer(const Port& port) {
  return port.kind != PortKind::kNamed || (port.declared && !port.constants.empty());
}

void refuse_unless_offered(const Port& port) {
  if (can_offer(port)) return;
  std::fprintf(stderr, "Sorry, type \"%s\" not implemented\n", port.type_name);
  end_process(1);
}

}  // namespace

void check_offered_ports(const ProgramInterface& described) {
  for (const Port& port : described.inputs) {
    refuse_unless_offered(port);
    if (port.kind != PortKind::kNamed) continue;
    std::fprintf(stderr, "Warning, external type \"%s\" interpreted as enumerate\n",
                 port.type_name);
  }
  for (const Port& port : described.outputs) refuse_unless_offered(port);
}
