#include "app/args_mng.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/common/test_io.h"

namespace {

std::vector<std::string> seen;

void record(ArgsMng& args, std::intptr_t tag) {
  seen.push_back(std::to_string(tag) + ":" + args.current_arg());
}

// An option that takes the following argument as its value.
void record_with_value(ArgsMng& args, std::intptr_t tag) {
  const char* value = args.next_arg();
  seen.push_back(std::to_string(tag) + "=" + (value ? value : "(none)"));
}

const OptionEntry kTable[] = {
    {OptionEntry::kText, 1, nullptr, nullptr, 0, "general:"},
    {OptionEntry::kOption, 1, "-o", record_with_value, 1, ": output"},
    {OptionEntry::kOption, 0, "-hidden", record, 2, ": not listed"},
    {OptionEntry::kText, 0, nullptr, nullptr, 0, "hidden text"},
    {OptionEntry::kOption, 0, nullptr, record, 3, nullptr},
};

void parse(std::vector<const char*> words) {
  seen.clear();
  static std::vector<char*> argv;
  argv.clear();
  for (const char* w : words) argv.push_back(const_cast<char*>(w));
  ArgsMng args(static_cast<int>(argv.size()), argv.data(), kTable);
}

TEST(ArgsMng, HandlesArgumentsLeftToRightAndSkipsConsumedValues) {
  parse({"prog", "a", "-o", "file", "-hidden", "-unknown", "b"});
  EXPECT_EQ(seen, (std::vector<std::string>{"3:a", "1=file", "2:-hidden", "3:-unknown", "3:b"}));
}

TEST(ArgsMng, ValueMissingAtTheEndLeavesTheCursorAlone) {
  parse({"prog", "-o"});
  EXPECT_EQ(seen, (std::vector<std::string>{"1=(none)"}));
}

// korvel's own listing, of the listed rows only, and its -version after
// other arguments are process cases (tests/cli/cases); here, every row.
TEST(ArgsMng, ListsEveryRowWhenAllAreAsked) {
  ArgsMng args;
  char prog[] = "prog";
  char* argv[] = {prog};
  args.parse(1, argv, kTable);
  EXPECT_EQ(stderr_of([&] { args.print_options(1); }),
            "general:\n    -o : output\n    -hidden : not listed\nhidden text\n");
}

}  // namespace
