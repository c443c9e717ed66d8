// A small arguments manager: walks the command line left to right against a
// table of options and calls a handler per argument.
#pragma once

#include <cstdint>

class ArgsMng;

/// One row of an option table; a kind-0 row with a null name ends the table
/// and catches every argument that matches no other row.
struct OptionEntry {
  enum Kind { kOption = 0, kText = 1 };
  int kind;
  /// Zero: listed by print_options only when asked for all rows.
  int listed;
  const char* name;
  void (*handler)(ArgsMng& args, std::intptr_t arg);
  std::intptr_t handler_arg;
  const char* description;
};

class ArgsMng {
 public:
  ArgsMng() = default;
  explicit ArgsMng(const char* version) : version_(version) {}
  ArgsMng(const char* program_name, const char* version)
      : version_(version), program_name_(program_name) {}
  ArgsMng(int argc, char** argv, const OptionEntry* options) { parse(argc, argv, options); }
  virtual ~ArgsMng() = default;

  /// Handles every argument from the first; "-version" wins wherever it stands.
  void parse(int argc, char** argv, const OptionEntry* options);
  const char* current_arg() const { return argv_[cursor_]; }
  /// Consumes the argument after the current one, or gives null.
  const char* next_arg();
  const char* program_name() const { return program_name_ ? program_name_ : argv_[0]; }
  const char* version() const { return version_ ? version_ : "?.?"; }
  /// Lists the table on standard error.
  virtual void print_options(int show_all);

 protected:
  int argc_ = 0;
  char** argv_ = nullptr;
  int cursor_ = 1;
  const OptionEntry* options_ = nullptr;
  const char* version_ = nullptr;
  const char* program_name_ = nullptr;
};
