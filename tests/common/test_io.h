// What the unit tests share: qv programs written to files, and the text a
// piece of code writes to a stream.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

/// A qv program in a file of its own under the test temporary folder,
/// removed when the object goes.
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
