#include "norm/class_refinement.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "support/diagnostics.h"

namespace {

uint64_t mix(uint64_t h, uint64_t v) {
  h = (h ^ v) * 0x9e3779b97f4a7c15ULL;
  return h ^ (h >> 31);
}

}  // namespace

ClassRefinement::ClassRefinement(NormNet& net)
    : net_(net), cells_(net.made_cells()), splittable_(net.n_nodes + 1) {
  read_shapes();
  read_operands();
}

void ClassRefinement::read_shapes() {
  static_assert(N_OPKINDS <= 256, "a kind is kept in a byte");
  const int n = static_cast<int>(cells_.size());
  shapes_.reserve(n + 1);
  for (int i = 0; i < n; ++i) {
    Exp* e = cells_[i].node;
    const int param = op_arity(e->op) == AR_PARAM ? e->param : 0;
    shapes_.push_back(
        Shape{0, 0, param, static_cast<uint8_t>(net_.through_ref(e)->op), false});
  }
  shapes_.push_back(Shape{0, 0, 0, 0, false});
}

// The classes start as the kinds, numbered as they first appear among the
// nodes newest first, each listing its nodes oldest first.
void ClassRefinement::start_by_kind() {
  const int n = static_cast<int>(shapes_.size()) - 1;
  // Blocks and live groups never outnumber the members: room for all,
  // so that growing never copies them.
  blocks_.reserve(n);
  groups_.reserve(n);
  members_.assign(n, Member{-1, -1, -1, -1, -1, -1});
  net_.n_classes = 0;
  std::array<int, N_OPKINDS> block_of_kind;
  block_of_kind.fill(-1);
  for (int i = n - 1; i >= 0; --i) {
    int& block = block_of_kind[shapes_[i].kind];
    if (block != -1) continue;
    block = new_block();
    blocks_[block].number = ++net_.n_classes;
    block_of_class_.push_back(block);
  }
  for (int i = 0; i < n; ++i) {
    const int block = block_of_kind[shapes_[i].kind];
    Block& b = blocks_[block];
    members_[i].block = block;
    members_[i].list_prev = b.tail;
    if (b.tail == -1) {
      b.head = i;
    } else {
      members_[b.tail].list_next = i;
    }
    b.tail = i;
    ++b.size;
  }
}

// Oldest first, so a node's operands were mostly just visited.
void ClassRefinement::read_operands() {
  const int n = static_cast<int>(cells_.size());
  size_t total = 0;
  for (const NormNet::Cell& cell : cells_) total += cell.node->operands.size();
  if (total > std::numeric_limits<uint32_t>::max()) {
    internal_error("file 'class_refinement':\nClassRefinement : too many operands\n");
  }
  codes_.reserve(total);
  std::vector<int> n_parents(n, 0);
  std::vector<int> last_parent(n, -1);
  for (int i = 0; i < n; ++i) {
    shapes_[i].operands = static_cast<uint32_t>(codes_.size());
    for (Exp* o : cells_[i].node->operands) {
      const int code = first_codes_.code(net_, o);
      if (code > n) {
        internal_error("file 'class_refinement':\nClassRefinement : operand outside the net\n");
      }
      codes_.push_back(code);
      if (code > 0 && last_parent[code - 1] != i) {
        last_parent[code - 1] = i;
        ++n_parents[code - 1];
      }
    }
  }
  first_codes_.finish();
  shapes_[n].operands = static_cast<uint32_t>(codes_.size());
  uint32_t start = 0;
  for (int i = 0; i < n; ++i) {
    shapes_[i].parents = start;
    start += static_cast<uint32_t>(n_parents[i]);
  }
  shapes_[n].parents = start;
  parents_.resize(start);
  std::fill(last_parent.begin(), last_parent.end(), -1);
  for (int i = 0; i < n; ++i) {
    const int* codes = operands(i);
    for (size_t j = 0, count = arity(i); j < count; ++j) {
      const int at = codes[j] - 1;
      if (at < 0 || last_parent[at] == i) continue;
      last_parent[at] = i;
      parents_[shapes_[at + 1].parents - n_parents[at]--] = i;
    }
  }
}

// Block by block, so that the table is sized for the largest kind rather
// than for all the members. What only a member's place needs is made here,
// after the nodes may have gone.
void ClassRefinement::form_first_groups() {
  start_by_kind();
  std::vector<int> members;
  for (const Block& b : blocks_) {
    members.clear();
    for (int i = b.head; i != -1; i = members_[i].list_next) members.push_back(i);
    form_groups(members);
  }
  // A regrouping sizes a table for its own members.
  std::vector<Slot>().swap(slots_);
}

int ClassRefinement::next_splittable(int k) const {
  return std::max(splittable_.next_after(k), 0);
}

int ClassRefinement::operand_value(int code) const {
  return code < 0 ? code : members_[code - 1].block;
}

std::pair<int, int> ClassRefinement::sorted_pair(const int* codes) const {
  const int a = operand_value(codes[0]);
  const int b = operand_value(codes[1]);
  return a < b ? std::make_pair(a, b) : std::make_pair(b, a);
}

uint64_t ClassRefinement::signature_hash(int i) const {
  const Shape& m = shapes_[i];
  const OpKind kind = static_cast<OpKind>(m.kind);
  const int* codes = operands(i);
  const size_t n = arity(i);
  uint64_t h = mix(mix(static_cast<uint64_t>(members_[i].block), kind),
                   static_cast<uint32_t>(m.param));
  h = mix(h, static_cast<uint64_t>(n));
  if (op_commutes(kind)) {
    const std::pair<int, int> pair = sorted_pair(codes);
    return mix(mix(h, static_cast<uint32_t>(pair.first)), static_cast<uint32_t>(pair.second));
  }
  for (size_t j = 0; j < n; ++j) h = mix(h, static_cast<uint32_t>(operand_value(codes[j])));
  return h;
}

bool ClassRefinement::same_signature(int x, int y) const {
  const Shape& a = shapes_[x];
  const Shape& b = shapes_[y];
  const size_t n = arity(x);
  if (members_[x].block != members_[y].block || a.kind != b.kind || a.param != b.param ||
      n != arity(y)) {
    return false;
  }
  const int* xs = operands(x);
  const int* ys = operands(y);
  if (op_commutes(static_cast<OpKind>(a.kind))) return sorted_pair(xs) == sorted_pair(ys);
  for (size_t j = 0; j < n; ++j) {
    if (operand_value(xs[j]) != operand_value(ys[j])) return false;
  }
  return true;
}

// Members of one signature meet in one slot of a table sized for them;
// a handful are compared with each other directly. A member being
// regrouped has an operand in a block that did not exist before, so no
// group it could join exists outside those formed here.
void ClassRefinement::form_groups(const std::vector<int>& members) {
  constexpr size_t kFew = 8;
  if (members.size() <= kFew) {
    int formed[kFew];
    size_t n_formed = 0;
    for (int i : members) {
      size_t at = 0;
      while (at < n_formed && !same_signature(i, groups_[formed[at]].head)) ++at;
      if (at == n_formed) formed[n_formed++] = new_group(members_[i].block);
      join_group(i, formed[at]);
    }
    return;
  }
  size_t size = 16;
  while (size < 2 * members.size()) size *= 2;
  slots_.assign(size, Slot{0, -1});
  for (int i : members) {
    const uint64_t hash = signature_hash(i);
    const uint32_t check = static_cast<uint32_t>(hash >> 32);
    size_t at = hash & (size - 1);
    for (; slots_[at].group != -1; at = (at + 1) & (size - 1)) {
      if (slots_[at].check == check && same_signature(i, groups_[slots_[at].group].head)) break;
    }
    if (slots_[at].group == -1) slots_[at] = Slot{check, new_group(members_[i].block)};
    join_group(i, slots_[at].group);
  }
}

void ClassRefinement::join_group(int i, int g) {
  Member& m = members_[i];
  Group& group = groups_[g];
  m.group = g;
  m.group_prev = -1;
  m.group_next = group.head;
  if (group.head != -1) members_[group.head].group_prev = i;
  group.head = i;
  ++group.size;
}

void ClassRefinement::leave_group(int i) {
  Member& m = members_[i];
  const int g = m.group;
  if (m.group_prev != -1) {
    members_[m.group_prev].group_next = m.group_next;
  } else {
    groups_[g].head = m.group_next;
  }
  if (m.group_next != -1) members_[m.group_next].group_prev = m.group_prev;
  m.group = -1;
  if (--groups_[g].size > 0) return;
  const Block& b = blocks_[groups_[g].block];
  unlink_group(g);
  free_groups_.push_back(g);
  if (b.n_groups == 1) splittable_.erase(b.number);
}

int ClassRefinement::new_group(int block) {
  int g;
  if (free_groups_.empty()) {
    g = static_cast<int>(groups_.size());
    groups_.emplace_back();
  } else {
    g = free_groups_.back();
    free_groups_.pop_back();
  }
  groups_[g] = Group{-1, 0, -1, -1, -1};
  link_group(g, block);
  if (blocks_[block].n_groups == 2) splittable_.insert(blocks_[block].number);
  return g;
}

void ClassRefinement::link_group(int g, int block) {
  Block& b = blocks_[block];
  groups_[g].block = block;
  groups_[g].prev = -1;
  groups_[g].next = b.groups;
  if (b.groups != -1) groups_[b.groups].prev = g;
  b.groups = g;
  ++b.n_groups;
}

void ClassRefinement::unlink_group(int g) {
  Group& group = groups_[g];
  Block& b = blocks_[group.block];
  if (group.prev != -1) {
    groups_[group.prev].next = group.next;
  } else {
    b.groups = group.next;
  }
  if (group.next != -1) groups_[group.next].prev = group.prev;
  --b.n_groups;
}

int ClassRefinement::new_block() {
  blocks_.push_back(Block{0, true, -1, -1, 0, -1, 0});
  return static_cast<int>(blocks_.size()) - 1;
}

const std::vector<int>& ClassRefinement::move_groups(const std::vector<int>& groups, int from,
                                                     int to) {
  std::vector<int>& moved = moved_;
  moved.clear();
  for (int g : groups) {
    unlink_group(g);
    link_group(g, to);
    for (int i = groups_[g].head; i != -1; i = members_[i].group_next) {
      Member& m = members_[i];
      m.block = to;
      if (m.list_prev != -1) {
        members_[m.list_prev].list_next = m.list_next;
      } else {
        blocks_[from].head = m.list_next;
      }
      if (m.list_next != -1) {
        members_[m.list_next].list_prev = m.list_prev;
      } else {
        blocks_[from].tail = m.list_prev;
      }
      moved.push_back(i);
    }
  }
  std::sort(moved.begin(), moved.end());
  const int n = static_cast<int>(moved.size());
  for (int at = 0; at < n; ++at) {
    members_[moved[at]].list_prev = at > 0 ? moved[at - 1] : -1;
    members_[moved[at]].list_next = at + 1 < n ? moved[at + 1] : -1;
  }
  blocks_[from].size -= n;
  blocks_[to].size = n;
  blocks_[to].head = moved.front();
  blocks_[to].tail = moved.back();
  return moved;
}

// The members like the first stay in class k, the others form the new
// class; whichever side is smaller moves to a fresh block, and the block
// left behind takes the class number of the side it keeps.
void ClassRefinement::split(int k) {
  const int from = block_of_class_[k - 1];
  const bool forwards = blocks_[from].forwards;
  const int first = forwards ? blocks_[from].head : blocks_[from].tail;
  const int staying = members_[first].group;
  const bool move_staying = 2 * groups_[staying].size <= blocks_[from].size;
  std::vector<int>& groups = moving_groups_;
  groups.clear();
  if (move_staying) {
    groups.push_back(staying);
  } else {
    for (int g = blocks_[from].groups; g != -1; g = groups_[g].next) {
      if (g != staying) groups.push_back(g);
    }
  }
  const int to = new_block();
  const std::vector<int>& moved = move_groups(groups, from, to);
  const int fresh = ++net_.n_classes;
  const int leavers = move_staying ? from : to;
  const int stayers = move_staying ? to : from;
  splittable_.erase(k);
  blocks_[stayers].number = k;
  blocks_[stayers].forwards = forwards;
  blocks_[leavers].number = fresh;
  blocks_[leavers].forwards = !forwards;
  block_of_class_[k - 1] = stayers;
  block_of_class_.push_back(leavers);
  if (blocks_[leavers].n_groups > 1) splittable_.insert(fresh);
  regroup_parents(moved);
}

// A parent alone in its group keeps it: a signature that differed before
// the move still differs after it, so no other parent can join it. The
// others leave their groups and are grouped again among themselves.
void ClassRefinement::regroup_parents(const std::vector<int>& moved) {
  std::vector<int>& parents = parents_moved_;
  parents.clear();
  for (int i : moved) {
    for (uint32_t at = shapes_[i].parents; at < shapes_[i + 1].parents; ++at) {
      Shape& p = shapes_[parents_[at]];
      if (p.met) continue;
      p.met = true;
      parents.push_back(parents_[at]);
    }
  }
  // Sizes are read before anyone leaves, so a group left by all but one
  // does not pass for a group of one.
  size_t kept = 0;
  for (int p : parents) {
    shapes_[p].met = false;
    if (groups_[members_[p].group].size > 1) parents[kept++] = p;
  }
  parents.resize(kept);
  for (int p : parents) leave_group(p);
  form_groups(parents);
}

// What only the splitting needed is let go of first, since the partition
// is made while the rest is still held.
NormNet::Partition ClassRefinement::relink() {
  for (std::vector<int>* done : {&parents_, &free_groups_, &moving_groups_, &moved_,
                                 &parents_moved_}) {
    std::vector<int>().swap(*done);
  }
  std::vector<Group>().swap(groups_);
  const int n = static_cast<int>(members_.size());
  NormNet::Partition p;
  p.class_of.resize(n);
  for (int i = 0; i < n; ++i) p.class_of[i] = blocks_[members_[i].block].number;
  p.firsts.resize(net_.n_classes);
  // No more codes than all the members have; the pages left over are
  // never touched.
  p.operands = std::move(first_codes_);
  p.operands.reserve(net_.n_classes, codes_.size());
  const bool lists = net_.keeps_normal_form();
  if (lists) net_.class_lists.assign(net_.n_classes, nullptr);
  for (int c = 1; c <= net_.n_classes; ++c) {
    const Block& b = blocks_[block_of_class_[c - 1]];
    const int first = b.forwards ? b.head : b.tail;
    p.firsts[c - 1] = first;
    if (lists) {
      NormNet::Cell** link = &net_.class_lists[c - 1];
      for (int i = first; i != -1;
           i = b.forwards ? members_[i].list_next : members_[i].list_prev) {
        *link = &cells_[i];
        cells_[i].node->class_no = c;
        link = &cells_[i].next;
      }
      *link = nullptr;
    }
    std::copy_n(operands(first), arity(first), p.operands.add(arity(first)));
  }
  if (lists) net_.made = nullptr;
  return p;
}
