// The toolkit fixture comes first: it orders GoogleTest before the X headers.
#include "tests/panel/toolkit_fixture.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Dialog.h>

#include <string>

#include "panel/input_panel.h"
#include "panel/output_panel.h"
#include "panel/widget_resources.h"

namespace {

// Steps are the window's business; the panel only triggers them.
class NoStep final : public StepTrigger {
 public:
  void step() override {}
};

const char* kChoices[] = {"red", "green"};

class PanelTest : public ToolkitTest {
 protected:
  void SetUp() override {
    ToolkitTest::SetUp();
    if (!top_level) return;
    panel = make<InputPanel>(&no_step, top_level, "node");
    panel->add_bool("a", &values[0]);
    panel->add_int("n", &values[1]);
    panel->add_real("x", &values[2]);
    panel->add_enum("c", 2, kChoices, &values[3]);
    panel->finish();
    XtPopup(panel->shell(), XtGrabNone);
    settle();
  }

  Widget item(const char* path) { return XtNameToWidget(panel->shell(), path); }
  std::string label(const char* path) { return get_resource<const char*>(item(path), XtNlabel); }

  NoStep no_step;
  EvalValue values[4] = {};
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
