#include "support/vformat.h"

#include <cstdio>

std::string vformat(const char* fmt, va_list args) {
  va_list again;
  va_copy(again, args);
  char small[256];
  int length = vsnprintf(small, sizeof small, fmt, args);
  if (length < 0) length = 0;  // an encoding error yields no text
  std::string text;
  if (static_cast<size_t>(length) < sizeof small) {
    text.assign(small, length);
  } else {
    text.resize(length);
    vsnprintf(text.data(), length + 1, fmt, again);
  }
  va_end(again);
  return text;
}
