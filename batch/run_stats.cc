#include "batch/run_stats.h"

#include <sys/resource.h>
#include <unistd.h>

#include <cstdio>

#include "support/phase_clock.h"

void print_net_counts(const NormNet& net) {
  std::printf("nodes: %d\nrequests: %d\nclasses: %d\n", net.n_nodes, net.n_requests, net.n_classes);
}

void print_run_stats(const NormNet& net, int steps, double step_seconds) {
  print_net_counts(net);
  for (const PhaseTime& phase : phase_times()) {
    std::printf("%s: %.6f s\n", phase.name, phase.seconds);
  }
  std::printf("steps: %d in %.6f s\n", steps, step_seconds);
  if (steps > 0 && step_seconds > 0) std::printf("steps per second: %.0f\n", steps / step_seconds);
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  std::printf("peak memory: %ld KiB\n", usage.ru_maxrss);
  // What the loaded program holds while it runs: the load's own peak is
  // gone by then.
  long pages = 0;
  if (std::FILE* statm = std::fopen("/proc/self/statm", "r")) {
    if (std::fscanf(statm, "%*s %ld", &pages) != 1) pages = 0;
    std::fclose(statm);
  }
  if (pages > 0) std::printf("resident memory: %ld KiB\n", pages * (sysconf(_SC_PAGESIZE) / 1024));
}
