// An exact rational of two 32-bit ints in lowest terms with a positive
// denominator. Arithmetic wraps modulo 2^32, as the coefficients of linear
// terms always have; the only overflow guard is on conversion from text.
#pragma once

#include <cstdint>
#include <cstdio>

/// Greatest common divisor of |a| and |b|; both must be non-zero.
int32_t gcd(int32_t a, int32_t b);
/// Least common multiple, signed by the product of the signs.
int32_t lcm(int32_t a, int32_t b);

class Fract {
 public:
  /// The normalising constructor; d = 0 is fatal.
  Fract(int32_t n, int32_t d);
  Fract(int32_t n = 0) : num(n), den(1) {}  // NOLINT: an int is n/1
  Fract(const Fract&) = default;
  Fract& operator=(const Fract&) = default;
  Fract& operator=(int32_t n) { return *this = Fract(n); }
  /// The value of a decimal text; ends the process when it does not fit.
  Fract& operator=(const char* text);

  double todouble() const;
  void print(FILE* stream) const;
  void print() const { print(stdout); }

  Fract operator-() const;
  friend Fract abs(const Fract& f);
  friend Fract operator+(const Fract& a, const Fract& b);
  friend Fract operator-(const Fract& a, const Fract& b);
  friend Fract operator*(const Fract& a, const Fract& b);
  friend Fract operator/(const Fract& a, const Fract& b);

  friend bool operator==(const Fract& a, const Fract& b) { return a.num == b.num && a.den == b.den; }
  friend bool operator!=(const Fract& a, const Fract& b) { return !(a == b); }
  friend bool operator<(const Fract& a, const Fract& b);
  friend bool operator<=(const Fract& a, const Fract& b);
  friend bool operator>(const Fract& a, const Fract& b);
  friend bool operator>=(const Fract& a, const Fract& b);

  int32_t numerator() const { return num; }
  int32_t denominator() const { return den; }

 private:
  int32_t num;
  int32_t den;
};
