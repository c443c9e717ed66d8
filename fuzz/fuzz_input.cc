#include "fuzz/fuzz_input.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace fuzz {

namespace {

constexpr std::string_view kInputsLine = "\n-- inputs\n";

bool names(std::string_view line, std::string_view option) {
  return line.find(option) != std::string_view::npos;
}

/// The folder of this process's scratch files, removed with everything in
/// it when the process ends normally, as the fuzzer ends after its time.
class ScratchFolder {
 public:
  ScratchFolder() {
    const char* tmp = std::getenv("TMPDIR");
    std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/korvel-fuzz-XXXXXX";
    if (!mkdtemp(pattern.data())) {
      std::perror("korvel fuzz: scratch folder");
      std::abort();
    }
    path_ = pattern;
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code failed;
    std::filesystem::remove_all(path_, failed);
    if (failed) std::fprintf(stderr, "cannot remove %s\n", path_.c_str());
  }

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

const std::string& scratch_folder() {
  static const ScratchFolder folder;
  return folder.path();
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
