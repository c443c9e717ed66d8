// Fills the two panels from a loaded program: one item per input and per
// output, in declaration order, chosen by the variable's type.
#pragma once

class InputPanel;
class OutputPanel;
class SimProgram;

/// Ends the process with status 1 at the first variable whose type has no
/// item: neither bool, int nor real, nor a declared type with constants.
void build_panels(SimProgram& program, InputPanel& inputs, OutputPanel& outputs);
