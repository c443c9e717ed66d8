#include "norm/net_norm.h"

#include <malloc.h>

#include "support/diagnostics.h"
#include "support/phase_clock.h"

NormNet::NormNet(SymbolTable* strings, const LoadOptions& options)
    : Net(strings),
      mode(options.minimise ? 0 : 3),
      bool_opt(options.bool_opt),
      keep_normal_form_(options.keep_normal_form) {}

void NormNet::build() {
  begin_phase("normalise");
  verbose("start normalisation ... ");
  make_operators_in(&normal_);
  normalise_all();
  check_references(outputs);
  check_references(locals);
  release_parsed();
  // The reader's nodes lie in the middle of the heap, under the normal
  // form: their pages go back now, or the partition would grow beside them.
  malloc_trim(0);
  verbose("done\n");
  if (bool_opt) verbose("Bool optimization : %d -> %d nodes\n", n_requests, n_nodes);
  if (mode < 0 || mode > 3) error("unknown option");
  begin_phase("minimise");
  read_made_nodes();
  const Partition partition = mode == 3 ? identity_partition() : minimal_network();
  make_operators_in(&reps_);
  rebuild(partition);
}

// A subexpression is translated once per occurrence, and some rules
// (current, held) translate their operand twice: nesting them makes the
// normal form exponentially larger than the program. Normal programs grow
// by a small factor; past this bound the load is refused, not left to
// exhaust the memory.
constexpr size_t kGrowth = 16;
constexpr size_t kGrowthFloor = size_t{1} << 20;

void NormNet::normalise_all() {
  size_budget_ = kGrowth * made_size() + kGrowthFloor;
  const size_t slots = static_cast<size_t>(strings->count()) + 1;
  init_memo.clear();
  activation_memo.clear();
  for (std::vector<Exp*>* table : {&xdef, &held_def, &resolved_}) {
    table->assign(slots, nullptr);
  }
  on_walk_.assign(slots, 0);
  normalise_group(outputs);
  normalise_group(locals);
  normalise_group(asserts);
}

void NormNet::normalise_group(IndexList* names) {
  IndexListIter it(names);
  for (int name = it.next(); name; name = it.next()) normalise(name);
}

// A cycle of plain copies (x = y; y = x;) defines nothing; it is reported
// here, whether or not anything else reads the names.
void NormNet::check_references(IndexList* names) {
  IndexListIter it(names);
  for (int name = it.next(); name; name = it.next()) through_ref(xdef[name]);
}

void NormNet::normalise(int name) {
  IdentInfo* info = ident_info(name);
  if (!info) error("NormNet::normalise : undeclared variable '%s'", strings->text(name));
  if (!info->def) error("NormNet::normalise : undefined variable '%s'", strings->text(name));
  normalising_ = name;
  xdef[name] = net_norm::Ximpl(*this, info->def);
  Exp* a = activation(info->clock);
  held_def[name] = a == true_exp ? xdef[name] : make(IF_n, a, xdef[name], bottom_exp);
}

bool NormNet::enter_walk(int name) {
  if (on_walk_[name]) return true;
  on_walk_[name] = 1;
  return false;
}

void NormNet::leave_walk(const std::vector<int>& names) {
  for (int name : names) on_walk_[name] = 0;
}

// Walks up the chain of clocks iteratively, then builds the conditions from
// the outermost clock down, so the nodes are made in the order a recursive
// definition would make them and long chains cannot exhaust the stack.
Exp* NormNet::activation(int clock) {
  std::vector<int> chain;
  Exp* a = true_exp;
  int c = clock;
  while (c != true_name) {
    if (c <= 0 || static_cast<size_t>(c) >= on_walk_.size()) {
      internal_error("file 'net_norm':\nNormNet::activation : bad clock number %d\n", c);
    }
    if (auto known = activation_memo.find(c); known != activation_memo.end()) {
      a = known->second;
      break;
    }
    if (enter_walk(c)) {
      error("NormNet::activation : the chain of clocks of '%s' leads back to itself",
            strings->text(c));
    }
    chain.push_back(c);
    IdentInfo* info = ident_info(c);
    if (!info || !info->ref) error("NormNet::activation : undeclared clock '%s'", strings->text(c));
    c = info->clock;
  }
  leave_walk(chain);
  for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
    IdentInfo* info = ident_info(*it);
    a = info->clock == true_name ? info->ref : make(IF_n, a, info->ref, false_exp);
    activation_memo[*it] = a;
  }
  return a;
}

Exp* NormNet::first_instant(int clock) {
  auto known = init_memo.find(clock);
  if (known != init_memo.end()) return known->second;
  Exp* flag = make(INIT_n, activation(clock));
  return init_memo[clock] = flag;
}

Exp* NormNet::make(OpKind kind, std::span<Exp* const> operands, int param) {
  ++n_requests;
  if (bool_opt) {
    if (Exp* simpler = bool_simplify(kind, operands)) return simpler;
  }
  ++n_nodes;
  Exp* e = new_exp(kind, operands, param);
  if (size_budget_ && made_size() > size_budget_) {
    error("NormNet::normalise : the normal form of '%s' grows past %zu nodes and operands",
          strings->text(normalising_), size_budget_);
  }
  e->class_no = 1;
  cells_.push_back(Cell{e, made});
  made = &cells_.back();
  return e;
}

// Every chain walked is remembered, so resolving all names costs one walk
// per reference in total even for very long chains of plain copies.
Exp* NormNet::through_ref(Exp* e) {
  if (e->op != QVREF_n) return e;
  std::vector<int> chain;
  while (e->op == QVREF_n) {
    const int name = e->ident;
    if (name <= 0 || static_cast<size_t>(name) >= xdef.size()) {
      internal_error("file 'net_norm':\nNormNet::through_ref : reference before normalisation\n");
    }
    if (resolved_[name]) {
      e = resolved_[name];
      break;
    }
    IdentInfo* info = ident_info(name);
    if (!info || (info->kind != ID_OUTPUT && info->kind != ID_LOCAL)) {
      internal_error(
          "file 'net_norm':\nNormNet::through_ref (%s) 'QVREF_n' must be OUTPUT or LOCAL\n",
          strings->text(name));
    }
    if (!xdef[name]) {
      internal_error("file 'net_norm':\nNormNet::through_ref : reference before normalisation\n");
    }
    if (enter_walk(name)) {
      error("NormNet::through_ref : variable '%s' is defined by a cycle of references to itself",
            strings->text(name));
    }
    chain.push_back(name);
    e = xdef[name];
  }
  leave_walk(chain);
  for (int name : chain) resolved_[name] = e;
  return e;
}

void NormNet::release_normal_form() {
  normal_.clear();
  std::deque<Cell>().swap(cells_);
  made = nullptr;
  std::unordered_map<int, Exp*>().swap(init_memo);
  std::unordered_map<int, Exp*>().swap(activation_memo);
  for (std::vector<Exp*>* table : {&xdef, &held_def, &resolved_}) {
    std::vector<Exp*>().swap(*table);
  }
  std::vector<Cell*>().swap(class_lists);
  std::vector<char>().swap(on_walk_);
  released_ = true;
}

void NormNet::release_final_nodes() {
  release_normal_form();
  std::vector<Exp*>().swap(class_reps);
  std::vector<int>().swap(final_codes_);
  final_leaves_ = OperandCodes();
  reps_.clear();
}

void NormNet::check_normal_form(const char* operation) const {
  if (released_) {
    internal_error("file 'net_norm':\nNormNet::%s : the normal form was released\n", operation);
  }
}

Exp* NormNet::final_exp(int name) {
  const int code = name > 0 && static_cast<size_t>(name) < final_codes_.size()
                       ? final_codes_[name]
                       : 0;
  if (code == 0) {
    IdentInfo* info = name > 0 ? ident_info(name) : nullptr;
    return info ? info->def : nullptr;
  }
  if (code > 0 && static_cast<size_t>(code) > class_reps.size()) {
    internal_error("file 'net_norm':\nNormNet::final_exp : no representatives\n");
  }
  return code > 0 ? class_reps[code - 1] : final_leaves_.leaf(code);
}
