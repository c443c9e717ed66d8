// From the final network to the evaluation graph: one item per node,
// shared by every parent, made before its operands so that a path from an
// operand back to the node (through a memory) finds it.
#include <cstdio>
#include <deque>
#include <iterator>
#include <optional>
#include <unordered_map>
#include <vector>

#include "engine/build_support.h"
#include "engine/sim_program.h"
#include "support/diagnostics.h"

namespace {

template <class V>
EvalItem* make_input(ItemPool& pool, int identifier) {
  auto* item = pool.make<InputEI<V>>();
  item->identifier = identifier;
  return item;
}

constexpr ClassByType always(ItemFactory f) {
  return {{f, f, f, f}, false};
}
/// int selects the first class, every other type the second.
constexpr ClassByType int_or_real(ItemFactory i, ItemFactory r) {
  return {{r, i, r, r}, false};
}
/// `o` is the `_extern` class.
constexpr ClassByType each(ItemFactory b, ItemFactory i, ItemFactory r, ItemFactory o) {
  return {{b, i, r, o}, true};
}
constexpr std::nullopt_t kNone = std::nullopt;

/// The item classes of a kind whose item the builder takes from this table
/// (EV_INPUT, EV_CLASSES, EV_MEMORY and EV_FIRST in the operator table).
struct KindClasses {
  OpKind kind;
  std::optional<ClassByType> classes;
};

// ORDER OP: one row per OpKind, in enum order.
constexpr KindClasses kItemClasses[] = {
    {ERROR_n, kNone},
    {CONST_n, kNone},
    {INPUT_n,
     each(make_input<BoolVal>, make_input<IntVal>, make_input<RealVal>, make_input<NameVal>)},
    {QVREF_n, kNone},
    {MODELREF_n, kNone},
    {PRE_n, kNone},
    {CURRENT_n, kNone},
    {NOT_n, always(make_item<NOT_bool_EI>)},
    {UMINUS_n, int_or_real(make_item<UMINUS_int_EI>, make_item<UMINUS_double_EI>)},
    {LAST_n, by_value_kind<BlastEI>()},
    {INIT_n, always(make_item<INIT_bool_EI>)},
    {ARROW_n, kNone},
    {WHEN_n, kNone},
    {AND_n, always(make_item<AND_bool_EI>)},
    {OR_n, always(make_item<OR_bool_EI>)},
    {XOR_n, always(make_item<NE_bool_EI>)},
    {IMPL_n, always(make_item<IMPL_bool_EI>)},
    {EQUAL_n, each(make_item<EQ_bool_EI>, make_item<EQ_int_EI>, make_item<EQ_double_EI>,
                   make_item<EQ_extern_EI>)},
    {NEQ_n, each(make_item<NE_bool_EI>, make_item<NE_int_EI>, make_item<NE_double_EI>,
                 make_item<NE_extern_EI>)},
    {GTE_n, int_or_real(make_item<GE_int_EI>, make_item<GE_double_EI>)},
    {GT_n, int_or_real(make_item<GT_int_EI>, make_item<GT_double_EI>)},
    {LTE_n, int_or_real(make_item<LE_int_EI>, make_item<LE_double_EI>)},
    {LT_n, int_or_real(make_item<LT_int_EI>, make_item<LT_double_EI>)},
    {DIV_n, always(make_item<DIV_int_EI>)},
    {MOD_n, always(make_item<MOD_int_EI>)},
    {MINUS_n, int_or_real(make_item<MINUS_int_EI>, make_item<MINUS_double_EI>)},
    {PLUS_n, int_or_real(make_item<PLUS_int_EI>, make_item<PLUS_double_EI>)},
    {SLASH_n, int_or_real(make_item<DIV_int_EI>, make_item<DIV_double_EI>)},
    {TIMES_n, int_or_real(make_item<TIMES_int_EI>, make_item<TIMES_double_EI>)},
    {POWER_n, kNone},
    {IF_n, by_value_kind<CondEI>()},
    {TUPLE_n, kNone},
    {NOR_n, always(make_item<NOR_bool_EI>)},
    {DIESE_n, always(make_item<DIESE_bool_EI>)},
    {RCL_n, kNone},
    {ICL_n, kNone},
    {PROJ_n, kNone},
    {CALL_n, kNone},
};

static_assert(std::size(kItemClasses) == N_OPKINDS, "kItemClasses: one row per OpKind");

constexpr bool from_table(EvalBuild build) {
  return build == EV_INPUT || build == EV_CLASSES || build == EV_MEMORY || build == EV_FIRST;
}

// The rows agree with the operator table: in enum order, classes exactly
// for the kinds whose item the builder takes from here, and a class of
// their own for other types exactly where it names their type on the item.
static_assert(
    [] {
      for (int k = 0; k < N_OPKINDS; ++k) {
        const KindClasses& row = kItemClasses[k];
        const OpInfo& info = kOpTable[k];
        if (row.kind != k || row.classes.has_value() != from_table(info.build)) return false;
        if (row.classes && row.classes->extern_class != info.extern_other) return false;
      }
      return true;
    }(),
    "kItemClasses disagrees with kOpTable (ORDER OP)");

}  // namespace

const ClassByType* item_classes(OpKind kind) {
  const std::optional<ClassByType>& classes = kItemClasses[kind].classes;
  return classes ? &*classes : nullptr;
}

namespace {

Exp* decider(Exp* e, EvalDecider by) {
  switch (by) {
    case BY_FIRST:
      return e->operand(0);
    case BY_SECOND:
      return e->operand(1);
    case BY_SELF:
      break;
  }
  return e;
}

/// The item made for each node so far. The graph is built from the
/// representatives alone, one per class, so a vector by class number finds
/// theirs (a mark on each of a million nodes would weigh more); the few
/// nodes outside every class (leaves, and equations given to inputs or
/// constants) go by address.
class ItemIndex {
 public:
  explicit ItemIndex(int n_classes) : by_class_(static_cast<size_t>(n_classes) + 1, nullptr) {}

  EvalItem* find(const Exp* e) const {
    if (e->class_no == 0) {
      auto it = unclassed_.find(e);
      return it == unclassed_.end() ? nullptr : it->second;
    }
    return by_class_[checked(e)];
  }
  void add(const Exp* e, EvalItem* item) {
    if (e->class_no == 0) {
      unclassed_.emplace(e, item);
    } else {
      by_class_[checked(e)] = item;
    }
  }

 private:
  size_t checked(const Exp* e) const {
    const auto c = static_cast<size_t>(e->class_no);
    if (c >= by_class_.size()) {
      internal_error("file 'build_eval':\nbuild_item : class %zu beyond the %zu classes\n", c,
                     by_class_.size() - 1);
    }
    return c;
  }

  std::vector<EvalItem*> by_class_;
  std::unordered_map<const Exp*, EvalItem*> unclassed_;
};

/// The value and the clock of a clocked node: normalisation holds a value
/// on a slower clock as `if clock then value else bottom`.
void clock_split(const Net& net, Exp* x, Exp** value, Exp** clock) {
  if (x->op == IF_n && x->operand(2) == net.bottom_exp) {
    *value = x->operand(1);
    *clock = x->operand(0);
  } else {
    *value = x;
    *clock = net.true_exp;
  }
}

/// A node whose item exists, and the operand nodes still to be built into
/// it. A chain of a million equations stacks two million of these.
struct Frame {
  EvalItem* item;
  /// The nodes to build, in order; null for a memory.
  Exp* const* list;
  /// A memory's node, whose value and clock are not its operands but
  /// taken apart from its one operand; null for every other node.
  Exp* memory;
  int count;
  int next;

  Exp* child(const Net& net, int i) const {
    if (list) return list[i];
    Exp* split[2];
    clock_split(net, memory->operand(0), &split[0], &split[1]);
    return split[i];
  }
};

EvalItem* make_constant(Net& net, ItemPool& pool, Exp* e) {
  if (e == net.true_exp) return pool.make<CONST_bool_EI>(1);
  if (e == net.false_exp) return pool.make<CONST_bool_EI>(0);
  const IdentInfo* info = net.ident_info(e->ident);
  switch (info ? info->kind : ID_PREDEF_CONST) {
    case ID_USR_CONST:
    case ID_ENUM_CONST: {
      // Named by itself whatever its declared type: its value would come
      // from outside, and a number or a bool reads it as zero.
      QvType* type = net.type(e);
      EvalItem* item = pool.make<CONST_extern_EI>(net.strings->text(e->ident));
      item->extern_type = type->name;
      return item;
    }
    case ID_INT_LIT:
      return pool.make<CONST_int_EI>(info->value);
    case ID_REAL_LIT:
      return pool.make<CONST_double_EI>(info->real_value);
    default:
      fputs("unexpected constant\n", stderr);
      return nullptr;
  }
}

/// Makes the item of `e` and records it on the node, and tells which nodes
/// its operands are made from; null, after a message, when there is none.
EvalItem* start_item(SimProgram& p, ItemIndex& index, Exp* e, Frame* frame) {
  Net& net = *p.net;
  *frame = Frame{nullptr, e->operands.data(), nullptr, e->arity(), 0};
  EvalItem* item = nullptr;
  const EvalBuild build = op_eval_build(e->op);
  switch (build) {
    case EV_NONE:
      fprintf(stderr, "unexpected operator: %s\n", op_name(e->op));
      return nullptr;
    case EV_CONSTANT:
      item = make_constant(net, p.item_pool(), e);
      break;
    case EV_CALL: {
      CallArgs args{e->operands.data(), e->arity()};
      item = make_call_item(net, p.item_pool(), e, &args);
      frame->list = args.items;
      frame->count = args.count;
      break;
    }
    case EV_INPUT:
    case EV_CLASSES:
    case EV_MEMORY:
    case EV_FIRST: {
      QvType* type = net.type(decider(e, op_eval_decider(e->op)));
      const TypeClass tc = type_class(net, type);
      // The schedule takes the inputs' values from their items at every
      // step, those of locals left without an equation included.
      const ItemPool::Keeping keeping(p.item_pool(), build == EV_INPUT);
      item = item_classes(e->op)->of[tc](p.item_pool(), build == EV_INPUT ? e->ident : e->arity());
      if (op_extern_other(e->op) && tc == TC_OTHER) item->extern_type = type->name;
      if (build == EV_FIRST) p.memories.push_back(item);
      if (build == EV_MEMORY) {
        frame->list = nullptr;
        frame->memory = e;
        frame->count = 2;
      }
      break;
    }
  }
  if (!item) return nullptr;
  if (frame->count != item->n_operands) {
    internal_error("file 'build_eval':\nbuild_item : '%s' node with %d operands\n", op_name(e->op),
                   frame->count);
  }
  frame->item = item;
  index.add(e, item);
  return item;
}

/// The item of a node, built on first request and shared afterwards; null
/// when the node cannot be simulated (the reason is on standard error).
/// Depth first, in operand order, as a recursion over the operands would
/// go, but on an explicit stack: chains of a million equations are built
/// without exhausting the C stack.
EvalItem* build_item(SimProgram& p, ItemIndex& index, Exp* e) {
  if (EvalItem* item = index.find(e)) return item;
  // As deep as the longest chain: a deque grows without copying it.
  std::deque<Frame> stack(1);
  EvalItem* root = start_item(p, index, e, &stack[0]);
  if (!root) return nullptr;
  while (!stack.empty()) {
    Frame& top = stack.back();
    if (top.next == top.count) {
      // A memory joins the list once its operands are built.
      if (top.memory) p.memories.push_back(top.item);
      stack.pop_back();
      continue;
    }
    Exp* child = top.child(*p.net, top.next);
    if (EvalItem* item = index.find(child)) {
      top.item->operands[top.next++] = item;
      continue;
    }
    Frame fresh;
    EvalItem* item = start_item(p, index, child, &fresh);
    if (!item) return nullptr;
    top.item->operands[top.next++] = item;
    stack.push_back(fresh);
  }
  return root;
}

/// Builds the value item and then the clock item of an output or
/// assertion node; false when either cannot be built.
bool build_clocked(SimProgram& p, ItemIndex& index, Exp* e, EvalItem* operands[2]) {
  Exp* value;
  Exp* clock;
  clock_split(*p.net, e, &value, &clock);
  operands[0] = build_item(p, index, value);
  if (!operands[0]) return false;
  operands[1] = build_item(p, index, clock);
  return operands[1] != nullptr;
}

EvalItem* make_output(SimProgram& p, QvType* type, EvalItem* const operands[2]) {
  const TypeClass tc = type_class(*p.net, type);
  // The front ends read it at every step, once the schedule has replaced
  // the other items.
  EvalItem* item;
  {
    const ItemPool::Keeping keeping(p.item_pool());
    item = by_value_kind<OutputEI>().of[tc](p.item_pool(), 2);
  }
  if (tc == TC_OTHER) item->extern_type = type->name;
  item->operands[0] = operands[0];
  item->operands[1] = operands[1];
  return item;
}

}  // namespace

int build_eval(SimProgram& p) {
  NormNet& net = *p.net;
  ItemIndex index(net.n_classes);
  // The front ends write the inputs' items, whatever an equation made of
  // them, and the panels keep their places.
  p.input_items.assign(p.n_inputs, nullptr);
  {
    const ItemPool::Keeping keeping(p.item_pool());
    for (int i = 0; i < p.n_inputs; ++i) {
      p.input_items[i] = build_item(p, index, p.input_nodes[i]);
      if (!p.input_items[i]) return 1;
    }
  }
  p.memories.clear();
  p.output_items.assign(p.n_outputs, nullptr);
  for (int i = 0; i < p.n_outputs; ++i) {
    EvalItem* operands[2];
    if (!build_clocked(p, index, p.output_nodes[i], operands)) return 1;
    p.output_items[i] = make_output(p, p.output_type(i), operands);
  }
  p.assert_items.assign(p.n_asserts, nullptr);
  for (int i = 0; i < p.n_asserts; ++i) {
    EvalItem* operands[2];
    if (!build_clocked(p, index, p.assert_nodes[i], operands)) return 1;
    if (net.type(p.assert_nodes[i]) != net.bool_type) {
      fputs("Assertions must be boolean expressions", stderr);
      return 1;
    }
    p.assert_items[i] = make_output(p, net.bool_type, operands);
  }
  return 0;
}
