// The real korvel on a private X server, driven through its windows with
// XTest events; the trace on standard output is compared byte for byte.
#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/common/input_texts.h"
#include "tests/gui/korvel_session.h"

namespace {

/// Runs space-separated actions: step, mode, reset, press:I, choose:I:K,
/// type:I:TEXT (a field's new text) and enter:I:TEXT (the same, then Return).
void perform(KorvelSession& s, const std::string& script) {
  std::istringstream words(script);
  for (std::string word; words >> word;) {
    const std::string verb = word.substr(0, word.find(':'));
    const std::string rest = word.substr(std::min(word.size(), verb.size() + 1));
    const std::string text = rest.substr(std::min(rest.size(), rest.find(':') + 1));
    const int input = rest.empty() ? 0 : std::stoi(rest);
    if (verb == "step")
      s.step();
    else if (verb == "mode")
      s.mode();
    else if (verb == "reset")
      s.reset();
    else if (verb == "press")
      s.press(input);
    else if (verb == "choose")
      s.choose(input, std::stoi(text));
    else if (verb == "type" || verb == "enter")
      s.enter(input, text, verb == "enter");
    else
      ADD_FAILURE() << "unknown action " << word;
  }
}

const std::string kMix = "#program mix\n#(b, n, x) returns (c, y, seen)\n";

// One run of korvel through its windows: what the user does, then the
// trace and the diagnostics it must leave once Quit ends it with status 0.
struct Scenario {
  const char* name;
  const char* program;
  size_t inputs, outputs;
  const char* actions;
  std::string trace;
  const char* errors;
};

const Scenario kScenarios[] = {
    {"QuitAloneLeavesOnlyTheHeader", "mix", 3, 3, "", kMix, ""},
    {"StepAndBoolPulseInAutoStep", "mix", 3, 3, "step press:0 step",
     kMix + "#step 1\nf  0  0.000000  #0  0.000000  f  \n"
            "#step 2\nt  0  0.000000  #0  0.000000  t  \n"
            "#step 3\nf  0  0.000000  #0  0.000000  f  \n",
     ""},
    {"ReturnInFieldStepsInAutoStep", "mix", 3, 3,
     "enter:1:5 enter:2:-1.25 type:1:12abc step",
     kMix + "#step 1\nf  5  0.000000  #5  0.000000  f  \n"
            "#step 2\nf  5  -1.250000  #10  -2.500000  f  \n"
            "#step 3\nf  12  -1.250000  #22  -2.500000  f  \n",
     ""},
    // Back in Auto Step every bool is released.
    {"ComposeSetsSeveralInputsForOneStep", "mix", 3, 3,
     "mode press:0 press:0 press:0 enter:1:3 enter:2:1.5 step step mode step",
     kMix + "#step 1\nt  3  1.500000  #3  3.000000  t  \n"
            "#step 2\nt  3  1.500000  #6  3.000000  t  \n"
            "#step 3\nf  3  1.500000  #9  3.000000  f  \n",
     ""},
    {"BadFieldAbortsTheStepWithoutCountingIt", "mix", 3, 3,
     "type:2:1.5 type:1:x2 step type:1:2x step",
     kMix + "#error msg from inputs manager\n#Bad integer value for 'n (int)'\n#aborted\n"
            "#step 1\nf  2  1.500000  #2  3.000000  f  \n",
     ""},
    // Still Compose after the reset: pressing b runs no step, STEP does.
    {"ResetInComposeKeepsComposeAndClearsInputs", "mix", 3, 3,
     "mode press:0 enter:1:7 step reset step press:0 step",
     kMix + "#step 1\nt  7  0.000000  #7  0.000000  t  \n"
            "#reset\n"
            "#step 1\nf  0  0.000000  #0  0.000000  f  \n"
            "#step 2\nt  0  0.000000  #0  0.000000  t  \n",
     ""},
    // A reset keeps the choice.
    {"ChoiceOfAnEnumeratedInputSteps", "gear", 2, 2,
     "choose:0:1 choose:0:1 choose:0:0 choose:0:1 reset step",
     "#program shift\n#(g, k) returns (fast, same)\n"
     "#step 1\nhigh  0  #t  high  \n"
     "#step 2\nhigh  0  #t  high  \n"
     "#step 3\nlow  0  #f  low  \n"
     "#step 4\nhigh  0  #t  high  \n"
     "#reset\n"
     "#step 1\nhigh  0  #t  high  \n",
     "Warning, external type \"gear\" interpreted as enumerate\n"},
};

void PrintTo(const Scenario& c, std::ostream* out) { *out << c.name; }

class GuiTest : public ::testing::TestWithParam<Scenario> {};

// Every recorded trace must also replay in the batch simulator, which
// finds every output as recorded.
TEST_P(GuiTest, TraceExitStatusAndReplay) {
  const Scenario& c = GetParam();
  KorvelSession s(program_path(c.program));
  ASSERT_NO_FATAL_FAILURE(s.open());
  // The mode button, one row per input and STEP; one row per output.
  EXPECT_EQ(s.input_items().size(), c.inputs + 2);
  EXPECT_EQ(s.screen.items(s.outputs).size(), c.outputs);
  perform(s, c.actions);
  ASSERT_EQ(s.quit(), 0);
  ASSERT_EQ(s.trace(), c.trace);
  EXPECT_EQ(s.errors(), c.errors);

  const Finished check = korvel_run({"--check", program_path(c.program)}, s.trace());
  EXPECT_EQ(check.status, 0) << check.out << check.err;
}

INSTANTIATE_TEST_SUITE_P(Scenarios, GuiTest, ::testing::ValuesIn(kScenarios),
                         [](const auto& info) { return std::string(info.param.name); });

// Each text of the table typed into its field, the other field holding
// 0, then STEP; the same texts as batch lines. Both traces must be the one
// the table gives, abort lines included.
TEST(GuiInputTexts, WindowAndBatchReadEveryTextTheSame) {
  std::string actions, lines;
  std::string trace = "#program echo\n#(n, x) returns (m, y)\n";
  int step = 0;
  for (const InputText& t : kInputTexts) {
    if (!is_one_word(t.text)) continue;
    const bool is_int = t.field == Field::kInt;
    const std::string n = is_int ? t.text : "0";
    const std::string x = is_int ? "0" : t.text;
    actions += "type:0:" + n + " type:1:" + x + " step ";
    lines += n + " " + x + "\n";
    if (!t.read) {
      trace += std::string("#error msg from inputs manager\n#Bad ") +
               (is_int ? "integer value for 'n (int)'" : "double value for 'x (double)'") +
               "\n#aborted\n";
      continue;
    }
    const std::string values =
        is_int ? std::string(t.read) + "  0.000000  " : "0  " + std::string(t.read) + "  ";
    trace += "#step " + std::to_string(++step) + "\n" + values + "#" + values + "\n";
  }
  KorvelSession s(program_path("echo"));
  ASSERT_NO_FATAL_FAILURE(s.open());
  perform(s, actions);
  ASSERT_EQ(s.quit(), 0);
  EXPECT_EQ(s.trace(), trace);
  const Finished batch = korvel_run({program_path("echo")}, lines);
  EXPECT_EQ(batch.status, 0) << batch.err;
  EXPECT_EQ(batch.out, trace);
}

// A missing display is tests/cli/cases/korvel_no_display. korvel-run
// must refuse the same programs with the same bytes, or it would write
// traces no one could make in the window.
TEST(GuiRefusal, UnsupportedTypesAreRefusedBeforeThePanelsOpenAsInTheRunner) {
  const std::pair<const char*, const char*> refused[] = {
      {"opaque", "Sorry, type \"handle\" not implemented\n"},
      {"enum_output",
       "Warning, external type \"gear\" interpreted as enumerate\n"
       "Sorry, type \"mode\" not implemented\n"},
  };
  for (const auto& [program, err] : refused) {
    SCOPED_TRACE(program);
    ChildProcess korvel({KORVEL_BINARY, "-v", program_path(program)});
    EXPECT_EQ(korvel.wait_end(kTimeoutMs), 1);
    EXPECT_EQ(korvel.err(), err);
    EXPECT_EQ(korvel.out(), "");
    const Finished run = korvel_run({program_path(program)}, "");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, err);
    EXPECT_EQ(run.out, "");
  }
}

// What korvel-run accepts the window must open, the shipped examples first.
TEST(GuiExamples, EveryExampleOpensItsThreeWindows) {
  int opened = 0;
  for (const auto& entry : std::filesystem::directory_iterator(KORVEL_EXAMPLES)) {
    if (entry.path().extension() != ".qv") continue;
    SCOPED_TRACE(entry.path().string());
    KorvelSession s(entry.path().string());
    ASSERT_NO_FATAL_FAILURE(s.open());
    EXPECT_EQ(s.quit(), 0);
    ++opened;
  }
  EXPECT_GE(opened, 5);
}

}  // namespace
