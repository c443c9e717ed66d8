// Runs a fuzz target on each input file twice in one process, as the
// fuzzer runs millions of inputs in one: the second run must write the
// same bytes as the first, and neither may leave a file open. Memory a run
// leaves unreachable is reported by the leak checker at the end. A finding
// of the fuzzer means little if one run changes the next.
//   {load,step}_rerun FILE...
#include <dirent.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

namespace {

int open_descriptors() {
  int n = 0;
  DIR* d = opendir("/proc/self/fd");
  if (!d) {
    std::perror("/proc/self/fd");
    std::abort();
  }
  while (readdir(d)) ++n;
  closedir(d);
  return n;
}

/// What one run of `input` writes on standard output and standard error,
/// as one text.
std::string output_of(const std::string& input) {
  std::fflush(stdout);
  std::fflush(stderr);
  FILE* capture = std::tmpfile();
  if (!capture) {
    std::perror("rerun check: temporary file");
    std::abort();
  }
  const int saved_out = dup(1);
  const int saved_err = dup(2);
  dup2(fileno(capture), 1);
  dup2(fileno(capture), 2);
  LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(input.data()), input.size());
  std::fflush(stdout);
  std::fflush(stderr);
  dup2(saved_out, 1);
  dup2(saved_err, 2);
  close(saved_out);
  close(saved_err);
  std::string text;
  std::rewind(capture);
  for (int c; (c = std::fgetc(capture)) != EOF;) text += static_cast<char>(c);
  std::fclose(capture);
  return text;
}

}  // namespace

int main(int argc, char** argv) {
  int failures = 0;
  for (int i = 1; i < argc; ++i) {
    std::ifstream file(argv[i], std::ios::binary);
    if (!file) {
      std::fprintf(stderr, "%s: cannot be read\n", argv[i]);
      ++failures;
      continue;
    }
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    const int before = open_descriptors();
    const std::string first = output_of(input);
    const int between = open_descriptors();
    const std::string second = output_of(input);
    if (between != before || open_descriptors() != before) {
      std::fprintf(stderr, "%s: a run left a file open\n", argv[i]);
      ++failures;
    }
    if (second != first) {
      std::fprintf(stderr, "%s: the second run wrote\n%s\nthe first\n%s\n", argv[i], second.c_str(),
                   first.c_str());
      ++failures;
    }
  }
  std::printf("rerun check: %d inputs run twice, %d failed\n", argc - 1, failures);
  // Before the leak checker, which ends a process that leaked at once.
  std::fflush(stdout);
  return failures == 0 ? 0 : 1;
}
