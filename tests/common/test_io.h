// What the tests share: texts written to files, and the text a piece of
// code writes to a stream.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <type_traits>

#include "support/diagnostics.h"

/// A text (a qv program, input lines, resources) in a file of its own
/// under the test temporary folder, removed when the object goes.
class ProgramFile {
 public:
  explicit ProgramFile(const std::string& source);
  ProgramFile(const ProgramFile&) = delete;
  ProgramFile& operator=(const ProgramFile&) = delete;
  ~ProgramFile();
  const char* path() const { return path_.c_str(); }

 private:
  std::string path_;
};

/// Everything written to `file` so far; the position is left at the end.
std::string file_text(FILE* file);

/// What `write` prints on standard output or standard error.
template <class Write>
std::string stdout_of(Write write) {
  testing::internal::CaptureStdout();
  write();
  return testing::internal::GetCapturedStdout();
}
template <class Write>
std::string stderr_of(Write write) {
  testing::internal::CaptureStderr();
  write();
  return testing::internal::GetCapturedStderr();
}

/// How a piece of code ended the process: the status it gave (-1 when it
/// returned normally) and what it wrote on standard error.
struct Ending {
  int status = -1;
  std::string err;
};
template <class Action>
Ending ending_of(Action action) {
  Ending ending;
  testing::internal::CaptureStderr();
  try {
    action();
  } catch (const ProcessEnd& end) {
    ending.status = end.status;
  }
  ending.err = testing::internal::GetCapturedStderr();
  return ending;
}

/// A regular expression searched in standard error, or any string matcher.
inline auto stderr_matcher(const char* regex) { return testing::ContainsRegex(regex); }
template <class Matcher>
requires(!std::is_convertible_v<Matcher, const char*>) auto stderr_matcher(Matcher matcher) {
  return testing::SafeMatcherCast<const std::string&>(matcher);
}

/// `statement` ends the process with `code`, its standard error matching.
#define EXPECT_ENDS(statement, code, pattern)             \
  do {                                                    \
    const Ending ending_ = ending_of([&] { statement; }); \
    EXPECT_EQ(ending_.status, code);                      \
    EXPECT_THAT(ending_.err, stderr_matcher(pattern));    \
  } while (0)
