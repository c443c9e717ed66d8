#include "batch/batch_inputs.h"

#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/diagnostics.h"

namespace {

/// The constant of `type` called `word`, as its interned text; null if none.
const char* constant_named(const Net& net, const QvType* type, std::string_view word) {
  for (const IdentInfo* c : type->enum_consts) {
    if (c && net.strings->text(c->name) == word) return net.strings->text(c->name);
  }
  for (const IndexList* c = type->consts; c; c = c->next) {
    if (net.strings->text(c->value) == word) return net.strings->text(c->value);
  }
  return nullptr;
}

bool has_constants(const QvType* type) {
  return type->enum_count > 0 || type->consts;
}

}  // namespace

std::vector<std::string_view> split_words(std::string_view text) {
  std::vector<std::string_view> words;
  size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && isspace(static_cast<unsigned char>(text[i]))) ++i;
    const size_t start = i;
    while (i < text.size() && !isspace(static_cast<unsigned char>(text[i]))) ++i;
    if (i > start) words.push_back(text.substr(start, i - start));
  }
  return words;
}

BatchInputs::BatchInputs(SimProgram& program) : program_(program) {
  for (int i = 0; i < program.n_inputs; ++i) {
    const QvType* type = program.net->type(program.input_nodes[i]);
    if (program.input_items[i]->value_kind != VK_EXTERN || has_constants(type)) continue;
    // No value of this type could ever be written on a line.
    fprintf(stderr, "Sorry, type \"%s\" not implemented\n", program.net->strings->text(type->name));
    end_process(1);
  }
}

void BatchInputs::set_line(int line, std::string_view values) {
  line_ = line;
  words_ = split_words(values);
}

const char* BatchInputs::check() {
  const int n = program_.n_inputs;
  if (static_cast<int>(words_.size()) != n) {
    snprintf(message_, sizeof message_, "line %d: expected %d values, found %zu", line_, n,
             words_.size());
    return message_;
  }
  for (int i = n - 1; i >= 0; --i) {
    if (const char* problem = store(i, words_[i])) return problem;
  }
  return nullptr;
}

// The panel's own texts name the field by its label; those of the values
// the panel cannot get wrong (bools, constants) also quote the word.
const char* BatchInputs::refuse(const char* format, const char* name, std::string_view word) {
  snprintf(message_, sizeof message_, format, name, static_cast<int>(word.size()), word.data());
  return message_;
}

// Numbers are read as "%d" and "%lf" read them (leading sign, trailing
// characters ignored), through strtol and strtod, so that an int beyond 32
// bits is refused rather than left to scanf's undefined overflow.
const char* BatchInputs::store(int input, std::string_view word) {
  EvalItem& item = *program_.input_items[input];
  const char* name = program_.net->strings->text(program_.input_names[input]);
  const std::string text(word);
  char* end = nullptr;
  switch (item.value_kind) {
    case VK_BOOL:
      if (text == "t" || text == "1" || text == "f" || text == "0") {
        item.value.i = text == "t" || text == "1";
        return nullptr;
      }
      return refuse("Bad bool value for '%s': %.*s", name, word);
    case VK_INT: {
      errno = 0;
      const long v = strtol(text.c_str(), &end, 10);
      if (end == text.c_str() || errno == ERANGE || v < INT32_MIN || v > INT32_MAX) {
        return refuse("Bad integer value for '%s (int)'", name, word);
      }
      item.value.i = static_cast<int32_t>(v);
      return nullptr;
    }
    case VK_REAL: {
      const double v = strtod(text.c_str(), &end);
      if (end == text.c_str()) return refuse("Bad double value for '%s (double)'", name, word);
      item.value.d = v;
      return nullptr;
    }
    default: {
      const QvType* type = program_.net->type(program_.input_nodes[input]);
      const char* constant = constant_named(*program_.net, type, word);
      if (!constant) return refuse("Bad value for '%s': no constant %.*s of its type", name, word);
      item.value.s = constant;
      return nullptr;
    }
  }
}
