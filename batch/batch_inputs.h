// The input side of the batch simulator: the values of one step come from
// one line of text instead of the input panel's fields.
#pragma once

#include <string_view>
#include <vector>

#include "engine/interface.h"
#include "engine/sim_program.h"
#include "engine/step_io.h"

/// Splits at blanks.
std::vector<std::string_view> split_words(std::string_view text);

class BatchInputs : public StepInputs {
 public:
  /// Refuses and warns about the ports as the window does.
  explicit BatchInputs(SimProgram& program);

  /// The values of the next step, in declaration order, separated by
  /// blanks; `line` numbers the messages.
  void set_line(int line, std::string_view values);
  /// Stores every value, the last input first as the input panel does;
  /// returns the text of the first one that cannot be read, or of a wrong
  /// number of values.
  const char* check() override;
  void reset() override {}
  /// The text the last refused check returned.
  const char* problem() const { return message_; }

 private:
  const char* store(const Port& port, std::string_view word);

  std::vector<Port> ports_;
  int line_ = 0;
  std::vector<std::string_view> words_;
  char message_[512];
};
