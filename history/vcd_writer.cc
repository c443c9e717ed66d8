#include "history/vcd_writer.h"

#include <cstring>

namespace {

/// Identifier codes: printable characters, as short as they can be.
std::string id_code(size_t n) {
  std::string id;
  do {
    id += static_cast<char>('!' + n % 94);
    n /= 94;
  } while (n);
  return id;
}

const char* state_letter(SampleState state) {
  return state == SampleState::kAbsent ? "z" : "x";
}

/// snprintf's count, cut to what the buffer holds.
size_t written(int n, size_t size) {
  return n < 0 ? 0 : static_cast<size_t>(n) < size ? static_cast<size_t>(n) : size - 1;
}

/// The value part of a change (without the identifier) of a signal of `kind`.
size_t vcd_value(PortKind kind, const Sample& s, char* buf, size_t size) {
  const bool defined = s.state == SampleState::kDefined;
  switch (kind) {
    case PortKind::kBool:
      buf[0] = defined ? (s.value.i ? '1' : '0') : *state_letter(s.state);
      return 1;
    case PortKind::kInt: {
      buf[0] = 'b';
      if (!defined) {
        buf[1] = *state_letter(s.state);
        return 2;
      }
      // A vector is extended to the left with 0s, so a negative number
      // needs all its bits.
      uint32_t v = static_cast<uint32_t>(s.value.i);
      int bits = 32;
      if (!(v >> 31)) {
        while (bits > 1 && !(v >> (bits - 1))) --bits;
      }
      for (int i = 0; i < bits; ++i) buf[1 + i] = (v >> (bits - 1 - i)) & 1 ? '1' : '0';
      return 1 + bits;
    }
    case PortKind::kReal:
      // A real variable has no x or z; its status variable tells them.
      if (!defined) return written(std::snprintf(buf, size, "rnan"), size);
      return written(std::snprintf(buf, size, "r%.17g", s.value.d), size);
    case PortKind::kNamed:
      const char* text = !defined ? state_letter(s.state) : s.value.s ? s.value.s : "nil";
      return written(std::snprintf(buf, size, "s%s", text), size);
  }
  return 0;
}

char status_letter(SampleState state) {
  switch (state) {
    case SampleState::kDefined:
      return '0';
    case SampleState::kNil:
      return 'x';
    case SampleState::kDivZero:
      return '1';
    case SampleState::kAbsent:
      break;
  }
  return 'z';
}

}  // namespace

VcdWriter::VcdWriter(FILE* out, const RunHistory& history) : out_(out) {
  std::fprintf(out_,
               "$version korvel $end\n"
               "$comment one time unit per step; <output>_div0 is 1 when the output's x "
               "is a division by zero, x when it is nil $end\n"
               "$timescale 1 s $end\n"
               "$scope module %s $end\n",
               history.node_name());
  for (const Signal& s : history.signals()) {
    switch (s.port->kind) {
      case PortKind::kBool:
        declare("wire", 1, s.port->name);
        break;
      case PortKind::kInt:
        declare("integer", 32, s.port->name);
        break;
      case PortKind::kReal:
        declare("real", 64, s.port->name);
        break;
      case PortKind::kNamed:
        declare("string", 1, s.port->name);
        break;
    }
  }
  first_status_ = vars_.size();
  for (const Signal& s : history.signals()) {
    if (s.output) declare("wire", 1, (std::string(s.port->name) + "_div0").c_str());
  }
  std::fprintf(out_, "$upscope $end\n$scope module korvel $end\n");
  first_mark_ = vars_.size();
  declare("wire", 1, "reset");
  declare("wire", 1, "aborted");
  declare("integer", 32, "step");
  std::fprintf(out_, "$upscope $end\n$enddefinitions $end\n");
}

void VcdWriter::declare(const char* type, int width, const char* name) {
  Var var{id_code(vars_.size()), {}};
  std::fprintf(out_, "$var %s %d %s %s $end\n", type, width, var.id.c_str(), name);
  vars_.push_back(std::move(var));
}

void VcdWriter::change(Var& var, const char* text, size_t size) {
  if (var.last.size() == size && std::memcmp(var.last.data(), text, size) == 0) return;
  var.last.assign(text, size);
  std::fwrite(text, 1, size, out_);
  // Vectors, reals and strings take a blank before the identifier.
  if (size > 1) std::fputc(' ', out_);
  std::fwrite(var.id.data(), 1, var.id.size(), out_);
  std::fputc('\n', out_);
}

void VcdWriter::time_stamp(size_t t) {
  std::fprintf(out_, "#%zu\n", t);
}

void VcdWriter::appended(const RunHistory& history, size_t t) {
  time_stamp(t);
  const Tick& tick = history.tick(t);
  const Sample* samples = history.samples(t);
  char buf[512];
  size_t status = first_status_;
  for (size_t i = 0; i < history.signals().size(); ++i) {
    const Signal& s = history.signals()[i];
    change(vars_[i], buf, vcd_value(s.port->kind, samples[i], buf, sizeof buf));
    if (!s.output) continue;
    buf[0] = status_letter(samples[i].state);
    change(vars_[status++], buf, 1);
  }
  buf[0] = tick.after_reset ? '1' : '0';
  change(vars_[first_mark_], buf, 1);
  buf[0] = tick.aborted() ? '1' : '0';
  change(vars_[first_mark_ + 1], buf, 1);
  const Sample step{{.i = tick.step}, SampleState::kDefined};
  change(vars_[first_mark_ + 2], buf, vcd_value(PortKind::kInt, step, buf, sizeof buf));
}

void VcdWriter::finish(const RunHistory& history) {
  if (history.reset_pending()) {
    time_stamp(history.end());
    char one = '1';
    change(vars_[first_mark_], &one, 1);
  }
  time_stamp(history.end() + (history.reset_pending() ? 1 : 0));
}
