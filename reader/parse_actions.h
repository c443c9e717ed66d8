// What the grammar's actions do to the Net, kept out of the grammar file so
// that the grammar reads as a grammar.
#pragma once

class IndexList;
class Net;
struct Exp;
struct QvType;

/// One of Net::add_usr_const, add_input, add_output, add_local.
using DeclareName = void (Net::*)(int name, QvType* type, int clock);

/// Declares every name of the list with the named type and the clock, in
/// list order, then frees the list.
void declare_names(Net* net, DeclareName declare, IndexList* names, int type_name, int clock);

/// Records a function from its parameter lists (alternating name and type
/// name); the net takes both lists.
void declare_function(Net* net, int name, IndexList* in_params, IndexList* out_params);

/// The two-element list (name, type name) of one parameter.
IndexList* param_pair(int name, int type_name);

enum Conversion { TO_REAL, TO_INT };

/// A call of int2real or real2int on `e`, declaring the function on its
/// first use in the process.
Exp* convert(Net* net, Conversion conversion, Exp* e);
/// Makes the next uses declare both functions again, for a process that
/// reads one program after another into fresh nets (the fuzz targets).
void reset_conversions();

namespace qvnet {
/// The reference leaf of a declared identifier; an undeclared one ends the
/// process.
Exp* GetIdentInfo(Net* net, int name);
}  // namespace qvnet
