#include "fuzz/fuzz_input.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

namespace {

constexpr std::string_view kInputsLine = "\n-- inputs\n";

bool names(std::string_view line, std::string_view option) {
  return line.find(option) != std::string_view::npos;
}

std::string folder;

void remove_folder() {
  const std::string command = "rm -rf '" + folder + "'";
  if (std::system(command.c_str()) != 0) std::fprintf(stderr, "cannot remove %s\n", folder.c_str());
}

const std::string& scratch_folder() {
  if (folder.empty()) {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/korvel-fuzz-XXXXXX";
    if (!mkdtemp(pattern.data())) {
      std::perror("korvel fuzz: scratch folder");
      std::abort();
    }
    folder = pattern;
    std::atexit(remove_folder);
  }
  return folder;
}

}  // namespace

FuzzInput split_input(std::string_view data) {
  FuzzInput input;
  input.program = data;
  const size_t marker = data.find(kInputsLine);
  if (marker != std::string_view::npos) {
    input.program = data.substr(0, marker + 1);
    input.lines = data.substr(marker + kInputsLine.size());
  }
  if (data.starts_with("--")) {
    const std::string_view first = data.substr(0, data.find('\n'));
    input.load.minimise = !names(first, "no-minimise");
    input.load.bool_opt = names(first, "bool-opt");
    input.check = names(first, "check");
    input.print = names(first, "print");
  }
  return input;
}

std::string scratch_file(const char* name, std::string_view text) {
  const std::string path = scratch_folder() + "/" + name;
  FILE* f = std::fopen(path.c_str(), "wb");
  if (!f || std::fwrite(text.data(), 1, text.size(), f) != text.size() || std::fclose(f) != 0) {
    std::perror(path.c_str());
    std::abort();
  }
  return path;
}

}  // namespace fuzz
