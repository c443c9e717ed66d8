// The parse entry of the reader: fills a Net from one qv source file.
#pragma once

class Net;
class SymbolTable;

/// Parses the file at `path` into `net`, interning names into `table`.
/// Returns 0 when the whole file was accepted; 1 when it cannot be opened
/// (message on standard error) or after a syntax error or a parser stack
/// overflow (report on standard output). Lexical errors, undeclared names
/// and declaration errors end the process.
int QvParse(Net* net, SymbolTable* table, const char* path);
