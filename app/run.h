// The program start: wires loading, evaluation and the window together.
#pragma once

/// Loads the qv file at `path` and runs the simulator; returns only if a
/// stage returns.
void run(int argc, char** argv, const char* path);
