// The model of one qv program: types, identifiers, functions and the
// expression nodes of its equations. The Net owns everything it makes.
#pragma once

#include <deque>
#include <map>
#include <memory>
#include <span>
#include <unordered_map>
#include <utility>
#include <vector>

#include "net/exp.h"
#include "net/node_store.h"
#include "support/chunk_array.h"
#include "support/index_list.h"
#include "support/string_table.h"

struct IdentInfo;

/// One descriptor per type: named types by name, tuple types by members.
struct QvType {
  /// Declared (extern, enumerated) types: 1, 2, ... in order; 0 otherwise.
  int number = 0;
  /// User constants declared with this type, in order (owned).
  IndexList* consts = nullptr;
  int enum_count = 0;
  /// The enumeration constants, by position.
  std::vector<IdentInfo*> enum_consts;
  int is_tuple = 0;
  /// Named type: its string number (0 for a tuple).
  int name = 0;
  /// Tuple type: its members' type names, in order (owned).
  IndexList* members = nullptr;
  QvType* next = nullptr;

  ~QvType();
  IndexList* member() const;
  IdentInfo* enum_const(int position) const;
};

enum IdentKind {
  ID_INPUT,
  ID_OUTPUT,
  ID_LOCAL,
  ID_USR_CONST,
  ID_ASSERT,
  ID_PREDEF_CONST,
  ID_INT_LIT,
  ID_REAL_LIT,
  ID_ENUM_CONST,
};

struct IdentInfo {
  /// The leaf itself for inputs and constants; the equation's right side
  /// for outputs and locals; the asserted expression for assertions.
  Exp* def = nullptr;
  /// The leaf that stands for the identifier inside expressions.
  Exp* ref = nullptr;
  QvType* type = nullptr;
  int name = 0;
  /// String number of the clock identifier; the base clock is "true".
  int clock = -1;
  IdentKind kind = ID_PREDEF_CONST;
  /// User and enum constants: index in usr_consts; int literal: its value.
  int value = 0;
  /// Real literal: its value, single precision as the literal carries it.
  float real_value = 0;
  /// Position within inputs, outputs, locals or an enumeration; -1 otherwise.
  int number = -1;

  int get_usr_const_index() const;
};

struct FuncInfo {
  /// The string table's own text.
  const char* name = nullptr;
  /// 0 = usr-func, 1 = usr-proc (the only kind declared here).
  int kind = 1;
  int index = 0;
  QvType* in_type = nullptr;
  QvType* out_type = nullptr;
  /// Alternating parameter name and type name (owned).
  IndexList* in_params = nullptr;
  IndexList* out_params = nullptr;

  ~FuncInfo();
  int get_usr_proc_index() const;
  int get_usr_func_index() const;
};

class Net {
 public:
  explicit Net(SymbolTable* strings);
  Net(const Net&) = delete;
  Net& operator=(const Net&) = delete;
  virtual ~Net();

  // Types.
  QvType* named_type(int name);
  /// Takes ownership of `names`; a one-element list gives the named type.
  QvType* tuple_type(IndexList* names);
  QvType* tuple_type(const int* names, int n);
  void declare_type(int name);
  /// Takes ownership of `consts`.
  void declare_enum_type(int name, IndexList* consts);

  // Identifiers and functions.
  void add_usr_const(int name, QvType* type, int clock);
  /// Takes ownership of both parameter lists.
  void add_usr_proc(int name, QvType* in_type, QvType* out_type, IndexList* in_params,
                    IndexList* out_params);
  void add_input(int name, QvType* type, int clock);
  void add_output(int name, QvType* type, int clock);
  void add_local(int name, QvType* type, int clock);
  Exp* constant(int name);
  Exp* int_literal(int name);
  Exp* real_literal(int name);
  void add_assert(Exp* e);
  /// Any declared name takes the equation, a later one replacing an earlier
  /// one, as the reader warns.
  void define(int name, Exp* e);
  /// Takes ownership of `names`.
  void define_tuple(IndexList* names, Exp* e);
  IdentInfo* ident_info(int name);
  FuncInfo* func_info(int name);
  /// Output or local defined by a tuple equation: all names on its left;
  /// null otherwise.
  const IndexList* tuple_names(int name) const;
  void set_node_name(int name) { node_name = name; }

  // Nodes, all owned by the net.
  Exp* new_leaf(OpKind op, int ident, QvType* type, int clock);
  Exp* new_exp(OpKind op, std::span<Exp* const> operands, int param = 0);
  Exp* new_exp(OpKind op, std::initializer_list<Exp*> operands, int param = 0) {
    return new_exp(op, std::span(operands.begin(), operands.size()), param);
  }
  Exp* new_call(int function, Exp* argument);
  Exp* new_proj(Exp* tuple, int position);
  Exp* new_icl(std::vector<Exp*> operands, std::vector<int> coefs, int constant);
  Exp* new_rcl(std::vector<Exp*> operands, std::vector<Fract> coefs, Fract constant);
  /// A blank ERROR_n node (see NetCtr).
  Exp* new_blank();
  /// An operand array holding `operands`, held with the nodes being made.
  Operands new_operands(std::span<Exp* const> operands);
  /// Nodes made so far plus the operands they hold: what the net has grown by.
  size_t made_size() const { return made_size_; }

  /// Cached, on-demand type and clock of a node.
  QvType* type(Exp* e);
  int clock(Exp* e);

  // Printing as qv text.
  void print_func_decl(int name, PtyStream& out);
  /// print_func_decl of a known record, without its leading newline.
  void write_func_decl(const FuncInfo& f, PtyStream& out);
  /// The whole program; `final_dot` ends it with "tel." instead of "tel".
  void print_program(PtyStream& out, bool final_dot);

  QvType* bool_type;
  QvType* int_type;
  QvType* real_type;
  /// The base clock.
  int true_name;
  Exp* true_exp;
  Exp* false_exp;
  Exp* bottom_exp;
  Exp* nil_exp;
  SymbolTable* strings;
  int node_name = 0;
  /// What a name stands for, a later declaration replacing an earlier
  /// one: an identifier here, or a function in `funcs_`.
  ChunkArray<IdentInfo*> idents{200, true};
  IndexList* inputs = nullptr;
  IndexList* outputs = nullptr;
  IndexList* locals = nullptr;
  IndexList* asserts = nullptr;
  IndexList* usr_consts = nullptr;
  IndexList* usr_funcs = nullptr;
  IndexList* usr_procs = nullptr;
  int n_inputs = 0;
  int n_outputs = 0;
  int n_locals = 0;
  int n_asserts = 0;
  int n_types = 0;
  int n_usr_consts = 0;
  int n_usr_procs = 0;
  IndexList* type_names = nullptr;
  /// All descriptors, newest first.
  QvType* types = nullptr;

 protected:
  /// Where operator and blank nodes are made from now on.
  void make_operators_in(NodeStore* store) { operators_ = store; }
  /// Frees the operator nodes the reader made, once the normalised net
  /// stands for them; false, freeing nothing, when some name that is not
  /// normalised was given an equation and still refers to them.
  bool release_parsed();

 private:
  IdentInfo* new_ident(int name, IdentKind kind, QvType* type, int clock);
  /// A blank descriptor at the head of `types`.
  QvType* new_type();
  /// The type of a node whose operands that decide it are typed already.
  QvType* type_from_sources(Exp* e);
  Exp* new_node(Exp&& e);
  /// "name : type; ..." of a parameter list alternating names and types.
  void write_params(const IndexList* params, PtyStream& out);

  /// Leaves live as long as the net; operator nodes go to `operators_`.
  NodeStore leaves_;
  std::deque<QvType> type_store_;
  /// Named types by name, tuple types by their members' type names.
  ChunkArray<QvType*> named_types_{200, true};
  std::map<std::vector<int>, QvType*> tuple_types_;
  std::deque<IdentInfo> ident_store_;
  std::deque<FuncInfo> func_store_;
  std::vector<std::unique_ptr<IndexList>> tuple_name_lists_;
  std::unordered_map<int, FuncInfo*> funcs_;
  std::unordered_map<int, const IndexList*> tuple_names_;
  size_t made_size_ = 0;
  /// The stack of `type`, kept between calls: asked once per node, it
  /// would otherwise be allocated as often.
  std::vector<std::pair<Exp*, int>> type_walk_;
  NodeStore parsed_;
  NodeStore* operators_ = &parsed_;
  /// An input or a constant was given an equation.
  bool defines_other_ = false;
};
