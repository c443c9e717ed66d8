#include "batch/batch_inputs.h"

#include <cctype>
#include <cstdio>
#include <utility>

#include "engine/input_text.h"
#include "engine/offered_ports.h"

namespace {

// The numbers' texts are the input panel's, which name the field by its
// label; those of the values the panel cannot get wrong (bools, constants)
// also quote the word.
const char* refusal_format(PortKind kind) {
  switch (kind) {
    case PortKind::kBool:
      return "Bad bool value for '%s': %.*s";
    case PortKind::kInt:
      return "Bad integer value for '%s (int)'";
    case PortKind::kReal:
      return "Bad double value for '%s (double)'";
    case PortKind::kNamed:
      break;
  }
  return "Bad value for '%s': no constant %.*s of its type";
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

BatchInputs::BatchInputs(SimProgram& program) {
  ProgramInterface described = describe_interface(program);
  check_offered_ports(described);
  ports_ = std::move(described.inputs);
}

void BatchInputs::set_line(int line, std::string_view values) {
  line_ = line;
  words_ = split_words(values);
}

const char* BatchInputs::check() {
  if (words_.size() != ports_.size()) {
    snprintf(message_, sizeof message_, "line %d: expected %zu values, found %zu", line_,
             ports_.size(), words_.size());
    return message_;
  }
  for (size_t i = ports_.size(); i-- > 0;) {
    if (const char* problem = store(ports_[i], words_[i])) return problem;
  }
  return nullptr;
}

const char* BatchInputs::store(const Port& port, std::string_view word) {
  if (read_word(port, word)) return nullptr;
  snprintf(message_, sizeof message_, refusal_format(port.kind), port.name,
           static_cast<int>(word.size()), word.data());
  return message_;
}
