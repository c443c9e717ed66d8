// korvel-run: the headless developer tool. One mode per invocation, on one
// qv file; every mode is a row of kModes.
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string>

#include "batch/batch_run.h"
#include "batch/run_stats.h"
#include "net/net.h"
#include "reader/lexer.h"
#include "reader/parser.h"
#include "reader/pnet_interface.h"
#include "support/diagnostics.h"
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

// Options of the loading modes and the batch run, set by flags anywhere on
// the line; the loading modes use its `load` alone.
BatchOptions options;
bool strict = false;

struct Flag {
  const char* option;
  /// Takes `value` when the flag is given; a flag may clear an option that
  /// is on by default.
  bool* field;
  bool value;
  const char* help;
};

const Flag kFlags[] = {
    {"--no-minimise", &options.load.minimise, false, "keep one class per node (no minimal network)"},
    {"--bool-opt", &options.load.bool_opt, true, "fold true and false out of Boolean operators"},
    {"--check", &options.check, true, "batch: INPUTS is a recorded trace whose outputs must recur"},
    {"--strict", &strict, true, "refuse (status 1) a program that loads with a warning"},
};

// Options of the batch run that name a file, given as "OPTION FILE".
struct FileFlag {
  const char* option;
  const char** path;
  const char* help;
};

const FileFlag kFileFlags[] = {
    {"--vcd", &options.vcd, "batch: also write the run to FILE as a Value Change Dump"},
    {"--svg", &options.svg, "batch: also draw the run in FILE as an SVG chronogram"},
};

// The loading modes: the program is loaded as the simulator loads it, and a
// failure ends the process with the loader's messages and status 1.
int print_norm(const char* path) {
  SymbolTable table;
  PNetInterface program(path, &table, options.load);
  program.net->print();
  return 0;
}

int print_classes(const char* path) {
  SymbolTable table;
  PNetInterface program(path, &table, options.load);
  program.net->print_classes();
  return 0;
}

int print_stats(const char* path) {
  SymbolTable table;
  PNetInterface program(path, &table, options.load);
  print_net_counts(*program.net);
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
    {"--print=norm", print_norm, "load, then write the normalised equations"},
    {"--print=classes", print_classes, "load, then write the classes of the minimal network"},
    {"--stats", print_stats, "load, then write the numbers of nodes, requests and classes"},
};

int usage(const char* problem) {
  std::fprintf(stderr,
               "korvel-run: %s\nusage: korvel-run MODE FILE\n"
               "       korvel-run [FLAGS] PROGRAM.qv [INPUTS]   (batch simulator)\nmodes:\n",
               problem);
  for (const Mode& m : kModes) std::fprintf(stderr, "  %-14s %s\n", m.option, m.help);
  std::fprintf(stderr, "flags:\n");
  for (const Flag& f : kFlags) std::fprintf(stderr, "  %-14s %s\n", f.option, f.help);
  for (const FileFlag& f : kFileFlags) {
    std::fprintf(stderr, "  %-14s %s\n", (std::string(f.option) + " FILE").c_str(), f.help);
  }
  std::fprintf(stderr,
               "  %-14s batch: run N steps, every input at its initial value (false, 0, 0.0,\n"
               "  %-14s the first constant of its type), without INPUTS and without a trace;\n"
               "  %-14s with --stats, then write the counts, the time of each load phase,\n"
               "  %-14s the steps per second, the peak memory and the resident memory\n",
               "--steps N", "", "", "");
  return 1;
}

// The N of "--steps N": a number of steps a run can count.
bool read_steps(const char* text, int* steps) {
  const char* end = text + std::strlen(text);
  unsigned value = 0;
  const auto [stop, problem] = std::from_chars(text, end, value);
  if (problem != std::errc() || stop != end || end == text || value > INT_MAX) return false;
  *steps = static_cast<int>(value);
  return true;
}

// A run of --steps takes the program alone, and --stats as a flag.
int run_steps(int argc, char** argv) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--stats") == 0) {
      options.stats = true;
    } else {
      argv[kept++] = argv[i];
    }
  }
  if (kept < 2) return usage("no qv file given");
  if (argv[1][0] == '-') return usage("--steps runs a program; it takes no mode but --stats");
  if (kept > 2) return usage("--steps reads no INPUTS file");
  if (options.check) return usage("--check needs an INPUTS file, which --steps does not read");
  options.program = argv[1];
  return run_batch(options);
}

int run_tool(int argc, char** argv) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    const Flag* flag = nullptr;
    for (const Flag& f : kFlags) {
      if (std::strcmp(argv[i], f.option) == 0) flag = &f;
    }
    const FileFlag* file_flag = nullptr;
    for (const FileFlag& f : kFileFlags) {
      if (std::strcmp(argv[i], f.option) == 0) file_flag = &f;
    }
    if (flag) {
      *flag->field = flag->value;
    } else if (file_flag) {
      if (++i == argc) return usage((std::string(file_flag->option) + " needs a FILE").c_str());
      *file_flag->path = argv[i];
    } else if (std::strcmp(argv[i], "--steps") == 0) {
      if (++i == argc) return usage("--steps needs a number of steps");
      if (!read_steps(argv[i], &options.steps)) {
        return usage(("--steps needs a number of steps from 0 to 2147483647, not '" +
                      std::string(argv[i]) + "'").c_str());
      }
    } else {
      argv[kept++] = argv[i];
    }
  }
  argc = kept;
  set_strict_loading(strict);
  if (options.steps >= 0) return run_steps(argc, argv);
  if (argc < 2) return usage("no mode given");
  if (argv[1][0] != '-') {
    if (argc > 3) return usage("more than one inputs file given");
    options.program = argv[1];
    options.inputs = argc == 3 ? argv[2] : nullptr;
    return run_batch(options);
  }
  for (const Mode& m : kModes) {
    if (std::strcmp(argv[1], m.option) != 0) continue;
    if (argc != 3) return usage(argc < 3 ? "no qv file given" : "more than one qv file given");
    return m.run(argv[2]);
  }
  char problem[300];
  std::snprintf(problem, sizeof problem, "unknown mode '%s'", argv[1]);
  return usage(problem);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run_tool(argc, argv);
  } catch (const ProcessEnd& end) {
    return end.status;
  }
}
