#include "tests/common/test_io.h"

#include <unistd.h>

#include <fstream>

ProgramFile::ProgramFile(const std::string& source) {
  // Test programs run side by side, so the name carries the process too.
  static int serial = 0;
  path_ = testing::TempDir() + "korvel_test_" + std::to_string(getpid()) + "_" +
          std::to_string(++serial) + ".qv";
  std::ofstream(path_) << source;
}

ProgramFile::~ProgramFile() {
  std::remove(path_.c_str());
}

std::string file_text(FILE* file) {
  fflush(file);
  rewind(file);
  std::string text;
  for (int c; (c = fgetc(file)) != EOF;) text += static_cast<char>(c);
  fseek(file, 0, SEEK_END);
  return text;
}
