// A stdio file that is closed when its handle goes, on every way out of
// the scope that opened it, a fatal report unwinding through it included.
#pragma once

#include <cstdio>
#include <memory>

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};

using FileHandle = std::unique_ptr<std::FILE, FileCloser>;
