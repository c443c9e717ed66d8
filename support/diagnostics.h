// Process-wide reporting: fatal and non-fatal messages on standard error,
// an error counter, progress messages with a spinner, and the trace stream.
#pragma once

#include <cstdio>

#define KORVEL_PRINTF(f, a) __attribute__((format(printf, f, a)))

/// Thrown once a report that ends the process has been written. Only the
/// programs' `main`s and the X callback boundary catch it, and they end the
/// process with `status`; in between, destructors run as for any exception.
struct ProcessEnd {
  int status;
};

/// Ends the process with `status` through the boundary that catches it.
[[noreturn]] void end_process(int status);

/// A broken invariant of korvel itself: message on stderr, exit status 1.
[[noreturn]] void internal_error(const char* fmt, ...) KORVEL_PRINTF(1, 2);
/// A fault of the user's program or request: message on stderr, exit status 1.
[[noreturn]] void error(const char* fmt, ...) KORVEL_PRINTF(1, 2);
/// A report after which the process goes on.
int warning(const char* fmt, ...) KORVEL_PRINTF(1, 2);
/// A program that loads and runs, but probably not as its author meant:
/// "FILE:LINE: warning: " and the message, on its own line. Under
/// `set_strict_loading` the process ends with status 1 after writing it.
void source_warning(const char* file, int line, const char* fmt, ...) KORVEL_PRINTF(3, 4);
void set_strict_loading(bool on = true);
/// Writes the message alone and counts it; `error_stop` ends the process later.
int count_error(const char* fmt, ...) KORVEL_PRINTF(1, 2);
/// Ends the process with "*** N Errors stop" when anything was counted.
int error_stop();
int error_count();
/// Every setting and counter back to its value at process start (no errors
/// counted, no trace), so a test can load one program after another.
void reset_diagnostics();

/// Progress message, shown only when the verbose level is non-zero.
int verbose(const char* fmt, ...) KORVEL_PRINTF(1, 2);
/// Progress message, shown only when `level` is at most the verbose level.
int verbose_at(int level, const char* fmt, ...) KORVEL_PRINTF(2, 3);
/// Advances the spinner on a terminal; one glyph every `period` + 1 calls.
int spin(int period);
/// `spin` with the answer to "is standard error a terminal" given.
int spin_step(int period, bool on_terminal);
void set_verbose();
void set_verbose_level(int level);
int get_verbose();
void set_show_controls(bool on = true);
/// The text is not copied.
void set_tool_name(const char* name);

/// Null means no trace at all.
void set_trace_stream(FILE* stream);
FILE* trace_stream();
/// Writes to the trace stream when there is one, then flushes it.
int trace_printf(const char* fmt, ...) KORVEL_PRINTF(1, 2);
