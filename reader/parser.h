// The parse entry of the reader: fills a Net from qv source, read from a
// file or from memory.
#pragma once

#include <string_view>
#include <vector>

#include "reader/load_check.h"

class Net;
class SymbolTable;

/// Parses the file at `path` into `net`, interning names into `table`.
/// Returns 0 when the whole file was accepted; 1 when it cannot be opened
/// (message on standard error) or after a syntax error or a parser stack
/// overflow (report on standard output). Lexical errors, undeclared names
/// and declaration errors end the process.
/// `equations`, when given, receives where each equation was read.
int QvParse(Net* net, SymbolTable* table, const char* path,
            std::vector<EquationPlace>* equations = nullptr);
/// As QvParse, on source text in memory.
int QvParseText(Net* net, SymbolTable* table, std::string_view source);
