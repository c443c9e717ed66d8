// The toolkit fixture comes first: it orders GoogleTest before the X headers.
#include "tests/panel/toolkit_fixture.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Dialog.h>

#include <algorithm>
#include <string>

#include "panel/button_item.h"
#include "panel/dialog_item.h"
#include "panel/label_item.h"
#include "panel/light_item.h"
#include "panel/select_item.h"
#include "panel/switch_button_item.h"
#include "panel/switch_label_item.h"
#include "panel/text_buffer.h"
#include "panel/value_item.h"
#include "panel/widget_resources.h"
#include "tests/common/input_texts.h"

namespace {

void count_call(Widget, XtPointer counter, XtPointer) { ++*static_cast<int*>(counter); }

// Press a button the way its own translations would: run its callbacks.
void activate(FormItem* item) { XtCallCallbacks(item->widget, XtNcallback, nullptr); }

using FormItemTest = ToolkitTest;

// A chain takes its widest item's width, or the minimum when that is wider;
// a dialog's own widgets take it less the dialog's margins.
TEST_F(FormItemTest, ChainTakesWidestWidthAndAtLeastTheMinimum) {
  FormItem* tail = nullptr;
  for (Dimension width : {120, 400, 90}) {
    tail = make<LabelItem>("label", form, tail, "x", true);
    set_resource(tail->widget, XtNwidth, width);
  }
  auto* dialog = make<DialogItem>("IntItem", form, tail, "n (int)", "0", nullptr, nullptr);
  int margin = 2 * (get_resource<int>(dialog->widget, XtNdefaultDistance) +
                    get_resource<Dimension>(dialog->widget, XtNborderWidth));
  for (int minimum : {150, 500}) {
    const int want = std::max(minimum, 400);
    EXPECT_EQ(dialog->fit_width(minimum), want);
    for (FormItem* item = tail; item; item = item->above) EXPECT_EQ(width_of(item->widget), want);
    EXPECT_EQ(width_of(XtNameToWidget(dialog->widget, "value")), want - margin);
    EXPECT_EQ(width_of(XtNameToWidget(dialog->widget, "label")), want - margin);
  }
}

// The field's own text, blanks and all, read as the table says; a refused
// text names the label and leaves the bound variable alone.
TEST_F(FormItemTest, DialogReadsTheTableTextsAndKeepsValueOnBadText) {
  auto* ints = make<DialogItem>("IntItem", form, nullptr, "n (int)", "0", nullptr, nullptr);
  auto* reals = make<DialogItem>("FloatItem", form, ints, "x (double)", "0.0", nullptr, nullptr);
  int n = 7;
  double x = 0.5;
  ints->bound_int = &n;
  reals->bound_double = &x;
  for (const InputText& t : kInputTexts) {
    const bool is_int = t.field == Field::kInt;
    DialogItem* item = is_int ? ints : reals;
    auto shown = [&] { return std::string(is_int ? format_text("%d", n) : format_text("%lf", x)); };
    const std::string before = shown();
    const char* refusal =
        is_int ? "Bad integer value for 'n (int)'" : "Bad double value for 'x (double)'";
    XtVaSetValues(item->widget, XtNvalue, t.text, nullptr);
    EXPECT_STREQ(item->get(), t.read ? nullptr : refusal) << t.text;
    EXPECT_EQ(shown(), t.read ? t.read : before) << t.text;
  }
  const int kept = n;
  XtVaSetValues(ints->widget, XtNvalue, "abc", nullptr);
  XtVaSetValues(reals->widget, XtNvalue, "2.5e1x", nullptr);
  // The tail is read first, so the real is stored though the int is bad.
  EXPECT_STREQ(get_all(reals), "Bad integer value for 'n (int)'");
  EXPECT_EQ(n, kept);
  EXPECT_EQ(x, 25.0);
  reals->reset();
  EXPECT_STREQ(XawDialogGetValueString(reals->widget), "0.0");
}

TEST_F(FormItemTest, OverlongLabelIsCutToTheSharedBuffer) {
  std::string name(2000, 'n');
  auto* dialog = make<DialogItem>("IntItem", form, nullptr, name.c_str(), "x", nullptr, nullptr);
  int n = 0;
  dialog->bound_int = &n;
  std::string bad = dialog->get();
  EXPECT_EQ(bad.size(), size_t(kTextBufferSize - 1));
  EXPECT_EQ(bad.rfind("Bad integer value for 'nnn", 0), 0u);
  auto* value = make<ValueItem>("IntItem", form, dialog, name.c_str(), "......");
  value->bound_int = &n;
  value->show();
  EXPECT_EQ(label_of(value->widget).size(), size_t(kTextBufferSize - 1));
}

// What a choice steps with, and that a reset keeps it, the GUI tests show
// (tests/gui); here, which button looks chosen.
TEST_F(FormItemTest, SelectHighlightsExactlyTheChosenButton) {
  const char* choices[] = {"red", "green", "blue"};
  auto* select =
      make<SelectItem>("EnumItem", form, nullptr, "colour", 3, choices, nullptr, nullptr);
  EXPECT_TRUE(select->button(0)->reversed());
  activate(select->button(2));
  activate(select->button(2));
  EXPECT_EQ(select->selected(), 2);
  EXPECT_FALSE(select->button(0)->reversed());
  EXPECT_FALSE(select->button(1)->reversed());
  EXPECT_TRUE(select->button(2)->reversed());
}

// Real pointer and key events: the dialog's translations and frame. The
// buttons' clicks, the bool items' pulse and hold, and the mode button are
// driven through the whole program in tests/gui.
TEST_F(FormItemTest, DialogNotifiesOnClickOrReturnButNotWhenDraggedOut) {
  int calls = 0;
  auto* dialog = make<DialogItem>("IntItem", form, nullptr, "n (int)", "0", count_call, &calls);
  auto* below = make<LabelItem>("label", form, dialog, "below", true);
  show();
  Widget label = XtNameToWidget(dialog->widget, "label");
  Pixel foreground = get_resource<Pixel>(label, XtNforeground);

  Pixel background = get_resource<Pixel>(dialog->widget, XtNbackground);
  EXPECT_EQ(pixel_at(dialog->widget, 0, 0), background);
  move_to(label);
  EXPECT_TRUE(dialog->entered());
  // A frame two pixels wide in the label's colour, the inside left clear.
  EXPECT_EQ(pixel_at(dialog->widget, 0, 0), foreground);
  EXPECT_EQ(pixel_at(dialog->widget, 1, 1), foreground);
  EXPECT_EQ(pixel_at(dialog->widget, 2, 2), background);
  press();
  EXPECT_TRUE(dialog->pressed());
  EXPECT_NE(get_resource<Pixel>(label, XtNforeground), foreground);
  move_to(below->widget);
  EXPECT_FALSE(dialog->entered());
  EXPECT_EQ(pixel_at(dialog->widget, 0, 0), background);
  EXPECT_FALSE(dialog->pressed());
  release();
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(get_resource<Pixel>(label, XtNforeground), foreground);

  move_to(label);
  press();
  release();
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(get_resource<Pixel>(label, XtNforeground), foreground);

  move_to(XtNameToWidget(dialog->widget, "value"));
  EXPECT_TRUE(dialog->entered());
  key("Return");
  EXPECT_EQ(calls, 2);
}

}  // namespace
