#include "support/number_text.h"

#include <cstdlib>

bool read_int(const char* text, int32_t* value) {
  char* end;
  const long long number = std::strtoll(text, &end, 10);
  if (end == text) return false;
  *value = static_cast<int32_t>(static_cast<uint32_t>(number));
  return true;
}

bool read_real(const char* text, double* value) {
  char* end;
  const double number = std::strtod(text, &end);
  if (end == text) return false;
  *value = number;
  return true;
}
