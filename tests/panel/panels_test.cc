// The toolkit fixture comes first: it orders GoogleTest before the X headers.
#include "tests/panel/toolkit_fixture.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Dialog.h>

#include <string>
#include <vector>

#include "panel/input_panel.h"
#include "panel/output_panel.h"
#include "panel/widget_resources.h"

namespace {

// Records, at every step, the inputs as the panel's check stored them.
class StepRecorder final : public StepTrigger {
 public:
  void step() override {
    const char* bad = panel->check();
    steps.push_back(bad ? std::string(bad)
                        : std::to_string(a.i) + " " + std::to_string(n.i) + " " +
                              std::to_string(x.d) + " " + (c.s ? c.s : "-"));
  }

  InputPanel* panel = nullptr;
  EvalValue a{}, n{}, x{}, c{};
  std::vector<std::string> steps;
};

const char* kChoices[] = {"red", "green"};

class PanelTest : public ToolkitTest {
 protected:
  void SetUp() override {
    ToolkitTest::SetUp();
    if (!top_level) return;
    panel = make<InputPanel>(&recorder, top_level, "node");
    recorder.panel = panel;
    panel->add_bool("a", &recorder.a);
    panel->add_int("n", &recorder.n);
    panel->add_real("x", &recorder.x);
    panel->add_enum("c", 2, kChoices, &recorder.c);
    panel->finish();
    XtPopup(panel->shell(), XtGrabNone);
    settle();
  }

  Widget item(const char* path) { return XtNameToWidget(panel->shell(), path); }
  void press(const char* path) { XtCallCallbacks(item(path), XtNcallback, nullptr); }
  std::string label(const char* path) { return get_resource<const char*>(item(path), XtNlabel); }

  StepRecorder recorder;
  InputPanel* panel = nullptr;
};

TEST_F(PanelTest, ItemsStackInOneWidthOfAtLeast300) {
  EXPECT_EQ(label("InputsForm.Chmod"), " Auto Step ");
  EXPECT_EQ(label("InputsForm.BoolItem"), "a");
  EXPECT_EQ(label("InputsForm.IntItem.label"), "n (int)");
  EXPECT_STREQ(XawDialogGetValueString(item("InputsForm.IntItem")), "0");
  EXPECT_EQ(label("InputsForm.FloatItem.label"), "x (double)");
  EXPECT_STREQ(XawDialogGetValueString(item("InputsForm.FloatItem")), "0.0");
  EXPECT_EQ(label("InputsForm.EnumItem.SelectItemLabel"), "c");
  EXPECT_EQ(label("InputsForm.Step"), "STEP");
  Dimension width = get_resource<Dimension>(item("InputsForm.Step"), XtNwidth);
  EXPECT_GE(width, 300);
  // (A choice's inner Form takes back its own size when it is realized.)
  for (const char* path :
       {"InputsForm.Chmod", "InputsForm.BoolItem", "InputsForm.IntItem", "InputsForm.FloatItem"}) {
    EXPECT_EQ(get_resource<Dimension>(item(path), XtNwidth), width) << path;
  }
}

TEST_F(PanelTest, ModesDecideWhichChangesStep) {
  press("InputsForm.BoolItem");
  press("InputsForm.Step");
  press("InputsForm.Chmod");
  EXPECT_EQ(label("InputsForm.Chmod"), "  Compose  ");
  press("InputsForm.BoolItem");
  XtVaSetValues(item("InputsForm.IntItem"), XtNvalue, "4", nullptr);
  press("InputsForm.EnumItem.SelectItemButton");
  press("InputsForm.Step");
  press("InputsForm.Chmod");
  EXPECT_EQ(label("InputsForm.Chmod"), " Auto Step ");
  press("InputsForm.Step");
  EXPECT_EQ(recorder.steps, (std::vector<std::string>{
                                "1 0 0.000000 red", "0 0 0.000000 red",
                                "1 4 0.000000 red", "0 4 0.000000 red"}));
}

TEST_F(PanelTest, ResetKeepsComposeAndChoiceAndClearsTheRest) {
  press("InputsForm.Chmod");
  press("InputsForm.BoolItem");
  XtVaSetValues(item("InputsForm.IntItem"), XtNvalue, "9", nullptr);
  XtVaSetValues(item("InputsForm.FloatItem"), XtNvalue, "2.5", nullptr);
  // The second button of the choice is the last one named so.
  WidgetList buttons;
  Cardinal count;
  XtVaGetValues(item("InputsForm.EnumItem"), XtNchildren, &buttons, XtNnumChildren, &count,
                nullptr);
  XtCallCallbacks(buttons[count - 1], XtNcallback, nullptr);
  panel->reset();
  EXPECT_TRUE(panel->composing());
  EXPECT_EQ(label("InputsForm.Chmod"), "  Compose  ");
  press("InputsForm.Step");
  press("InputsForm.BoolItem");
  press("InputsForm.Step");
  EXPECT_EQ(recorder.steps, (std::vector<std::string>{"0 0 0.000000 green",
                                                      "1 0 0.000000 green"}));
}

using OutputPanelTest = ToolkitTest;

TEST_F(OutputPanelTest, ShowsAndResetsEveryItem) {
  OutputPanel* panel = make<OutputPanel>(top_level, "node");
  EvalValue n{}, x{}, c{};
  panel->add_int("n", &n);
  panel->add_real("x", &x);
  panel->add_enum("c", &c);
  panel->finish();
  XtPopup(panel->shell(), XtGrabNone);
  settle();
  n.i = 42;
  x.d = 0.5;
  c.s = "green";
  panel->update();
  auto label = [&](const char* path) {
    return std::string(get_resource<const char*>(XtNameToWidget(panel->shell(), path), XtNlabel));
  };
  EXPECT_EQ(label("OutputsForm.IntItem"), "n : 42");
  EXPECT_EQ(label("OutputsForm.FloatItem"), "x : 0.500");
  EXPECT_EQ(label("OutputsForm.EnumItem"), "c : green");
  panel->reset();
  EXPECT_EQ(label("OutputsForm.IntItem"), "n : ......");
  // Once shown, a label keeps the panel's width whatever its text.
  EXPECT_EQ(get_resource<Dimension>(XtNameToWidget(panel->shell(), "OutputsForm.IntItem"),
                                    XtNwidth),
            300);
}

}  // namespace
