// The figures korvel-run prints about a loaded program and a run of it.
#pragma once

#include "norm/net_norm.h"

/// The numbers of nodes, requests and classes of the network.
void print_net_counts(const NormNet& net);
/// The counts, the time of each load phase, the time of `steps` steps and
/// their rate, and the peak memory of the process.
void print_run_stats(const NormNet& net, int steps, double step_seconds);
