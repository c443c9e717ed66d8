// The minimal network against the sweep in its simplest form, on generated
// programs: the same classes, numbered alike, each listed in the same order
// (so headed by the same representative); and the representatives a
// program gets alike whether its normal form stays or goes early.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "loaded_net.h"

namespace {

// Every pass compares every member of every class with the class's first
// member; all that differ leave together, in reverse order, as the next
// class. Quadratic, and obviously the sweep.
class SweepOracle {
 public:
  SweepOracle(NormNet& net, const std::vector<Exp*>& made_newest_first) : net_(net) {
    for (Exp* e : made_newest_first) {
      int& k = class_of_kind_[net_.through_ref(e)->op];
      if (k == 0) {
        classes.push_back({});
        k = static_cast<int>(classes.size());
      }
      classes[k - 1].insert(classes[k - 1].begin(), e);
      class_of_[e] = k;
    }
    for (bool changed = true; changed;) {
      changed = false;
      for (int k = 1; k <= static_cast<int>(classes.size()); ++k) changed |= split(k);
    }
  }

  std::vector<std::vector<Exp*>> classes;

 private:
  bool split(int k) {
    const std::vector<Exp*> members = classes[k - 1];
    const int fresh = static_cast<int>(classes.size()) + 1;
    std::vector<Exp*> staying{members[0]}, leaving;
    for (size_t i = 1; i < members.size(); ++i) {
      if (equivalent(members[i], members[0], k)) {
        staying.push_back(members[i]);
      } else {
        leaving.insert(leaving.begin(), members[i]);
        class_of_[members[i]] = fresh;
      }
    }
    if (leaving.empty()) return false;
    classes[k - 1] = staying;
    classes.push_back(leaving);
    return true;
  }

  bool equivalent(Exp* a, Exp* b, int k) {
    a = net_.through_ref(a);
    b = net_.through_ref(b);
    if (a->op != b->op || a->arity() != b->arity()) return false;
    if (op_arity(a->op) == AR_PARAM && a->param != b->param) return false;
    if (op_commutes(a->op)) {
      return (same_class(a->operand(0), b->operand(0), k) &&
              same_class(a->operand(1), b->operand(1), k)) ||
             (same_class(a->operand(1), b->operand(0), k) &&
              same_class(a->operand(0), b->operand(1), k));
    }
    for (int i = 0; i < a->arity(); ++i) {
      if (!same_class(a->operand(i), b->operand(i), k)) return false;
    }
    return true;
  }

  // Members leaving class k count as members of k until its split is over.
  bool same_class(Exp* x, Exp* y, int k) {
    x = net_.through_ref(x);
    y = net_.through_ref(y);
    const int cx = class_number(x, k);
    const int cy = class_number(y, k);
    return cx == 0 || cy == 0 ? x == y : cx == cy;
  }

  int class_number(Exp* e, int k) const {
    auto at = class_of_.find(e);
    if (at == class_of_.end()) return 0;
    return at->second > static_cast<int>(classes.size()) ? k : at->second;
  }

  NormNet& net_;
  int class_of_kind_[N_OPKINDS] = {};
  std::unordered_map<const Exp*, int> class_of_;
};

// Programs built to merge: groups of mutually recursive equations, each
// written out several times under other names, with the operands of
// commuting operators swapped at random, and sometimes with literals
// changed (near duplicates, which must stay apart).
class ProgramGenerator {
 public:
  explicit ProgramGenerator(uint32_t seed) : rng_(seed) {}

  std::string program() {
    const int groups = 1 + below(4);
    for (int g = 0; g < groups; ++g) {
      const int first = static_cast<int>(locals_.size());
      std::vector<Tree> bodies(1 + below(4));
      const int size = static_cast<int>(bodies.size());
      // Never a bare reference: copies of it could form a cycle of copies.
      for (Tree& body : bodies) body = operation(3, first, size);
      for (int copies = 1 + below(3); copies > 0; --copies) write_copy(bodies);
    }
    std::string text =
        "function f (x : int) returns (r : int);\nfunction g (x : int) returns (r : int);\n"
        "node n (a, b : int; c, d : bool) returns (y : int);\nvar ";
    for (size_t i = 0; i < locals_.size(); ++i) text += (i ? ", " : "") + locals_[i];
    return text + " : int;\nlet\n" + equations_ + "  y = " + locals_.back() + ";\ntel\n";
  }

 private:
  struct Tree {
    /// Empty for a leaf.
    std::string op;
    /// A leaf: a member of the own group (renamed in each copy), or text.
    int member = -1;
    std::string text;
    std::vector<Tree> kids;
  };

  static Tree node(const char* op) {
    Tree t;
    t.op = op;
    return t;
  }
  static Tree member(int i) {
    Tree t;
    t.member = i;
    return t;
  }
  static Tree text(std::string s) {
    Tree t;
    t.text = std::move(s);
    return t;
  }

  int below(int n) { return static_cast<int>(rng_() % static_cast<uint32_t>(n)); }

  Tree expression(int depth, int first, int size) {
    return depth == 0 || below(4) == 0 ? leaf(first, size) : operation(depth, first, size);
  }

  Tree operation(int depth, int first, int size) {
    static const char* const kOps[] = {"+", "*", "-", "if", "pre", "->", "current", "f", "g", "+"};
    Tree t = node(kOps[below(10)]);
    t.kids = {expression(depth - 1, first, size), expression(depth - 1, first, size)};
    if (t.op == "if") t.kids.push_back(condition(depth - 1, first, size));
    // A clock must be named.
    if (t.op == "current") t.kids.push_back(text(below(2) ? "c" : "d"));
    return t;
  }

  Tree condition(int depth, int first, int size) {
    static const char* const kOps[] = {"=", "<", "and", "xor"};
    Tree t = node(kOps[below(4)]);
    if (t.op == "and" || t.op == "xor") {
      t.kids = {text(below(2) ? "c" : "d"), text(below(2) ? "c" : "d")};
    } else {
      t.kids = {expression(depth, first, size), expression(depth, first, size)};
    }
    return t;
  }

  Tree leaf(int first, int size) {
    const int pick = below(7);
    if (pick < 3) return member(below(size));
    if (pick == 3 && first > 0) return text(locals_[below(first)]);
    if (pick == 4) return text(below(2) ? "a" : "b");
    return text(std::to_string(below(3)));
  }

  void write_copy(const std::vector<Tree>& bodies) {
    const int base = static_cast<int>(locals_.size());
    for (size_t i = 0; i < bodies.size(); ++i) locals_.push_back("x" + std::to_string(base + i));
    const bool near = below(4) == 0;
    for (size_t i = 0; i < bodies.size(); ++i) {
      equations_ += "  " + locals_[base + i] + " = " + write(bodies[i], base, near) + ";\n";
    }
  }

  std::string write(const Tree& t, int base, bool near) {
    if (t.op.empty()) {
      if (t.member >= 0) return locals_[base + t.member];
      if (near && std::isdigit(static_cast<unsigned char>(t.text[0])) && below(3) == 0) return "7";
      return t.text;
    }
    std::vector<std::string> k;
    for (const Tree& kid : t.kids) k.push_back(write(kid, base, near));
    const bool commutes = t.op == "+" || t.op == "*" || t.op == "=" || t.op == "and" ||
                          t.op == "xor";
    if (commutes && below(2)) std::swap(k[0], k[1]);
    if (t.op == "if") return "(if " + k[2] + " then " + k[0] + " else " + k[1] + ")";
    if (t.op == "pre") return "(pre " + k[0] + ")";
    if (t.op == "->") return "(" + k[0] + " -> pre " + k[1] + ")";
    // Never in first place, where a clock would be asked of it.
    if (t.op == "current") return "(" + k[0] + " + current (" + k[1] + " when " + k[2] + "))";
    if (t.op == "f" || t.op == "g") return t.op + "(" + k[0] + ")";
    return "(" + k[0] + " " + t.op + " " + k[1] + ")";
  }

  std::mt19937 rng_;
  std::vector<std::string> locals_;
  std::string equations_;
};

std::vector<std::vector<Exp*>> class_lists(const NormNet& net) {
  std::vector<std::vector<Exp*>> classes(net.n_classes);
  for (int c = 0; c < net.n_classes; ++c) {
    for (NormNet::Cell* cell = net.class_lists[c]; cell; cell = cell->next) {
      EXPECT_EQ(cell->node->class_no, c + 1);
      classes[c].push_back(cell->node);
    }
  }
  return classes;
}

TEST(PartitionOracleTest, GeneratedProgramsSplitAsTheSweep) {
  int merging = 0, refined = 0;
  constexpr int kPrograms = 1000;
  for (uint32_t seed = 1; seed <= kPrograms; ++seed) {
    const std::string text = ProgramGenerator(seed).program();
    LoadedNet loaded(text);
    NormNet& net = *loaded.net;
    net.normalise_all();
    std::vector<Exp*> made;
    std::vector<int> kinds(N_OPKINDS, 0);
    for (NormNet::Cell* cell = net.made; cell; cell = cell->next) {
      made.push_back(cell->node);
      kinds[cell->node->op] = 1;
    }
    const SweepOracle oracle(net, made);
    net.read_made_nodes();
    net.minimal_network();
    ASSERT_EQ(class_lists(net), oracle.classes) << "seed " << seed << "\n" << text;
    merging += net.n_classes < net.n_nodes;
    refined += net.n_classes > std::count(kinds.begin(), kinds.end(), 1);
  }
  // The programs exercise what they are built for.
  EXPECT_GT(merging, kPrograms / 2);
  EXPECT_GT(refined, kPrograms / 2);
}

// Each representative field by field, operands by class or leaf, then
// where each normalised name ends.
std::string representatives(LoadedNet& loaded) {
  NormNet& net = *loaded.net;
  const auto node = [](const Exp* e) {
    return e->class_no ? "@" + std::to_string(e->class_no)
                       : std::string(op_name(e->op)) + ":" + std::to_string(e->ident);
  };
  std::string text;
  for (const Exp* rep : net.class_reps) {
    text += node(rep) + " " + op_name(rep->op) + " " + std::to_string(rep->param) + " " +
            std::to_string(rep->ident) + " " + std::to_string(rep->clock) + " " +
            std::to_string(rep->type ? rep->type->name : -1) + " (";
    for (const Exp* o : rep->operands) text += node(o) + " ";
    text += ")\n";
  }
  for (IndexList* names : {net.outputs, net.locals, net.asserts}) {
    for (IndexList* n = names; n; n = n->next) {
      text += std::to_string(n->value) + " -> " + node(net.final_exp(n->value)) + "\n";
    }
  }
  return text;
}

TEST(PartitionOracleTest, RepresentativesAreAlikeWithTheNormalFormGone) {
  for (uint32_t seed = 1; seed <= 300; ++seed) {
    const std::string text = ProgramGenerator(seed).program();
    for (bool minimise : {true, false}) {
      LoadedNet kept(text, {.minimise = minimise});
      LoadedNet gone(text, {.minimise = minimise, .keep_normal_form = false});
      kept.net->build();
      gone.net->build();
      ASSERT_EQ(representatives(gone), representatives(kept)) << "seed " << seed << "\n" << text;
    }
  }
}

}  // namespace
