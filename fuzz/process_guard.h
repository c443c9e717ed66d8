// Runs one fuzz input the way a whole korvel process would run it, inside
// the fuzzer's own process. A fatal error of the program ends with exit(1);
// under the guard that exit ends the run instead: the run's C++ heap
// blocks are freed and its files closed, as the end of a process would, and
// the fuzzer goes on with the next input. A crash, a hang or a sanitizer
// report stays what it is.
//
// The fuzz targets link with -Wl,--wrap=exit,--wrap=fopen,--wrap=tmpfile,
// --wrap=fclose so that every exit and every file of the core passes here.
#pragma once

namespace fuzz {

/// Runs `body(arg)`; returns -1 when it returned, or the status it gave
/// exit(). Not reentrant.
int run_guarded(void (*body)(void* arg), void* arg);

template <typename F>
int run_guarded(F& body) {
  return run_guarded([](void* f) { (*static_cast<F*>(f))(); }, &body);
}

}  // namespace fuzz
