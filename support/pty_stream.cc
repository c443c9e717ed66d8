#include "support/pty_stream.h"

#include <cstdarg>
#include <cstring>
#include <string>

#include "support/diagnostics.h"
#include "support/vformat.h"

namespace {

FILE* open_by_name(const char* name) {
  if (strcmp(name, "stdout") == 0) return stdout;
  if (strcmp(name, "stderr") == 0) return stderr;
  FILE* f = fopen(name, "w");
  if (!f) {
    fprintf(stderr, "can't open file '%s'\n", name);
    end_process(1);
  }
  return f;
}

}  // namespace

PtyStream::PtyStream(int width, const char* unit) : stream_(stdout) { init(width, unit); }

PtyStream::PtyStream(FILE* stream, int width, const char* unit) : stream_(stream) { init(width, unit); }

PtyStream::PtyStream(const char* name, int width, const char* unit) : stream_(open_by_name(name)) {
  init(width, unit);
}

std::unique_ptr<PtyStream> PtyStream::temporary(int width, const char* unit) {
  FILE* f = tmpfile();
  if (!f) {
    fputs("can't open temporary file\n", stderr);
    end_process(1);
  }
  return std::make_unique<PtyStream>(f, width, unit);
}

PtyStream::~PtyStream() {
  fflush(stream_);
  if (stream_ != stdout && stream_ != stderr) fclose(stream_);
}

// A longer unit is cut to the field's room rather than refused: it only
// affects how far lines are pushed right.
void PtyStream::init(int width, const char* unit) {
  if (!unit) unit = "   ";
  unit_length_ = static_cast<int>(strnlen(unit, kMaxUnit));
  memcpy(unit_, unit, unit_length_);
  unit_[unit_length_] = '\0';
  width_ = width;
}

void PtyStream::untab() {
  if (level_ == 0) {
    fputs("PtyStream::untab : unbalanced untab\n", stderr);
    return;
  }
  --level_;
}

void PtyStream::piece(const char* text, int length) {
  column_ += length;
  if (column_ >= width_) {
    fputc('\n', stream_);
    fflush(stream_);
    column_ = length;
  }
  fwrite(text, 1, length, stream_);
}

void PtyStream::print(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  std::string text = vformat(fmt, args);
  va_end(args);
  const char* p = text.c_str();
  const char* end = p + text.size();
  while (p < end) {
    const char* segment_end = static_cast<const char*>(memchr(p, '\n', end - p));
    if (!segment_end) {
      piece(p, static_cast<int>(end - p));
      return;
    }
    piece(p, static_cast<int>(segment_end - p));
    newline();
    p = segment_end + 1;
  }
}

void PtyStream::print(int n) { print("%d", n); }

void PtyStream::print(float x) { print("%f", x); }

void PtyStream::newline() {
  newline_flat();
  for (int i = 0; i < level_; ++i) fputs(unit_, stream_);
  column_ = level_ * unit_length_;
}

void PtyStream::newline_flat() {
  fputc('\n', stream_);
  fflush(stream_);
  column_ = 0;
}

void PtyStream::copy(PtyStream& other) {
  other.flush();
  rewind(other.stream_);
  for (int c; (c = fgetc(other.stream_)) != EOF;) {
    if (c == '\n') {
      newline();
    } else {
      fputc(c, stream_);
      ++column_;
    }
  }
}
