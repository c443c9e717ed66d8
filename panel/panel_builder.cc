#include "panel/panel_builder.h"

#include <cstdio>
#include <vector>

#include "engine/sim_program.h"
#include "panel/input_panel.h"
#include "panel/output_panel.h"
#include "support/diagnostics.h"

namespace {

enum class ItemKind { kBool, kInt, kReal, kEnum };

// The item kind for a variable of `type`; refuses any other type.
ItemKind item_kind(const Net& net, const QvType* type) {
  if (type == net.bool_type) return ItemKind::kBool;
  if (type == net.int_type) return ItemKind::kInt;
  if (type == net.real_type) return ItemKind::kReal;
  if (type->number != 0 && type->consts) return ItemKind::kEnum;
  std::fprintf(stderr, "Sorry, type \"%s\" not implemented\n",
               type->name ? net.strings->text(type->name) : "tuple");
  end_process(1);
}

// The interned texts of the type's constants: the values the engine
// compares by pointer.
std::vector<const char*> choices_of(const Net& net, const QvType* type) {
  std::vector<const char*> choices;
  for (const IndexList* c = type->consts; c; c = c->next) {
    choices.push_back(net.strings->text(c->value));
  }
  return choices;
}

}  // namespace

void build_panels(SimProgram& program, InputPanel& inputs, OutputPanel& outputs) {
  Net& net = *program.net;
  for (int i = 0; i < program.n_inputs; i++) {
    QvType* type = net.type(program.input_nodes[i]);
    const char* name = net.strings->text(program.input_names[i]);
    EvalValue* value = &program.input_items[i]->value;
    switch (item_kind(net, type)) {
      case ItemKind::kBool:
        inputs.add_bool(name, value);
        break;
      case ItemKind::kInt:
        inputs.add_int(name, value);
        break;
      case ItemKind::kReal:
        inputs.add_real(name, value);
        break;
      case ItemKind::kEnum: {
        std::fprintf(stderr, "Warning, external type \"%s\" interpreted as enumerate\n",
                     net.strings->text(type->name));
        // The item keeps the texts themselves, not this array.
        std::vector<const char*> choices = choices_of(net, type);
        inputs.add_enum(name, static_cast<int>(choices.size()), choices.data(), value);
        break;
      }
    }
  }
  for (int i = 0; i < program.n_outputs; i++) {
    const char* name = net.strings->text(program.output_names[i]);
    const EvalValue* value = &program.output_items[i]->value;
    switch (item_kind(net, net.type(program.output_nodes[i]))) {
      case ItemKind::kBool:
        outputs.add_bool(name, value);
        break;
      case ItemKind::kInt:
        outputs.add_int(name, value);
        break;
      case ItemKind::kReal:
        outputs.add_real(name, value);
        break;
      case ItemKind::kEnum:
        outputs.add_enum(name, value);
        break;
    }
  }
}
