#include "app/korvel_args.h"

#include <cstdio>

#include "support/diagnostics.h"

korvelArgs::korvelArgs(int argc, char** argv) : ArgsMng(nullptr, "1.0") {
  parse(argc, argv, option_table());
}

void korvelArgs::usage() const {
  std::fprintf(stderr, "%s Version %s \n", program_name(), version());
  std::fprintf(stderr, "usage: %s [options] <qv file> | %s -help\n", program_name(),
               program_name());
}

void korvelArgs::help_handler(ArgsMng& args, std::intptr_t) {
  std::fprintf(stderr, "recognized options :\n");
  args.print_options(0);
  end_process(0);
}

void korvelArgs::trace_handler(ArgsMng&, std::intptr_t) { set_trace_stream(stdout); }

void korvelArgs::input_file_handler(ArgsMng& args, std::intptr_t) {
  auto& self = static_cast<korvelArgs&>(args);
  if (self.input_file_name_) {
    std::fprintf(stderr, "bad command : two input file names ? ('%s' and '%s')",
                 self.input_file_name_, self.current_arg());
    end_process(1);
  }
  self.input_file_name_ = self.current_arg();
}

const OptionEntry* korvelArgs::option_table() {
  static const OptionEntry table[] = {
      {OptionEntry::kOption, 0, "-help", korvelArgs::help_handler, 0,
       ": display availables options"},
      {OptionEntry::kOption, 1, "-v", korvelArgs::trace_handler, 0, ": set verbose mode"},
      {OptionEntry::kOption, 0, nullptr, korvelArgs::input_file_handler, 0, nullptr},
  };
  return table;
}
