// The process guard itself: an exit inside a run ends only the run, with
// its status, its files closed and its heap released, while storage that a
// static still holds survives into the next run.
#include <dirent.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "fuzz/process_guard.h"

namespace {

int failures = 0;

void expect(bool ok, const char* what) {
  if (ok) return;
  std::fprintf(stderr, "guard_test: %s\n", what);
  ++failures;
}

int open_descriptors() {
  int n = 0;
  DIR* d = opendir("/proc/self/fd");
  while (readdir(d)) ++n;
  closedir(d);
  return n;
}

// Grown inside runs, as the engine's work stacks are.
std::vector<int>& kept_stack() {
  static std::vector<int> stack;
  return stack;
}

}  // namespace

int main() {
  auto returns = [] {};
  expect(fuzz::run_guarded(returns) == -1, "a run that returns reports -1");

  const int before = open_descriptors();
  auto exits = [] {
    std::FILE* f = std::fopen("/dev/null", "r");
    expect(f != nullptr, "a run can open a file");
    std::vector<int>* lost = new std::vector<int>(1000, 7);
    lost->push_back(1);
    std::exit(3);
  };
  expect(fuzz::run_guarded(exits) == 3, "an exit inside a run gives its status");
  expect(open_descriptors() == before, "the files of an exited run are closed");

  for (int round = 0; round < 3; ++round) {
    auto grows = [] {
      for (int i = 0; i < 10000; ++i) kept_stack().push_back(i);
      std::exit(1);
    };
    fuzz::run_guarded(grows);
  }
  // Reading the kept storage after the runs is what would fail, under the
  // sanitizers, had the guard freed it.
  long sum = 0;
  for (int v : kept_stack()) sum += v;
  expect(kept_stack().size() == 30000 && sum == 3L * 9999 * 10000 / 2,
         "storage held by a static survives the runs that grew it");

  if (failures == 0) std::puts("guard_test: 4 passed, 0 failed");
  return failures == 0 ? 0 : 1;
}
