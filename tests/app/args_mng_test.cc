#include "app/args_mng.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(ArgsMng, ListsOnlyListedRowsUnlessAllAreAsked) {
  ArgsMng args;
  char prog[] = "prog";
  char* argv[] = {prog};
  args.parse(1, argv, kTable);
  testing::internal::CaptureStderr();
  args.print_options(0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "general:\n    -o : output\n");
  testing::internal::CaptureStderr();
  args.print_options(1);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "general:\n    -o : output\n    -hidden : not listed\nhidden text\n");
}

TEST(ArgsMng, VersionAndProgramNameFallBacks) {
  ArgsMng unnamed;
  EXPECT_STREQ(unnamed.version(), "?.?");
  ArgsMng named("tool", "2.1");
  EXPECT_STREQ(named.program_name(), "tool");
  EXPECT_STREQ(named.version(), "2.1");
}

TEST(ArgsMng, VersionEndsTheProcessAfterEarlierHandlers) {
  EXPECT_EXIT(
      {
        parse({"prog", "a", "-version", "b"});
        std::abort();
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
