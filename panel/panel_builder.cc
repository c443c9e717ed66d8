#include "panel/panel_builder.h"

#include <cstdio>

#include "engine/interface.h"
#include "panel/input_panel.h"
#include "panel/output_panel.h"
#include "support/diagnostics.h"

namespace {

enum class ItemKind { kBool, kInt, kReal, kEnum };

// The window's rule: a named value is shown only as a choice among the
// constants declared with its type; anything else is refused.
ItemKind item_kind(const Port& port) {
  switch (port.kind) {
    case PortKind::kBool:
      return ItemKind::kBool;
    case PortKind::kInt:
      return ItemKind::kInt;
    case PortKind::kReal:
      return ItemKind::kReal;
    case PortKind::kNamed:
      if (port.declared && !port.constants.empty()) return ItemKind::kEnum;
      break;
  }
  std::fprintf(stderr, "Sorry, type \"%s\" not implemented\n", port.type_name);
  end_process(1);
}

}  // namespace

void build_panels(SimProgram& program, InputPanel& inputs, OutputPanel& outputs) {
  const ProgramInterface described = describe_interface(program);
  for (const Port& port : described.inputs) {
    switch (item_kind(port)) {
      case ItemKind::kBool:
        inputs.add_bool(port.name, port.value);
        break;
      case ItemKind::kInt:
        inputs.add_int(port.name, port.value);
        break;
      case ItemKind::kReal:
        inputs.add_real(port.name, port.value);
        break;
      case ItemKind::kEnum:
        std::fprintf(stderr, "Warning, external type \"%s\" interpreted as enumerate\n",
                     port.type_name);
        // The item keeps the texts themselves, not this array.
        inputs.add_enum(port.name, static_cast<int>(port.constants.size()), port.constants.data(),
                        port.value);
        break;
    }
  }
  for (const Port& port : described.outputs) {
    switch (item_kind(port)) {
      case ItemKind::kBool:
        outputs.add_bool(port.name, port.value);
        break;
      case ItemKind::kInt:
        outputs.add_int(port.name, port.value);
        break;
      case ItemKind::kReal:
        outputs.add_real(port.name, port.value);
        break;
      case ItemKind::kEnum:
        outputs.add_enum(port.name, port.value);
        break;
    }
  }
}
