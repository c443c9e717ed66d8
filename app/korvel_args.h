// The simulator's own command line: "-help", "-v" and one qv file name.
#pragma once

#include "app/args_mng.h"

class korvelArgs : public ArgsMng {
 public:
  korvelArgs(int argc, char** argv);

  /// The qv file named on the command line, or null.
  const char* input_file_name() const { return input_file_name_; }
  /// The version line and the usage line, on standard error.
  void usage() const;

 private:
  /// The three rows: "-help", "-v", and the catch-all for the file name.
  static const OptionEntry* option_table();
  static void help_handler(ArgsMng& args, std::intptr_t);
  static void trace_handler(ArgsMng& args, std::intptr_t);
  static void input_file_handler(ArgsMng& args, std::intptr_t);

  const char* input_file_name_ = nullptr;
};
