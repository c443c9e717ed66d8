#include "support/diagnostics.h"

#include <unistd.h>

#include <cstdarg>

namespace {

int verbose_level = 0;
int show_controls = 0;
const char* tool_name = " ";
const char spinner_glyphs[4] = {'|', '/', '-', '\\'};
int spinner_index = 0;
int spinner_counter = 1;
int errors = 0;
bool strict_loading = false;
FILE* trace = nullptr;

// The message after its header; stderr is unbuffered, so the report is
// complete before the exit.
void message_line(const char* fmt, va_list args) {
  vfprintf(stderr, fmt, args);
  fputc('\n', stderr);
}

// With show-controls on, a leading carriage return or backspace would erase
// the line being watched, so it is shown as a marker instead.
void progress(const char* fmt, va_list args) {
  if (show_controls && fmt[0] == '\r') {
    fputs(" \n^R", stderr);
    ++fmt;
  } else if (show_controls && fmt[0] == '\b') {
    fputs("\n^B", stderr);
    ++fmt;
  }
  vfprintf(stderr, fmt, args);
  fflush(stderr);
}

}  // namespace

void end_process(int status) { throw ProcessEnd{status}; }

void internal_error(const char* fmt, ...) {
  fputs("Sorry, Internal Error :\n", stderr);
  va_list args;
  va_start(args, fmt);
  message_line(fmt, args);
  va_end(args);
  end_process(1);
}

void error(const char* fmt, ...) {
  fprintf(stderr, "%s Error :\n", tool_name);
  va_list args;
  va_start(args, fmt);
  message_line(fmt, args);
  va_end(args);
  end_process(1);
}

int warning(const char* fmt, ...) {
  fprintf(stderr, "%s Warning :\n", tool_name);
  va_list args;
  va_start(args, fmt);
  message_line(fmt, args);
  va_end(args);
  return 0;
}

void source_warning(const char* file, int line, const char* fmt, ...) {
  fprintf(stderr, "%s:%d: warning: ", file, line);
  va_list args;
  va_start(args, fmt);
  message_line(fmt, args);
  va_end(args);
  if (strict_loading) end_process(1);
}

void set_strict_loading(bool on) {
  strict_loading = on;
}

int count_error(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  int written = vfprintf(stderr, fmt, args);
  va_end(args);
  ++errors;
  return written;
}

int error_stop() {
  if (errors == 0) return 0;
  fprintf(stderr, "*** %d Errors stop\n", errors);
  end_process(1);
}

int error_count() { return errors; }

void reset_diagnostics() {
  verbose_level = 0;
  show_controls = 0;
  tool_name = " ";
  spinner_index = 0;
  spinner_counter = 1;
  errors = 0;
  trace = nullptr;
  strict_loading = false;
}

int verbose(const char* fmt, ...) {
  if (verbose_level) {
    va_list args;
    va_start(args, fmt);
    progress(fmt, args);
    va_end(args);
  }
  return verbose_level;
}

int verbose_at(int level, const char* fmt, ...) {
  if (verbose_level && level <= verbose_level) {
    va_list args;
    va_start(args, fmt);
    progress(fmt, args);
    va_end(args);
  }
  return verbose_level;
}

int spin_step(int period, bool on_terminal) {
  if (!verbose_level || !on_terminal) return verbose_level;
  if (spinner_counter < period) {
    ++spinner_counter;
    return verbose_level;
  }
  spinner_counter = 0;
  fprintf(stderr, "%c\b", spinner_glyphs[spinner_index]);
  fflush(stderr);
  spinner_index = (spinner_index + 1) % 4;
  return verbose_level;
}

// Asking the terminal is a system call, and the minimal network spins once
// per split: it is asked only when the spinner may show.
int spin(int period) { return verbose_level ? spin_step(period, isatty(2)) : 0; }

void set_verbose() { verbose_level = 1; }
void set_verbose_level(int level) { verbose_level = level; }
int get_verbose() { return verbose_level; }
void set_show_controls(bool on) { show_controls = on; }
void set_tool_name(const char* name) { tool_name = name; }

void set_trace_stream(FILE* stream) { trace = stream; }
FILE* trace_stream() { return trace; }

int trace_printf(const char* fmt, ...) {
  if (trace) {
    va_list args;
    va_start(args, fmt);
    vfprintf(trace, fmt, args);
    va_end(args);
  }
  // A null stream flushes every output stream, which is harmless.
  return fflush(trace);
}
