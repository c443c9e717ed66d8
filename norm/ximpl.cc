#include "norm/net_norm.h"
#include "support/diagnostics.h"

namespace net_norm {

namespace {

// No memory of translated nodes is kept: a shared subexpression is
// translated once per occurrence and the copies are merged again by the
// minimal network. References are leaves, so each definition is
// translated only by the normalisation of its own name.
//
// The translation runs on an explicit stack, since a left-nested sum of a
// hundred thousand terms is a chain that deep. Each frame is one call of
// the recursive rules below, resumed at `stage`; finished translations
// wait on `values` for the frame that asked for them. Nodes are made in
// the order the recursion would make them, which the class numbers of the
// minimal network depend on.
class Translation {
 public:
  // Most equations are a few nodes deep: room for them from the start
  // saves the stacks' growing by steps at every equation.
  explicit Translation(NormNet& net) : net_(net) {
    frames_.reserve(kUsualDepth);
    values_.reserve(kUsualDepth);
  }

  Exp* run(Exp* e, bool held) {
    frames_.push_back({e, held, 0, nullptr});
    while (!frames_.empty()) step();
    return values_.back();
  }

 private:
  struct Frame {
    Exp* e;
    /// The rule `held`: the normal form of `e` held on its clock, bottom
    /// where the clock is absent.
    bool held;
    int stage;
    /// A condition made before the operands, kept until they are back.
    Exp* condition;
  };

  Exp* pop_value() {
    Exp* v = values_.back();
    values_.pop_back();
    return v;
  }

  void give(Exp* v) {
    values_.push_back(v);
    frames_.pop_back();
  }

  void call(Exp* e, bool held) { frames_.push_back({e, held, 0, nullptr}); }

  // The frame is taken by index: `call` may move the frames.
  void step() {
    const size_t at = frames_.size() - 1;
    Frame& f = frames_[at];
    const int stage = f.stage++;
    if (f.held) {
      held_step(at, stage);
    } else {
      ximpl_step(at, stage);
    }
  }

  void held_step(size_t at, int stage) {
    Exp* x = frames_[at].e;
    if (stage == 0) {
      frames_[at].condition = net_.activation(net_.clock(x));
      call(x, false);
      return;
    }
    Exp* a = frames_[at].condition;
    Exp* now = pop_value();
    give(a == net_.true_exp ? now : net_.make(IF_n, a, now, net_.bottom_exp));
  }

  // ORDER OP: the temporal kinds and calls; every other kind is copied over
  // the normal forms of its operands.
  void ximpl_step(size_t at, int stage) {
    Exp* e = frames_[at].e;
    switch (e->op) {
      case CONST_n:
      case INPUT_n:
      case QVREF_n:
        give(e);
        return;
      case PRE_n:
        if (stage == 0) return call(e->operand(0), true);
        return give(net_.make(LAST_n, pop_value()));
      case CURRENT_n: {
        Exp* x = e->operand(0);
        if (stage == 0) {
          frames_[at].condition = net_.activation(net_.clock(x));
          return call(x, false);
        }
        if (stage == 1) return call(x, true);
        Exp* before = net_.make(LAST_n, pop_value());
        Exp* now = pop_value();
        return give(net_.make(IF_n, frames_[at].condition, now, before));
      }
      case ARROW_n: {
        if (stage < 2) return call(e->operand(1 - stage), false);
        Exp* first = pop_value();
        Exp* rest = pop_value();
        return give(net_.make(IF_n, net_.first_instant(net_.clock(e)), first, rest));
      }
      case WHEN_n:
        // The sampling clock lives in the activation conditions.
        frames_[at] = {e->operand(0), false, 0, nullptr};
        return;
      case CALL_n: {
        if (stage == 1) return give(net_.make(CALL_n, pop_value(), e->param));
        if (e->arity() != 1) internal_error("net_norm::Ximpl: bad CALL_n arity\n");
        // A tuple argument on a slower clock is held, so the call sees bottom
        // members rather than stale ones where the clock is absent.
        Exp* x = e->operand(0);
        const bool plain = net_.clock(e) == net_.true_name || x->op != TUPLE_n;
        return call(x, !plain);
      }
      default: {
        if (stage < e->arity()) return call(e->operand(stage), false);
        const auto first = values_.end() - e->arity();
        Exp* made = net_.make(e->op, {first, values_.end()}, e->param);
        values_.erase(first, values_.end());
        return give(made);
      }
    }
  }

  static constexpr size_t kUsualDepth = 16;

  NormNet& net_;
  std::vector<Frame> frames_;
  std::vector<Exp*> values_;
};

}  // namespace

Exp* Ximpl(NormNet& net, Exp* e) { return Translation(net).run(e, false); }

}  // namespace net_norm
