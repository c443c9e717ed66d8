#include "panel/text_buffer.h"

#include <cstdarg>
#include <cstdio>

namespace {

char text_buffer[kTextBufferSize];

}  // namespace

const char* format_text(const char* fmt, ...) {
  va_list args;
  va_start(args, fmt);
  // vsnprintf never writes past the size it is given and always terminates.
  std::vsnprintf(text_buffer, sizeof text_buffer, fmt, args);
  va_end(args);
  return text_buffer;
}
