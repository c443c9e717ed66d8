#include "app/args_mng.h"

#include <cstdio>
#include <cstring>

#include "support/diagnostics.h"

void ArgsMng::parse(int argc, char** argv, const OptionEntry* options) {
  argc_ = argc;
  argv_ = argv;
  options_ = options;
  for (cursor_ = 1; cursor_ < argc_; ++cursor_) {
    const char* arg = argv_[cursor_];
    if (std::strcmp(arg, "-version") == 0) {
      std::fputs(version(), stdout);
      std::fflush(stdout);
      end_process(0);
    }
    const OptionEntry* row = options_;
    while (row->kind != OptionEntry::kOption ||
           (row->name != nullptr && std::strcmp(row->name, arg) != 0)) {
      ++row;
    }
    if (row->handler) row->handler(*this, row->handler_arg);
  }
}

const char* ArgsMng::next_arg() {
  if (cursor_ + 1 >= argc_) return nullptr;
  return argv_[++cursor_];
}

void ArgsMng::print_options(int show_all) {
  for (const OptionEntry* row = options_; !(row->kind == OptionEntry::kOption && !row->name);
       ++row) {
    if (!row->listed && !show_all) continue;
    if (row->kind == OptionEntry::kOption) {
      std::fprintf(stderr, "    %s %s\n", row->name, row->description);
    } else if (row->kind == OptionEntry::kText) {
      std::fprintf(stderr, "%s\n", row->description);
    }
  }
}
