#include "support/number_text.h"

#include <cstdio>
#include <cstdlib>

bool read_int(const char* text, int32_t* value) {
  char* end;
  const long long number = std::strtoll(text, &end, 10);
  if (end == text) return false;
  *value = static_cast<int32_t>(static_cast<uint32_t>(number));
  return true;
}

bool read_real(const char* text, double* value) {
  // Not strtod: it backs up to the longest number it can, so reads "0x" as
  // 0, where "%lf" has taken the x and refuses the text. Only scanf itself
  // knows which characters it commits to.
  double number;
  if (std::sscanf(text, "%lf", &number) != 1) return false;
  *value = number;
  return true;
}
