// korvel-run: the headless developer tool. One mode per invocation, on one
// qv file; every mode is a row of kModes.
#include <cstdio>
#include <cstring>

#include "net/net.h"
#include "reader/lexer.h"
#include "reader/parser.h"
#include "support/pty_stream.h"
#include "support/string_table.h"

namespace {

int print_tokens(const char* path) { return QvLexTest(path); }

int print_net(const char* path) {
  SymbolTable table;
  Net net(&table);
  if (QvParse(&net, &table, path) != 0) {
    std::fflush(stdout);
    std::fputs("syntax errors...\n", stderr);
    return 1;
  }
  PtyStream out(80);
  net.print_program(out, false);
  return 0;
}

struct Mode {
  const char* option;
  int (*run)(const char* path);
  const char* help;
};

const Mode kModes[] = {
    {"--tokens", print_tokens, "write the token stream, one token a line"},
    {"--print=net", print_net, "parse, then write the program back as qv text"},
};

int usage(const char* problem) {
  std::fprintf(stderr, "korvel-run: %s\nusage: korvel-run MODE FILE\nmodes:\n", problem);
  for (const Mode& m : kModes) std::fprintf(stderr, "  %-14s %s\n", m.option, m.help);
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return usage("no mode given");
  for (const Mode& m : kModes) {
    if (std::strcmp(argv[1], m.option) != 0) continue;
    if (argc != 3) return usage(argc < 3 ? "no qv file given" : "more than one qv file given");
    return m.run(argv[2]);
  }
  char problem[300];
  std::snprintf(problem, sizeof problem, "unknown mode '%s'", argv[1]);
  return usage(problem);
}
