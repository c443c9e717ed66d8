// An output stream for program text: indents each new line by a level and
// breaks lines that would reach the width.
#pragma once

#include <cstdio>
#include <memory>

#include "support/diagnostics.h"

class PtyStream {
 public:
  /// On standard output.
  explicit PtyStream(int width, const char* unit = nullptr);
  /// On a stream the caller opened.
  PtyStream(FILE* stream, int width, const char* unit = nullptr);
  /// "stdout", "stderr", or a file opened for writing (fatal when it cannot be).
  PtyStream(const char* name, int width, const char* unit = nullptr);
  /// On a temporary file, to be copied into another stream later.
  static std::unique_ptr<PtyStream> temporary(int width, const char* unit = nullptr);
  PtyStream(const PtyStream&) = delete;
  PtyStream& operator=(const PtyStream&) = delete;
  /// Flushes; closes unless standard output or standard error.
  ~PtyStream();

  void tab() { ++level_; }
  void untab();
  void print(const char* fmt, ...) KORVEL_PRINTF(2, 3);
  void print(int n);
  void print(float x);
  void newline();
  void newline_flat();
  void flush() { fflush(stream_); }
  /// Copies the other stream's whole text here, taking this indentation.
  void copy(PtyStream& other);

  int level() const { return level_; }
  int column() const { return column_; }
  FILE* stream() const { return stream_; }

  static constexpr int kMaxUnit = 19;

 private:
  void init(int width, const char* unit);
  /// One piece of text that never contains a newline.
  void piece(const char* text, int length);

  FILE* stream_;
  char unit_[kMaxUnit + 1];
  int unit_length_ = 0;
  int level_ = 0;
  int column_ = 0;
  int width_ = 80;
};
