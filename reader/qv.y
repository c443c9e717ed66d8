/* The qv grammar. Every operator occurrence becomes a fresh Exp of the net
   being read; declarations go straight into the net. The parser is pure:
   all it works on is in the QvParseContext of one parse. */

%code requires {
#include "reader/exp_list.h"
#include "reader/lexer.h"

class IndexList;
struct Exp;
struct QvParseContext;
}

%code {
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "net/net.h"
#include "reader/held_lists.h"
#include "reader/lexer.h"
#include "reader/load_check.h"
#include "reader/parse_actions.h"
#include "reader/parser.h"
#include "support/diagnostics.h"
#include "support/file_handle.h"

// Classic yacc limits: 500 states at most. Bison reports exhaustion when
// its last slot is filled, so one spare slot lets the 500th state in.
#define YYINITDEPTH 501
#define YYMAXDEPTH 501

// One parse in progress: where the actions put what they read.
struct QvParseContext {
  Net* net;
  SymbolTable* table;
  QvLexer* lexer;
  /// The file as named on the command line, for warnings.
  const char* file;
  /// The lists on the parser's stack, freed however the parse ends.
  HeldLists held;
  std::vector<EquationPlace> equations;

  template <class List>
  List* keep(List* list) {
    return held.keep(list);
  }
  template <class List>
  List* pass(List* list) {
    return held.pass(list);
  }

  int intern(std::string_view text) { return table->intern_text(text); }
  int intern(TokenText text) { return intern(text.view()); }

  void warn(const char* fmt, const char* name) { source_warning(file, lexer->token_line(), fmt, name); }

  /// An equation for `name` is about to be read: whatever the name is, the
  /// equation becomes its definition.
  void defining(int name) {
    const IdentInfo* info = net->ident_info(name);
    if (!info) return;
    const char* text = table->text(name);
    if (info->kind == ID_INPUT) {
      warn("'%s' is an input; its equation takes the input's place, and no value given "
           "to the input is read", text);
    } else if (info->kind != ID_OUTPUT && info->kind != ID_LOCAL) {
      warn("'%s' is a constant; its equation is not used", text);
    } else if (info->def) {
      warn("'%s' is defined twice; the later equation is used", text);
    }
  }
  void defining(IndexList* names) {
    for (IndexList* n = names; n; n = n->next) defining(n->value);
  }

  /// Literals are read as "%d" reads them. 2147483648 alone is left
  /// unwarned: it is how the smallest int is written, negated.
  Exp* int_literal(TokenText text) {
    // Nine digits are always below the bound.
    if (text.length > 9 && std::strtoll(text.text, nullptr, 10) > 2147483648LL) {
      warn("integer literal '%s' does not fit in 32 bits; its low 32 bits are used", text.text);
    }
    return net->int_literal(intern(text));
  }

  Exp* make_exp(OpKind kind, std::initializer_list<Exp*> operands) {
    return net->new_exp(kind, operands);
  }
  Exp* make_exp(OpKind kind, const std::vector<Exp*>& operands) {
    return net->new_exp(kind, operands);
  }

  Exp* make_tuple(ExpList* list) { return make_exp(TUPLE_n, exp_list_take(pass(list))); }
};

namespace {

int yylex(YYSTYPE* value, QvParseContext& ctx) { return ctx.lexer->next_token(&value->text); }

void yyerror(QvParseContext& ctx, const char* message) {
  if (std::strcmp(message, "memory exhausted") == 0) message = "yacc stack overflow";
  std::printf("%s     - at line %d\n", message, ctx.lexer->line());
}

int parse(Net* net, SymbolTable* table, QvLexer& lexer, const char* file,
          std::vector<EquationPlace>* equations = nullptr) {
  QvParseContext ctx{net, table, &lexer, file, {}, {}};
  if (yyparse(ctx) != 0) return 1;
  if (equations) *equations = std::move(ctx.equations);
  return 0;
}

}  // namespace
}

%define api.pure full
%param {QvParseContext& ctx}

%union {
  TokenText text;
  int name;
  Exp* exp;
  IndexList* names;
  ExpList* list;
}

%token XAnd 257 XArrow 258 XAssert 259 XConst 261 XCurrent 262 XDiv 263 XElse 264
%token XFunction 265 XGe 267 XIf 270 XImpl 272 XLe 273 XLet 274 XMod 275 XNe 276
%token XNode 277 XNor 278 XNot 279 XOr 280 XPre 281 XReturns 284 XTel 285 XType 286
%token XThen 287 XVar 289 XWhen 290 XXor 291 XPower 292
%token <text> XBool 260 XFalse 266 XIConst 268 XIdf 269 XInt 271 XRConst 282 XReal 283
%token <text> XTrue 288

%precedence XElse
%left XArrow
%left XOr XXor
%left XAnd
%nonassoc XImpl '=' XNe '<' XLe XGe '>'
%precedence XNot
%left '+' '-'
%left '*' '/' '%' XMod XDiv
%left XWhen XPower
%precedence UMINUS XInt XReal XPre XCurrent

%type <name> type predefined_type named_type clock ident
%type <names> ident_list params param
%type <exp> expr call constant
%type <list> expr_list1 expr_list2

%expect 0

%%

program
  : %empty
  | declarations node
  | node
  ;

declarations
  : declaration
  | declarations declaration
  ;

declaration
  : const_decl
  | type_decl
  | function_decl
  ;

const_decl
  : XConst const_items '.'
  | XConst const_items ';'
  ;

const_items
  : const_item
  | const_items ';' const_item
  ;

const_item
  : '(' ident_list ':' type ')' XWhen clock
      { declare_names(ctx.net, &Net::add_usr_const, ctx.pass($2), $4, $7); }
  | ident_list ':' type { declare_names(ctx.net, &Net::add_usr_const, ctx.pass($1), $3, ctx.net->true_name); }
  ;

type
  : predefined_type
  | named_type
  ;

predefined_type
  : XBool { $$ = ctx.intern($1); }
  | XInt { $$ = ctx.intern($1); }
  | XReal { $$ = ctx.intern($1); }
  ;

named_type
  : ident
  ;

clock
  : ident
  | XTrue { $$ = ctx.intern("true"); }
  ;

type_decl
  : XType type_items ';'
  | XType type_items '.'
  ;

type_items
  : type_item
  | type_items ',' type_item
  ;

type_item
  : extern_type
  | enum_type
  ;

extern_type
  : ident { ctx.net->declare_type($1); }
  ;

enum_type
  : ident '=' '(' ident_list ')' { ctx.net->declare_enum_type($1, ctx.pass($4)); }
  ;

ident
  : XIdf { $$ = ctx.intern($1); }
  ;

function_decl
  : XFunction ident '(' params ')' XReturns '(' params ')' terminator
      { declare_function(ctx.net, $2, ctx.pass($4), ctx.pass($8)); }
  ;

params
  : param
  | params ';' param { IndexList::concat($1, ctx.pass($3)); $$ = $1; }
  ;

param
  : ident ':' type { $$ = ctx.keep(param_pair($1, $3)); }
  ;

terminator
  : %empty
  | ';'
  | '.'
  | ','
  ;

node
  : XNode node_header locals_opt body terminator
  ;

node_header
  : ident '(' inputs ')' XReturns '(' outputs ')' ';' { ctx.net->set_node_name($1); }
  ;

inputs
  : input_item
  | inputs ';' input_item
  ;

input_item
  : '(' ident_list ':' type ')' XWhen clock
      { declare_names(ctx.net, &Net::add_input, ctx.pass($2), $4, $7); }
  | ident_list ':' type { declare_names(ctx.net, &Net::add_input, ctx.pass($1), $3, ctx.net->true_name); }
  ;

outputs
  : output_item
  | outputs ';' output_item
  ;

output_item
  : '(' ident_list ':' type ')' XWhen clock
      { declare_names(ctx.net, &Net::add_output, ctx.pass($2), $4, $7); }
  | ident_list ':' type { declare_names(ctx.net, &Net::add_output, ctx.pass($1), $3, ctx.net->true_name); }
  ;

locals_opt
  : %empty
  | XVar locals ';'
  ;

locals
  : local_item
  | locals ';' local_item
  ;

local_item
  : '(' ident_list ':' type ')' XWhen clock
      { declare_names(ctx.net, &Net::add_local, ctx.pass($2), $4, $7); }
  | ident_list ':' type { declare_names(ctx.net, &Net::add_local, ctx.pass($1), $3, ctx.net->true_name); }
  ;

body
  : XLet XTel
  | XLet equations XTel
  ;

equations
  : equation
  | equations equation
  ;

equation
  : XAssert expr ';' {
      ctx.net->add_assert($2);
      ctx.equations.push_back({0, $2, ctx.lexer->token_line()});
    }
  | ident '=' expr ';' {
      ctx.defining($1);
      ctx.net->define($1, $3);
      ctx.equations.push_back({$1, $3, ctx.lexer->token_line()});
    }
  | '(' ident_list ')' '=' expr ';' {
      ctx.defining($2);
      ctx.equations.push_back({$2->value, $5, ctx.lexer->token_line()});
      ctx.net->define_tuple(ctx.pass($2), $5);
    }
  ;

ident_list
  : ident { $$ = ctx.keep(new IndexList($1)); }
  | ident_list ',' ident { IndexList::append(&$1, $3); $$ = $1; }
  ;

expr
  : '(' expr ')' { $$ = $2; }
  | constant
  | ident { $$ = qvnet::GetIdentInfo(ctx.net, $1); }
  | XNot expr { $$ = ctx.make_exp(NOT_n, {$2}); }
  | XInt expr { $$ = convert(ctx.net, TO_INT, $2); }
  | XReal expr { $$ = convert(ctx.net, TO_REAL, $2); }
  | '-' expr %prec UMINUS { $$ = ctx.make_exp(UMINUS_n, {$2}); }
  | XPre expr { $$ = ctx.make_exp(PRE_n, {$2}); }
  | XCurrent expr { $$ = ctx.make_exp(CURRENT_n, {$2}); }
  | expr XArrow expr { $$ = ctx.make_exp(ARROW_n, {$1, $3}); }
  | expr XWhen expr { $$ = ctx.make_exp(WHEN_n, {$1, $3}); }
  | XIf expr XThen expr XElse expr { $$ = ctx.make_exp(IF_n, {$2, $4, $6}); }
  | expr XXor expr { $$ = ctx.make_exp(XOR_n, {$1, $3}); }
  | expr XOr expr { $$ = ctx.make_exp(OR_n, {$1, $3}); }
  | expr XAnd expr { $$ = ctx.make_exp(AND_n, {$1, $3}); }
  | expr XImpl expr { $$ = ctx.make_exp(IMPL_n, {$1, $3}); }
  | expr '=' expr { $$ = ctx.make_exp(EQUAL_n, {$1, $3}); }
  | expr XNe expr { $$ = ctx.make_exp(NEQ_n, {$1, $3}); }
  | expr '<' expr { $$ = ctx.make_exp(LT_n, {$1, $3}); }
  | expr XLe expr { $$ = ctx.make_exp(LTE_n, {$1, $3}); }
  | expr XGe expr { $$ = ctx.make_exp(GTE_n, {$1, $3}); }
  | expr '>' expr { $$ = ctx.make_exp(GT_n, {$1, $3}); }
  | expr '*' expr { $$ = ctx.make_exp(TIMES_n, {$1, $3}); }
  | expr '/' expr { $$ = ctx.make_exp(SLASH_n, {$1, $3}); }
  | expr '%' expr { $$ = ctx.make_exp(MOD_n, {$1, $3}); }
  | expr XMod expr { $$ = ctx.make_exp(MOD_n, {$1, $3}); }
  | expr XDiv expr { $$ = ctx.make_exp(DIV_n, {$1, $3}); }
  | expr '+' expr { $$ = ctx.make_exp(PLUS_n, {$1, $3}); }
  | expr '-' expr { $$ = ctx.make_exp(MINUS_n, {$1, $3}); }
  | expr XPower expr { $$ = ctx.make_exp(POWER_n, {$1, $3}); }
  | call
  | '#' '(' expr_list2 ')' { $$ = ctx.make_exp(DIESE_n, exp_list_take(ctx.pass($3))); }
  | XNor '(' expr_list1 ')' { $$ = ctx.make_exp(NOR_n, exp_list_take(ctx.pass($3))); }
  | '(' expr_list2 ')' { $$ = ctx.make_tuple($2); }
  ;

call
  : ident '(' expr ')' { $$ = ctx.net->new_call($1, $3); }
  | ident '(' expr_list2 ')' { $$ = ctx.net->new_call($1, ctx.make_tuple($3)); }
  ;

expr_list2
  : expr_list1 ',' expr { $$ = exp_list_join($1, exp_list_one($3)); }
  ;

expr_list1
  : expr { $$ = ctx.keep(exp_list_one($1)); }
  | expr_list2
  ;

constant
  : XTrue { $$ = ctx.net->constant(ctx.intern("true")); }
  | XFalse { $$ = ctx.net->constant(ctx.intern("false")); }
  | XIConst { $$ = ctx.int_literal($1); }
  | XRConst { $$ = ctx.net->real_literal(ctx.intern($1)); }
  ;

%%

int QvParse(Net* net, SymbolTable* table, const char* path,
            std::vector<EquationPlace>* equations) {
  const FileHandle in(std::fopen(path, "r"));
  if (!in) {
    std::fprintf(stderr, "QvParse : Can't open file '%s'\n", path);
    return 1;
  }
  QvLexer lexer(in.get());
  return parse(net, table, lexer, path, equations);
}

int QvParseText(Net* net, SymbolTable* table, std::string_view source) {
  QvLexer lexer(source);
  return parse(net, table, lexer, "(text)");
}
