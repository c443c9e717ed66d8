#include "net/netctr.h"

#include <cstdint>

#include "net/net.h"
#include "support/diagnostics.h"

namespace {

// Nothing looks nodes up in the table, so any stable number serves as a
// node's identity; the low 32 bits of its address are one.
unsigned identity(const Exp* e) {
  return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(e));
}

}  // namespace

Exp* NetCtr::placeholder() { return net->new_blank(); }

void NetCtr::update(Exp* target, const Exp& filled) {
  if (target->op != ERROR_n) {
    internal_error("file 'netctr':\nbuild_net : NetCtr::update : already updated expression");
  }
  *target = filled;
}

// The kind does not enter the bucket, only its operands, taken by arity.
unsigned NetCtr::bucket(const Exp* node) {
  switch (op_arity(node->op)) {
    case AR_UNARY:
    case AR_PARAM:
      return identity(node->operand(0)) % kBuckets;
    case AR_BINARY:
      return (identity(node->operand(0)) / 4 + identity(node->operand(1)) / 4) % kBuckets;
    case AR_IF:
      return (identity(node->operand(0)) / 16 + identity(node->operand(1)) / 16 +
              identity(node->operand(2)) / 16) %
             kBuckets;
    case AR_NARY: {
      // Long tuples are bucketed by their last sixteen operands only.
      unsigned s = 0;
      for (int i = node->arity() - 1, taken = 0; i >= 0 && taken < 16; --i, ++taken) {
        s = identity(node->operand(i)) / 4 + 4 * s;
      }
      return s % kBuckets;
    }
    case AR_BLANK:
    case AR_LEAF:
    case AR_LINEAR:
      break;
  }
  internal_error("file 'netctr' :\nNetCtr::put_in_hash_tab : unexpected '%s' expression",
                 op_name(node->op));
}

NetCtr::Cell NetCtr::put_in_hash_tab(Exp* node) {
  Cell& head = heads_[bucket(node)];
  head = Cell{head.length + 1, node, head.node};
  return head;
}
