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
  std::string label(const char* path) { return label_of(item(path)); }

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
  Dimension width = width_of(item("InputsForm.Step"));
  EXPECT_GE(width, 300);
  // (A choice's inner Form takes back its own size when it is realized.)
  for (const char* path :
       {"InputsForm.Chmod", "InputsForm.BoolItem", "InputsForm.IntItem", "InputsForm.FloatItem"}) {
    EXPECT_EQ(width_of(item(path)), width) << path;
  }
}

using OutputPanelTest = ToolkitTest;

// The GUI tests read the trace, not the windows: what the output window
// shows is checked here.
TEST_F(OutputPanelTest, ShowsAndResetsEveryItem) {
  OutputPanel* panel = make<OutputPanel>(top_level, "node");
  EvalValue b{}, n{}, x{}, c{};
  panel->add_bool("b", &b);
  panel->add_int("n", &n);
  panel->add_real("x", &x);
  panel->add_enum("c", &c);
  panel->finish();
  XtPopup(panel->shell(), XtGrabNone);
  settle();
  auto item = [&](const char* name) {
    return XtNameToWidget(panel->shell(), (std::string("OutputsForm.") + name).c_str());
  };
  auto label = [&](const char* name) { return label_of(item(name)); };
  auto lit = [&, off = get_resource<Pixel>(item("BoolItem"), XtNbackground)] {
    return get_resource<Pixel>(item("BoolItem"), XtNbackground) != off;
  };
  b.i = 2;
  n.i = -4;
  x.d = 3.14159;
  c.s = "green";
  panel->update();
  EXPECT_TRUE(lit());
  EXPECT_EQ(label("IntItem"), "n : -4");
  EXPECT_EQ(label("FloatItem"), "x : 3.142");
  EXPECT_EQ(label("EnumItem"), "c : green");
  b.i = 0;
  panel->update();
  EXPECT_FALSE(lit());
  b.i = 1;
  panel->update();
  panel->reset();
  EXPECT_FALSE(lit());
  EXPECT_EQ(label("IntItem"), "n : ......");
  EXPECT_EQ(label("FloatItem"), "x : ......");
  // Once shown, a label keeps the panel's width whatever its text.
  EXPECT_EQ(width_of(item("IntItem")), 300);
}

}  // namespace
