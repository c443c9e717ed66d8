#include "engine/input_text.h"

#include <string>

namespace {

/// The interned text among `names` equal to `word`, or null.
const char* find_name(const std::vector<const char*>& names, std::string_view word) {
  for (const char* name : names) {
    if (word == name) return name;
  }
  return nullptr;
}

/// The number readers need a terminated text; a word is a slice of its line.
std::string terminated(std::string_view word) {
  return std::string(word);
}

}  // namespace

bool read_word(const Port& port, std::string_view word) {
  switch (port.kind) {
    case PortKind::kBool:
      if (word != "t" && word != "1" && word != "f" && word != "0") return false;
      port.value->i = word == "t" || word == "1";
      return true;
    case PortKind::kInt:
      return read_int(terminated(word).c_str(), &port.value->i);
    case PortKind::kReal:
      return read_real(terminated(word).c_str(), &port.value->d);
    case PortKind::kNamed: {
      // Only what the window offers as a choice.
      const char* name = find_name(port.constants, word);
      if (!name) return false;
      port.value->s = name;
      return true;
    }
  }
  return false;
}
