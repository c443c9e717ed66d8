// Shared by the pieces of the graph builder: choosing an item class by the
// type of a node.
#pragma once

#include <type_traits>

#include "engine/eval_items.h"
#include "engine/item_pool.h"
#include "net/net.h"

enum TypeClass { TC_BOOL, TC_INT, TC_REAL, TC_OTHER };

inline TypeClass type_class(const Net& net, const QvType* t) {
  if (t == net.bool_type) return TC_BOOL;
  if (t == net.int_type) return TC_INT;
  if (t == net.real_type) return TC_REAL;
  return TC_OTHER;
}

/// Makes an item in `pool`; `arg` is the operand count of the classes with
/// more than two and the identifier of the inputs, and the other classes
/// ignore it.
using ItemFactory = EvalItem* (*)(ItemPool& pool, int arg);

/// The classes with more than two operands take room for them from the pool.
template <class C>
EvalItem* make_item(ItemPool& pool, int n) {
  if constexpr (std::is_constructible_v<C, int, EvalItem**>) {
    return pool.make<C>(n, pool.operand_room(n));
  } else if constexpr (std::is_constructible_v<C, EvalItem**>) {
    return pool.make<C>(pool.operand_room(n));
  } else {
    return pool.make<C>();
  }
}

/// One class per type class, in TypeClass order.
struct ClassByType {
  ItemFactory of[4];
  /// The TC_OTHER class is an `_extern` one of its own, over the values of
  /// the type named by the item's extern_type.
  bool extern_class;
};

/// The classes the four value kinds get where the kind is the node's own:
/// inputs, outputs, memories and choices.
template <template <class> class Family>
constexpr ClassByType by_value_kind() {
  return {{make_item<Family<BoolVal>>, make_item<Family<IntVal>>, make_item<Family<RealVal>>,
           make_item<Family<NameVal>>},
          true};
}

/// The classes of a kind whose item comes from the engine's table (EV_INPUT,
/// EV_CLASSES, EV_MEMORY and EV_FIRST in the operator table); null for the
/// others.
const ClassByType* item_classes(OpKind kind);

/// Arguments of a call: the members of a tuple argument, else the argument.
struct CallArgs {
  Exp* const* items;
  int count;
};

/// The item of a call of a supported library function, with `args` set;
/// a call of anything else is refused and ends the process.
EvalItem* make_call_item(Net& net, ItemPool& pool, Exp* e, CallArgs* args);
