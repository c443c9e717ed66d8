// The real korvel on a private X server, driven through its windows with
// XTest events; the trace on standard output is compared byte for byte.
#include "tests/gui/x_screen.h"

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "tests/gui/child_process.h"

namespace {

// Generous: a sanitizer build starts slowly on a loaded machine, but every
// wait ends as soon as its condition holds.
constexpr int kTimeoutMs = 30000;

std::string program_path(const char* name) {
  return std::string(KORVEL_GUI_PROGRAMS) + "/" + name + ".qv";
}

// One korvel run: its process and its three windows.
class Session {
 public:
  Session(const char* program, const char* node)
      : korvel_({KORVEL_BINARY, "-v", program_path(program)}), node_(node) {}

  /// Waits for the header and the three windows.
  void open() {
    ASSERT_TRUE(screen_.ok()) << "no X display with XTest";
    ASSERT_TRUE(korvel_.wait_for_output(") returns (", kTimeoutMs)) << korvel_.err();
    Window main = screen_.wait_for_window("korvel", kTimeoutMs);
    Window inputs = screen_.wait_for_window(node_ + "-inputs", kTimeoutMs);
    Window outputs = screen_.wait_for_window(node_ + "-outputs", kTimeoutMs);
    ASSERT_TRUE(main && inputs && outputs);
    main_items_ = screen_.items(main);
    input_items_ = screen_.items(inputs);
    output_items_ = screen_.items(outputs);
    ASSERT_EQ(main_items_.size(), 2u);
  }

  // Input rows: the mode button, one per input, then STEP.
  void mode() { screen_.click(input_items_.at(0)); }
  void step() { screen_.click(input_items_.back()); }
  void press(int input) { screen_.click(input_items_.at(1 + input)); }
  /// Replaces the text of a numeric field; with `ret`, ends it with Return.
  void enter(int input, const std::string& text, bool ret) {
    Window field = screen_.children(input_items_.at(1 + input)).at(1);
    screen_.point_at(field);
    screen_.key("a", true);
    screen_.key("k", true);
    screen_.type(text);
    if (ret) screen_.key("Return");
  }
  /// Clicks choice `choice` of an enumerated input (below its title).
  void choose(int input, int choice) {
    screen_.click(screen_.children(input_items_.at(1 + input)).at(1 + choice));
  }
  void reset() { screen_.click(main_items_.at(0)); }
  /// Quits and returns the exit status.
  int quit() {
    screen_.click(main_items_.at(1));
    return korvel_.wait_exit(kTimeoutMs);
  }

  size_t input_rows() const { return input_items_.size(); }
  size_t output_rows() const { return output_items_.size(); }
  const std::string& trace() const { return korvel_.out(); }
  const std::string& errors() const { return korvel_.err(); }

 private:
  XScreen screen_;
  ChildProcess korvel_;
  std::string node_;
  std::vector<Window> main_items_;
  std::vector<Window> input_items_;
  std::vector<Window> output_items_;
};

const char kMixHeader[] = "#program mix\n#(b, n, x) returns (c, y, seen)\n";

TEST(GuiTest, QuitEndsWithStatusZeroAndNoTrace) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  EXPECT_EQ(s.input_rows(), 5u);
  EXPECT_EQ(s.output_rows(), 3u);
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), kMixHeader);
  EXPECT_EQ(s.errors(), "");
}

TEST(GuiTest, StepAndBoolPulseInAutoStep) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.step();
  s.press(0);
  s.step();
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), std::string(kMixHeader) +
                           "#step 1\nf  0  0.000000  #0  0.000000  f  \n"
                           "#step 2\nt  0  0.000000  #0  0.000000  t  \n"
                           "#step 3\nf  0  0.000000  #0  0.000000  f  \n");
}

TEST(GuiTest, ReturnInFieldStepsInAutoStep) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.enter(1, "5", true);
  s.enter(2, "-1.25", true);
  s.enter(1, "12abc", false);
  s.step();
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), std::string(kMixHeader) +
                           "#step 1\nf  5  0.000000  #5  0.000000  f  \n"
                           "#step 2\nf  5  -1.250000  #10  -2.500000  f  \n"
                           "#step 3\nf  12  -1.250000  #22  -2.500000  f  \n");
}

TEST(GuiTest, ComposeSetsSeveralInputsForOneStep) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.mode();
  s.press(0);
  s.press(0);
  s.press(0);
  s.enter(1, "3", true);
  s.enter(2, "1.5", true);
  s.step();
  s.step();
  // Back in Auto Step every bool is released.
  s.mode();
  s.step();
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), std::string(kMixHeader) +
                           "#step 1\nt  3  1.500000  #3  3.000000  t  \n"
                           "#step 2\nt  3  1.500000  #6  3.000000  t  \n"
                           "#step 3\nf  3  1.500000  #9  3.000000  f  \n");
}

TEST(GuiTest, BadFieldAbortsTheStepWithoutCountingIt) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.enter(2, "1.5", false);
  s.enter(1, "x2", false);
  s.step();
  s.enter(1, "2x", false);
  s.step();
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), std::string(kMixHeader) +
                           "#error msg from inputs manager\n"
                           "#Bad integer value for 'n (int)'\n"
                           "#aborted\n"
                           "#step 1\nf  2  1.500000  #2  3.000000  f  \n");
}

TEST(GuiTest, ResetInComposeKeepsComposeAndClearsInputs) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.mode();
  s.press(0);
  s.enter(1, "7", true);
  s.step();
  s.reset();
  s.step();
  // Still Compose: pressing b runs no step, STEP does.
  s.press(0);
  s.step();
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), std::string(kMixHeader) +
                           "#step 1\nt  7  0.000000  #7  0.000000  t  \n"
                           "#reset\n"
                           "#step 1\nf  0  0.000000  #0  0.000000  f  \n"
                           "#step 2\nt  0  0.000000  #0  0.000000  t  \n");
}

TEST(GuiTest, ChoiceOfAnEnumeratedInputSteps) {
  Session s("gear", "shift");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.choose(0, 1);
  s.choose(0, 1);
  s.choose(0, 0);
  s.choose(0, 1);
  // A reset keeps the choice.
  s.reset();
  s.step();
  EXPECT_EQ(s.quit(), 0);
  EXPECT_EQ(s.errors(), "Warning, external type \"gear\" interpreted as enumerate\n");
  EXPECT_EQ(s.trace(),
            "#program shift\n#(g, k) returns (fast, same)\n"
            "#step 1\nhigh  0  #t  high  \n"
            "#step 2\nhigh  0  #t  high  \n"
            "#step 3\nlow  0  #f  low  \n"
            "#step 4\nhigh  0  #t  high  \n"
            "#reset\n"
            "#step 1\nhigh  0  #t  high  \n");
}

TEST(GuiTest, UnsupportedTypeIsRefusedBeforeThePanelsOpen) {
  ChildProcess korvel({KORVEL_BINARY, "-v", program_path("opaque")});
  EXPECT_EQ(korvel.wait_exit(kTimeoutMs), 1);
  EXPECT_EQ(korvel.err(), "Sorry, type \"handle\" not implemented\n");
  EXPECT_EQ(korvel.out(), "");
}

TEST(GuiTest, MissingDisplayIsReportedByTheToolkit) {
  ChildProcess korvel({"/usr/bin/env", "-u", "DISPLAY", KORVEL_BINARY, "-v", program_path("mix")});
  EXPECT_EQ(korvel.wait_exit(kTimeoutMs), 1);
  EXPECT_NE(korvel.err().find("Can't open display"), std::string::npos) << korvel.err();
  EXPECT_EQ(korvel.out(), "");
}

// The batch simulator, given the trace recorded through the windows,
// finds every output as recorded.
TEST(GuiTest, RecordedTraceReplaysInTheBatchSimulator) {
  Session s("mix", "mix");
  ASSERT_NO_FATAL_FAILURE(s.open());
  s.enter(1, "4", true);
  s.press(0);
  s.enter(2, "0.5", true);
  s.enter(1, "nope", true);
  s.reset();
  s.enter(1, "-2", true);
  ASSERT_EQ(s.quit(), 0);
  ASSERT_EQ(s.trace(), std::string(kMixHeader) +
                           "#step 1\nf  4  0.000000  #4  0.000000  f  \n"
                           "#step 2\nt  4  0.000000  #8  0.000000  t  \n"
                           "#step 3\nf  4  0.500000  #12  1.000000  f  \n"
                           "#error msg from inputs manager\n"
                           "#Bad integer value for 'n (int)'\n"
                           "#aborted\n"
                           "#reset\n"
                           "#step 1\nf  -2  0.000000  #-2  0.000000  f  \n");

  char path[] = "/tmp/korvel-gui-trace-XXXXXX";
  int fd = mkstemp(path);
  ASSERT_GE(fd, 0);
  close(fd);
  std::ofstream(path) << s.trace();
  ChildProcess check({KORVEL_RUN_BINARY, "--check", program_path("mix"), path});
  EXPECT_EQ(check.wait_exit(kTimeoutMs), 0) << check.out() << check.err();
  std::remove(path);
}

}  // namespace
