#include "support/fract.h"

#include <cmath>
#include <cstdlib>

#include "support/diagnostics.h"

namespace {

// Coefficients wrap modulo 2^32 like the machine words they always were;
// doing it on unsigned values keeps the wrap well defined.
int32_t wrap(uint32_t x) { return static_cast<int32_t>(x); }
int32_t add(int32_t a, int32_t b) { return wrap(uint32_t(a) + uint32_t(b)); }
int32_t sub(int32_t a, int32_t b) { return wrap(uint32_t(a) - uint32_t(b)); }
int32_t mul(int32_t a, int32_t b) { return wrap(uint32_t(a) * uint32_t(b)); }
int32_t neg(int32_t a) { return wrap(0u - uint32_t(a)); }
uint32_t magnitude(int32_t a) { return a < 0 ? 0u - uint32_t(a) : uint32_t(a); }

// Callers pass non-zero values; a zero still gets an answer, not a trap.
uint32_t euclid(uint32_t x, uint32_t y) {
  if (x == 0 || y == 0) return x | y;
  for (;;) {
    if (x >= y) {
      uint32_t r = x % y;
      if (r == 0) return y;
      x = r;
    } else {
      uint32_t t = x;
      x = y;
      y = t;
    }
  }
}

[[noreturn]] void fatal(const char* message) {
  fputs(message, stderr);
  end_process(1);
}

// A power of ten beyond 32 bits yields the "integer indefinite" value the
// hardware conversion gives, which the text check then rejects.
int32_t truncate_to_int32(double x) {
  if (x >= -2147483648.0 && x < 2147483648.0) return static_cast<int32_t>(x);
  return INT32_MIN;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

int32_t gcd(int32_t a, int32_t b) { return wrap(euclid(magnitude(a), magnitude(b))); }

int32_t lcm(int32_t a, int32_t b) {
  int32_t g = gcd(a, b);
  if (g == 0) return 0;
  return mul(mul(a / g, g), b / g);
}

Fract::Fract(int32_t n, int32_t d) {
  if (d == 0) fatal("Fract::Fract: division by zero\n");
  if (n == 0) {
    num = 0;
    den = 1;
    return;
  }
  if (d < 0) {
    n = neg(n);
    d = neg(d);
  }
  bool negative = n < 0;
  uint32_t un = magnitude(n), ud = uint32_t(d);
  if (un != 1 && ud != 1) {
    uint32_t g = euclid(un, ud);
    un /= g;
    ud /= g;
  }
  num = negative ? neg(wrap(un)) : wrap(un);
  den = wrap(ud);
}

Fract& Fract::operator=(const char* text) {
  const char* p = text;
  int32_t sign = 1;
  if (*p == '-') {
    sign = -1;
    ++p;
  }
  uint32_t mantissa = 0;
  int32_t exponent = 0;
  for (; is_digit(*p); ++p) mantissa = mantissa * 10 + uint32_t(*p - '0');
  if (*p == '.') {
    ++p;
    const char* end = p;
    while (is_digit(*end)) ++end;
    const char* last_nonzero = end;
    while (last_nonzero > p && last_nonzero[-1] == '0') --last_nonzero;
    for (; p < last_nonzero; ++p) {
      mantissa = mantissa * 10 + uint32_t(*p - '0');
      exponent = sub(exponent, 1);
    }
    p = end;
  }
  if (*p == 'e' || *p == 'E') {
    ++p;
    int32_t exponent_sign = 1;
    if (*p == '-') {
      exponent_sign = -1;
      ++p;
    } else if (*p == '+') {
      ++p;
    }
    uint32_t x = 0;
    for (; is_digit(*p); ++p) x = x * 10 + uint32_t(*p - '0');
    exponent = add(exponent, mul(exponent_sign, wrap(x)));
  }
  int32_t n = wrap(mantissa), d = 1;
  if (exponent >= 0)
    n = mul(n, truncate_to_int32(pow(10.0, exponent)));
  else
    d = truncate_to_int32(pow(10.0, -double(exponent)));
  n = mul(n, sign);
  if (double(n) / double(d) != strtod(text, nullptr)) {
    fprintf(stderr, "Fract::operator=(char*) : arithmetic overflow while parsing '%s'\n", text);
    end_process(1);
  }
  return *this = Fract(n, d);
}

double Fract::todouble() const {
  if (den == 0) fatal("Fract::todouble() : division by zero\n");
  return double(num) / double(den);
}

void Fract::print(FILE* stream) const {
  fprintf(stream, "%ld", long(num));
  if (den != 1) fprintf(stream, "/%ld", long(den));
}

Fract Fract::operator-() const { return Fract(neg(num), den); }

Fract abs(const Fract& f) { return f.num >= 0 ? f : Fract(neg(f.num), f.den); }

Fract operator+(const Fract& a, const Fract& b) {
  return Fract(add(mul(a.num, b.den), mul(a.den, b.num)), mul(a.den, b.den));
}

Fract operator-(const Fract& a, const Fract& b) {
  return Fract(sub(mul(a.num, b.den), mul(a.den, b.num)), mul(a.den, b.den));
}

Fract operator*(const Fract& a, const Fract& b) { return Fract(mul(a.num, b.num), mul(a.den, b.den)); }

Fract operator/(const Fract& a, const Fract& b) { return Fract(mul(a.num, b.den), mul(a.den, b.num)); }

bool operator<(const Fract& a, const Fract& b) { return mul(a.num, b.den) < mul(b.num, a.den); }
bool operator<=(const Fract& a, const Fract& b) { return mul(a.num, b.den) <= mul(b.num, a.den); }
bool operator>(const Fract& a, const Fract& b) { return mul(a.num, b.den) > mul(b.num, a.den); }
bool operator>=(const Fract& a, const Fract& b) { return mul(a.num, b.den) >= mul(b.num, a.den); }
