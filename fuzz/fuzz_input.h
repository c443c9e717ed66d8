// The layout of one fuzz input: a qv program, optionally followed by the
// input lines of a batch run after a line "-- inputs". Both markers are qv
// comments, so every input of the corpus is a valid qv file as it stands.
// A first line starting with "--" may name run options: "no-minimise",
// "bool-opt", "check" (the lines are a trace to check) and "print" (write
// the loaded program in every printed form).
#pragma once

#include <string>
#include <string_view>

#include "norm/load_options.h"

namespace fuzz {

struct FuzzInput {
  std::string_view program;
  std::string_view lines;
  LoadOptions load;
  bool check = false;
  bool print = false;
};

FuzzInput split_input(std::string_view data);

/// Writes `text` to the file `name` of this process's scratch folder, which
/// goes when the process ends normally, and returns its path.
std::string scratch_file(const char* name, std::string_view text);

}  // namespace fuzz
