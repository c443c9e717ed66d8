// The programs of bench/shapes.py as plain compiled step functions: local
// variables and state arrays, no items, no interpretation. The size and
// the input come from the command line and the constants are computed at
// run time, so the compiler folds nothing; a checksum of every output
// consumes the results.
//
//   baseline SHAPE N INPUT STEPS           prints the seconds of STEPS steps
//   baseline SHAPE N INPUT STEPS --trace   prints the outputs of each step
//
// Arithmetic on ints wraps at 32 bits, as in korvel.
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <algorithm>
#include <string>
#include <vector>

namespace {

int32_t add(int32_t x, int32_t y) { return static_cast<int32_t>(uint32_t(x) + uint32_t(y)); }
int32_t sub(int32_t x, int32_t y) { return static_cast<int32_t>(uint32_t(x) - uint32_t(y)); }

// The constants of equation i, as bench/shapes.py writes them.
struct Constants {
  explicit Constants(size_t n) : a(n + 1), b(n + 1), k(n + 1) {
    for (size_t i = 0; i <= n; ++i) {
      a[i] = static_cast<int32_t>(i * 7919 % 1000);
      b[i] = static_cast<int32_t>(1 + i / 1000);
      k[i] = static_cast<int32_t>(1 + i % 13);
    }
  }
  int32_t step(size_t i, int32_t v) const { return v > a[i] ? sub(v, b[i]) : add(v, k[i]); }

  std::vector<int32_t> a, b, k;
};

/// One step of a shape: `first` at the first instant, `t` the step counter
/// (0 to 999), `s` = t + input. Writes the outputs in declaration order.
class Shape {
 public:
  explicit Shape(size_t n) : n_(n), c_(n) {}
  virtual ~Shape() = default;
  virtual void step(bool first, int32_t t, int32_t s, std::vector<int32_t>* out) = 0;
  /// The text of output values: ints, unless overridden.
  virtual void print(int32_t value) const { std::printf("%d  ", value); }

 protected:
  size_t n_;
  Constants c_;
};

class Chain : public Shape {
 public:
  using Shape::Shape;
  void step(bool, int32_t, int32_t s, std::vector<int32_t>* out) override {
    int32_t v = s;
    for (size_t i = 1; i <= n_; ++i) v = c_.step(i, v);
    (*out)[0] = v;
  }
};

class Ring : public Shape {
 public:
  explicit Ring(size_t n) : Shape(n), m_(n), next_(n) {}
  void step(bool first, int32_t, int32_t s, std::vector<int32_t>* out) override {
    if (first) {
      for (size_t i = 0; i < n_; ++i) m_[i] = static_cast<int32_t>(i);
    } else {
      next_[0] = c_.step(0, add(m_[n_ - 1], s));
      for (size_t i = 1; i < n_; ++i) next_[i] = c_.step(i, m_[i - 1]);
      m_.swap(next_);
    }
    (*out)[0] = m_[0];
    (*out)[1] = m_[n_ / 2];
  }

 private:
  std::vector<int32_t> m_, next_;
};

// The layer width of bench/shapes.py: the integer square root, at least 2.
size_t width(size_t n) {
  size_t w = static_cast<size_t>(std::sqrt(static_cast<double>(n)));
  while (w * w > n) --w;
  while ((w + 1) * (w + 1) <= n) ++w;
  return std::max<size_t>(2, w);
}

class Layered : public Shape {
 public:
  explicit Layered(size_t n)
      : Shape(n), w_(width(n)), layers_(std::max<size_t>(1, n / w_)), x_(w_), y_(w_) {}
  void step(bool, int32_t, int32_t s, std::vector<int32_t>* out) override {
    for (size_t j = 0; j < w_; ++j) x_[j] = c_.step(j, s);
    for (size_t l = 1; l < layers_; ++l) {
      for (size_t j = 0; j < w_; ++j) {
        const size_t i = l * w_ + j;
        const int32_t p = x_[j], q = x_[(j + 1) % w_], d = sub(p, q);
        y_[j] = d > c_.a[i] ? sub(d, c_.b[i]) : add(q, c_.k[i]);
      }
      x_.swap(y_);
    }
    int32_t sum = 0;
    for (size_t j = 0; j < w_; ++j) sum = add(sum, x_[j]);
    (*out)[0] = sum;
  }

 private:
  size_t w_, layers_;
  std::vector<int32_t> x_, y_;
};

class Clocks : public Shape {
 public:
  explicit Clocks(size_t n) : Shape(n), held_(n + 1) {}
  void step(bool, int32_t t, int32_t s, std::vector<int32_t>* out) override {
    const bool c1 = t % 2 == 0, c2 = t % 4 == 0;
    int32_t v = s;
    for (size_t i = 1; i <= n_; ++i) {
      switch (i % 3) {
        case 0:
          v = c_.step(i, v);
          break;
        case 1:
          if (c1) held_[i] = c_.step(i, v);
          v = held_[i];
          break;
        default:
          if (c1 && c2) held_[i] = c_.step(i, v);
          v = held_[i];
          break;
      }
    }
    (*out)[0] = v;
  }

 private:
  std::vector<int32_t> held_;
};

class Outputs : public Shape {
 public:
  using Shape::Shape;
  void step(bool, int32_t, int32_t s, std::vector<int32_t>* out) override {
    int32_t v = s;
    for (size_t i = 1; i <= n_; ++i) (*out)[i - 1] = v = c_.step(i, v);
  }
};

class Machines : public Shape {
 public:
  explicit Machines(size_t n) : Shape(n), q_(n + 1) {}
  void step(bool first, int32_t, int32_t s, std::vector<int32_t>* out) override {
    if (first) {
      std::fill(q_.begin(), q_.end(), 0);
    } else {
      q_[0] = (q_[0] + 1) % 4;
      for (size_t i = 1; i <= n_; ++i) {
        const bool go = (q_[i - 1] == static_cast<int32_t>(i % 4)) != (s > c_.a[i]);
        if (go) q_[i] = (q_[i] + 1) % 4;
      }
    }
    (*out)[0] = q_[n_];
  }
  void print(int32_t value) const override { std::printf("s%d  ", value); }

 private:
  std::vector<int32_t> q_;
};

class Sum : public Shape {
 public:
  using Shape::Shape;
  void step(bool, int32_t, int32_t s, std::vector<int32_t>* out) override {
    int32_t sum = 0;
    for (size_t i = 1; i <= n_; ++i) sum = add(sum, c_.step(i, s));
    (*out)[0] = sum;
  }
};

struct Made {
  Shape* shape;
  size_t outputs;
};

Made make(const std::string& name, size_t n) {
  if (name == "chain") return {new Chain(n), 1};
  if (name == "ring") return {new Ring(n), 2};
  if (name == "layered") return {new Layered(n), 1};
  if (name == "clocks") return {new Clocks(n), 1};
  if (name == "outputs") return {new Outputs(n), n};
  if (name == "machines") return {new Machines(n), 1};
  if (name == "sum") return {new Sum(n), 1};
  return {nullptr, 0};
}

}  // namespace

int main(int argc, char** argv) {
  const bool trace = argc == 6 && std::strcmp(argv[5], "--trace") == 0;
  if (argc != 5 && !trace) {
    std::fprintf(stderr, "usage: baseline SHAPE N INPUT STEPS [--trace]\n");
    return 1;
  }
  const size_t n = std::strtoul(argv[2], nullptr, 10);
  const int32_t input = static_cast<int32_t>(std::strtol(argv[3], nullptr, 10));
  const long steps = std::strtol(argv[4], nullptr, 10);
  const Made made = make(argv[1], n);
  if (!made.shape || n == 0) {
    std::fprintf(stderr, "baseline: no shape '%s' of size %s\n", argv[1], argv[2]);
    return 1;
  }
  std::vector<int32_t> out(made.outputs);
  uint32_t checksum = 0;
  int32_t t = 0;
  const auto start = std::chrono::steady_clock::now();
  for (long step = 1; step <= steps; ++step) {
    made.shape->step(step == 1, t, add(t, input), &out);
    if (trace) {
      for (int32_t v : out) made.shape->print(v);
      std::printf("\n");
    }
    for (int32_t v : out) checksum = checksum * 31 + uint32_t(v);
    t = t >= 999 ? 0 : t + 1;
  }
  const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - start;
  if (!trace) std::printf("%.9f %u\n", spent.count(), checksum);
  delete made.shape;
  return 0;
}
