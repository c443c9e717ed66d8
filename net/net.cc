#include "net/net.h"

#include <cstdlib>

#include "support/diagnostics.h"
#include "support/number_text.h"

QvType::~QvType() {
  delete consts;
  delete members;
}

IndexList* QvType::member() const {
  if (!is_tuple) internal_error("file net\n QvType::member() called on non tuple type\n");
  return members;
}

IdentInfo* QvType::enum_const(int position) const {
  if (enum_count == 0) internal_error("QvType::enum_const(int) called on non enumerate type\n");
  if (position < 0 || position >= enum_count)
    internal_error("QvType::enum_const(int) : position %d out of range\n", position);
  return enum_consts[position];
}

int IdentInfo::get_usr_const_index() const {
  if (kind != ID_USR_CONST)
    internal_error("IdentInfo::get_usr_const_index called on no usr const\n");
  return value;
}

FuncInfo::~FuncInfo() {
  delete in_params;
  delete out_params;
}

int FuncInfo::get_usr_proc_index() const {
  if (kind != 1)
    internal_error("FuncInfo::get_usr_proc_index called on no usr-proc \"%s\"\n", name);
  return index;
}

int FuncInfo::get_usr_func_index() const {
  if (kind != 0)
    internal_error("FuncInfo::get_usr_func_index called on no usr-func \"%s\"\n", name);
  return index;
}

Net::Net(SymbolTable* strings) : strings(strings) {
  bool_type = named_type(strings->intern("bool"));
  int_type = named_type(strings->intern("int"));
  real_type = named_type(strings->intern("real"));
  true_name = strings->intern("true");
  true_exp = constant(true_name);
  false_exp = constant(strings->intern("false"));
  bottom_exp = constant(strings->intern("bottom"));
  nil_exp = constant(strings->intern("nil"));
}

Net::~Net() {
  for (IndexList* list :
       {inputs, outputs, locals, asserts, usr_consts, usr_funcs, usr_procs, type_names})
    delete list;
}

// ---- Types ----

QvType* Net::new_type() {
  QvType& t = type_store_.emplace_back();
  t.next = types;
  types = &t;
  return &t;
}

// Both kinds of descriptor are found through an index rather than along
// the list, so a program declaring many types loads in linear time.
QvType* Net::named_type(int name) {
  QvType*& known = *named_types_.chunk_at(name);
  if (known) return known;
  known = new_type();
  known->name = name;
  return known;
}

QvType* Net::tuple_type(IndexList* names) {
  if (names && !names->next) {
    int name = names->value;
    delete names;
    return named_type(name);
  }
  std::vector<int> key;
  for (const IndexList* n = names; n; n = n->next) key.push_back(n->value);
  QvType*& known = tuple_types_[std::move(key)];
  if (known) {
    delete names;
    return known;
  }
  known = new_type();
  known->is_tuple = 1;
  known->members = names;
  return known;
}

QvType* Net::tuple_type(const int* names, int n) {
  return tuple_type(n > 0 ? new IndexList(names, n) : nullptr);
}

void Net::declare_type(int name) {
  IndexList::append(&type_names, name);
  named_type(name)->number = ++n_types;
}

void Net::declare_enum_type(int name, IndexList* consts) {
  declare_type(name);
  QvType* t = named_type(name);
  t->enum_count = IndexList::length(consts);
  t->enum_consts.assign(t->enum_count, nullptr);
  // The head of the list takes the highest position, the last constant 0.
  int position = t->enum_count;
  for (IndexList* c = consts; c; c = c->next) {
    --position;
    IdentInfo* info = new_ident(c->value, ID_ENUM_CONST, t, true_name);
    info->value = n_usr_consts;
    info->number = position;
    info->def = info->ref = new_leaf(CONST_n, c->value, t, true_name);
    t->enum_consts[position] = info;
    IndexList::append(&usr_consts, c->value);
    ++n_usr_consts;
  }
  delete consts;
}

// ---- Identifiers and functions ----

IdentInfo* Net::new_ident(int name, IdentKind kind, QvType* type, int clock) {
  IdentInfo& info = ident_store_.emplace_back();
  info.name = name;
  info.kind = kind;
  info.type = type;
  info.clock = clock;
  *idents.chunk_at(name) = &info;
  funcs_.erase(name);
  return &info;
}

void Net::add_usr_const(int name, QvType* type, int clock) {
  IdentInfo* info = new_ident(name, ID_USR_CONST, type, clock);
  info->value = n_usr_consts;
  info->def = info->ref = new_leaf(CONST_n, name, type, clock);
  IndexList::append(&usr_consts, name);
  IndexList::append(&type->consts, name);
  ++n_usr_consts;
}

void Net::add_usr_proc(int name, QvType* in_type, QvType* out_type, IndexList* in_params,
                       IndexList* out_params) {
  FuncInfo& f = func_store_.emplace_back();
  f.name = strings->text(name);
  f.kind = 1;
  f.index = n_usr_procs;
  f.in_type = in_type;
  f.out_type = out_type;
  f.in_params = in_params;
  f.out_params = out_params;
  *idents.chunk_at(name) = nullptr;
  funcs_[name] = &f;
  IndexList::append(&usr_procs, name);
  ++n_usr_procs;
}

void Net::add_input(int name, QvType* type, int clock) {
  IdentInfo* info = new_ident(name, ID_INPUT, type, clock);
  info->number = n_inputs++;
  info->def = info->ref = new_leaf(INPUT_n, name, type, clock);
  IndexList::append(&inputs, name);
}

void Net::add_output(int name, QvType* type, int clock) {
  IdentInfo* info = new_ident(name, ID_OUTPUT, type, clock);
  info->number = n_outputs++;
  info->ref = new_leaf(QVREF_n, name, type, clock);
  IndexList::append(&outputs, name);
}

void Net::add_local(int name, QvType* type, int clock) {
  IdentInfo* info = new_ident(name, ID_LOCAL, type, clock);
  info->number = n_locals++;
  info->ref = new_leaf(QVREF_n, name, type, clock);
  IndexList::append(&locals, name);
}

Exp* Net::constant(int name) {
  if (IdentInfo* known = ident_info(name)) return known->ref;
  IdentInfo* info = new_ident(name, ID_PREDEF_CONST, bool_type, true_name);
  return info->def = info->ref = new_leaf(CONST_n, name, bool_type, true_name);
}

namespace {

// As "%d" reads it: a value beyond 32 bits keeps its low 32 bits (the
// reader warns about it).
int scan_int(const char* text) {
  int32_t value = 0;
  read_int(text, &value);
  return value;
}

// Single precision, as the literal is carried; too large a text gives an
// infinity, which is a defined value.
float scan_real(const char* text) {
  char* end = nullptr;
  float v = std::strtof(text, &end);
  return end == text ? 0.0f : v;
}

}  // namespace

Exp* Net::int_literal(int name) {
  if (IdentInfo* known = ident_info(name)) return known->ref;
  IdentInfo* info = new_ident(name, ID_INT_LIT, int_type, true_name);
  info->value = scan_int(strings->text(name));
  return info->def = info->ref = new_leaf(CONST_n, name, int_type, true_name);
}

Exp* Net::real_literal(int name) {
  if (IdentInfo* known = ident_info(name)) return known->ref;
  IdentInfo* info = new_ident(name, ID_REAL_LIT, real_type, true_name);
  info->real_value = scan_real(strings->text(name));
  return info->def = info->ref = new_leaf(CONST_n, name, real_type, true_name);
}

void Net::add_assert(Exp* e) {
  int name = strings->intern("__assert_%d", n_asserts);
  IdentInfo* info = new_ident(name, ID_ASSERT, bool_type, clock(e));
  info->def = e;
  e->type = info->type;
  e->clock = info->clock;
  IndexList::append(&asserts, name);
  ++n_asserts;
}

void Net::define(int name, Exp* e) {
  IdentInfo* info = ident_info(name);
  if (!info) error("Net::define : undeclared variable '%s'\n", strings->text(name));
  if (info->kind != ID_OUTPUT && info->kind != ID_LOCAL) defines_other_ = true;
  info->def = e;
  e->type = info->type;
  e->clock = info->clock;
}

void Net::define_tuple(IndexList* names, Exp* e) {
  tuple_name_lists_.emplace_back(names);
  int position = 0;
  for (IndexList* n = names; n; n = n->next) {
    define(n->value, new_proj(e, ++position));
    tuple_names_[n->value] = names;
  }
}

IdentInfo* Net::ident_info(int name) {
  return name > 0 ? *idents.chunk_at(name) : nullptr;
}

FuncInfo* Net::func_info(int name) {
  auto at = funcs_.find(name);
  return at == funcs_.end() ? nullptr : at->second;
}

const IndexList* Net::tuple_names(int name) const {
  auto at = tuple_names_.find(name);
  return at == tuple_names_.end() ? nullptr : at->second;
}

// ---- Nodes ----

Exp* Net::new_node(Exp&& e) {
  made_size_ += 1 + e.operands.size();
  return operators_->add(std::move(e));
}

Exp* Net::new_leaf(OpKind op, int ident, QvType* type, int clock) {
  Exp e;
  e.op = op;
  e.ident = ident;
  e.type = type;
  e.clock = clock;
  made_size_ += 1;
  return leaves_.add(std::move(e));
}

Exp* Net::new_exp(OpKind op, std::span<Exp* const> operands, int param) {
  int need = op_operand_count(op);
  if (need >= 0 && need != static_cast<int>(operands.size()))
    internal_error("file 'net':\nNet::new_exp : '%s' needs %d operands, not %d\n", op_name(op),
                   need, static_cast<int>(operands.size()));
  Exp e;
  e.op = op;
  e.operands = operators_->operands(operands.data(), operands.size());
  e.param = param;
  return new_node(std::move(e));
}

Exp* Net::new_call(int function, Exp* argument) {
  return new_exp(CALL_n, {argument}, function);
}

Exp* Net::new_proj(Exp* tuple, int position) {
  return new_exp(PROJ_n, {tuple}, position);
}

namespace {

void check_coefficients(const char* maker, size_t coefs, size_t operands) {
  if (coefs != operands)
    internal_error("file 'net':\nNet::%s : %d coefficients for %d operands\n", maker,
                   static_cast<int>(coefs), static_cast<int>(operands));
}

}  // namespace

Exp* Net::new_icl(std::vector<Exp*> operands, std::vector<int> coefs, int constant) {
  check_coefficients("new_icl", coefs.size(), operands.size());
  LinearForm form;
  form.icoefs = std::move(coefs);
  form.iconst = constant;
  return new_exp(ICL_n, operands, keep_linear_form(std::move(form)));
}

Exp* Net::new_rcl(std::vector<Exp*> operands, std::vector<Fract> coefs, Fract constant) {
  check_coefficients("new_rcl", coefs.size(), operands.size());
  LinearForm form;
  form.rcoefs = std::move(coefs);
  form.rconst = constant;
  return new_exp(RCL_n, operands, keep_linear_form(std::move(form)));
}

Exp* Net::new_blank() {
  return new_node(Exp{});
}

Operands Net::new_operands(std::span<Exp* const> operands) {
  return operators_->operands(operands.data(), operands.size());
}

// The definitions of outputs, locals and assertions are the reader's
// nodes: they are cleared, and the normalised forms stand for them.
bool Net::release_parsed() {
  if (defines_other_) return false;
  for (IndexList* names : {outputs, locals, asserts}) {
    for (const IndexList* n = names; n; n = n->next) {
      if (IdentInfo* info = ident_info(n->value)) info->def = nullptr;
    }
  }
  parsed_.clear();
  return true;
}
