#include "norm/net_norm.h"
#include "support/diagnostics.h"

namespace net_norm {

// No memory of translated nodes is kept: a shared subexpression is
// translated once per occurrence and the copies are merged again by the
// minimal network. References are leaves, so each definition is
// translated only by the normalisation of its own name.
// ORDER OP: the temporal kinds and calls; every other kind is copied over
// the normal forms of its operands.
Exp* Ximpl(NormNet& net, Exp* e) {
  switch (e->op) {
    case CONST_n:
    case INPUT_n:
    case QVREF_n:
      return e;
    case PRE_n:
      return net.make(LAST_n, net.held(e->operand(0)));
    case CURRENT_n: {
      Exp* x = e->operand(0);
      Exp* present = net.activation(net.clock(x));
      Exp* now = Ximpl(net, x);
      Exp* before = net.make(LAST_n, net.held(x));
      return net.make(IF_n, present, now, before);
    }
    case ARROW_n: {
      Exp* rest = Ximpl(net, e->operand(1));
      Exp* first = Ximpl(net, e->operand(0));
      return net.make(IF_n, net.first_instant(net.clock(e)), first, rest);
    }
    case WHEN_n:
      // The sampling clock lives in the activation conditions.
      return Ximpl(net, e->operand(0));
    case CALL_n: {
      if (e->arity() != 1) internal_error("net_norm::Ximpl: bad CALL_n arity\n");
      // A tuple argument on a slower clock is held, so the call sees bottom
      // members rather than stale ones where the clock is absent.
      Exp* x = e->operand(0);
      const bool plain = net.clock(e) == net.true_name || x->op != TUPLE_n;
      return net.make(CALL_n, plain ? Ximpl(net, x) : net.held(x), e->param);
    }
    default: {
      std::vector<Exp*> operands;
      operands.reserve(e->operands.size());
      for (Exp* o : e->operands) operands.push_back(Ximpl(net, o));
      return net.make(e->op, operands, e->param);
    }
  }
}

}  // namespace net_norm
