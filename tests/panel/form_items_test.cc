// The toolkit fixture comes first: it orders GoogleTest before the X headers.
#include "tests/panel/toolkit_fixture.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Dialog.h>

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

namespace {

Dimension width_of(Widget widget) { return get_resource<Dimension>(widget, XtNwidth); }

std::string label_of(Widget widget) { return get_resource<const char*>(widget, XtNlabel); }

void count_call(Widget, XtPointer counter, XtPointer) { ++*static_cast<int*>(counter); }

// Press a button the way its own translations would: run its callbacks.
void activate(FormItem* item) { XtCallCallbacks(item->widget, XtNcallback, nullptr); }

using FormItemTest = ToolkitTest;

TEST_F(FormItemTest, ChainTakesWidestWidthAndAtLeastTheMinimum) {
  FormItem* tail = nullptr;
  for (Dimension width : {120, 200, 90}) {
    tail = make<LabelItem>("label", form, tail, "x", true);
    set_resource(tail->widget, XtNwidth, width);
  }
  EXPECT_EQ(tail->fit_width(150), 200);
  for (FormItem* item = tail; item; item = item->above) EXPECT_EQ(width_of(item->widget), 200);
  EXPECT_EQ(tail->fit_width(300), 300);
  for (FormItem* item = tail; item; item = item->above) EXPECT_EQ(width_of(item->widget), 300);
}

TEST_F(FormItemTest, DialogWidthCountsItsMargins) {
  auto* label = make<LabelItem>("label", form, nullptr, "x", true);
  set_resource(label->widget, XtNwidth, 400);
  auto* dialog = make<DialogItem>("IntItem", form, label, "n (int)", "0", nullptr, nullptr);
  int margin = 2 * (get_resource<int>(dialog->widget, XtNdefaultDistance) +
                    get_resource<Dimension>(dialog->widget, XtNborderWidth));
  EXPECT_EQ(dialog->fit_width(300), 400);
  EXPECT_EQ(width_of(label->widget), 400);
  EXPECT_EQ(width_of(XtNameToWidget(dialog->widget, "value")), 400 - margin);
  EXPECT_EQ(width_of(XtNameToWidget(dialog->widget, "label")), 400 - margin);
}

TEST_F(FormItemTest, DialogReadsNumbersAsScanfDoesAndKeepsValueOnBadText) {
  auto* ints = make<DialogItem>("IntItem", form, nullptr, "n (int)", "0", nullptr, nullptr);
  auto* reals = make<DialogItem>("FloatItem", form, ints, "x (double)", "0.0", nullptr, nullptr);
  int n = 7;
  double x = 0.5;
  ints->bound_int = &n;
  reals->bound_double = &x;
  struct Case {
    const char* text;
    int value;
  };
  for (Case c : {Case{"12abc", 12}, Case{"  -3", -3}, Case{"4294967297", 1}}) {
    XtVaSetValues(ints->widget, XtNvalue, c.text, nullptr);
    EXPECT_EQ(get_all(reals), nullptr) << c.text;
    EXPECT_EQ(n, c.value) << c.text;
  }
  XtVaSetValues(ints->widget, XtNvalue, "abc", nullptr);
  XtVaSetValues(reals->widget, XtNvalue, "2.5e1x", nullptr);
  // The tail is read first, so the real is stored though the int is bad.
  EXPECT_STREQ(get_all(reals), "Bad integer value for 'n (int)'");
  EXPECT_EQ(n, 1);
  EXPECT_EQ(x, 25.0);
  XtVaSetValues(reals->widget, XtNvalue, "", nullptr);
  EXPECT_STREQ(reals->get(), "Bad double value for 'x (double)'");
  EXPECT_EQ(x, 25.0);
  reals->reset();
  EXPECT_STREQ(XawDialogGetValueString(reals->widget), "0.0");
}

TEST_F(FormItemTest, DialogBindsItsTextAsTheWidgetHoldsIt) {
  auto* dialog = make<DialogItem>("TextItem", form, nullptr, "s", "hello", nullptr, nullptr);
  const char* text = nullptr;
  dialog->bound_text = &text;
  EXPECT_EQ(dialog->get(), nullptr);
  EXPECT_STREQ(text, "hello");
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

struct PushProbe {
  SwitchButtonItem* item = nullptr;
  int value = -1;
  int calls = 0;
};

void probe_get(Widget, XtPointer data, XtPointer) {
  auto* probe = static_cast<PushProbe*>(data);
  probe->item->get();
  probe->calls++;
}

TEST_F(FormItemTest, PushButtonReadsPressedOnlyDuringItsCallback) {
  PushProbe probe;
  probe.item = make<SwitchButtonItem>("BoolItem", form, nullptr, "a", probe_get, &probe);
  probe.item->bound_int = &probe.value;
  Pixel background = get_resource<Pixel>(probe.item->widget, XtNbackground);
  activate(probe.item);
  EXPECT_EQ(probe.calls, 1);
  EXPECT_EQ(probe.value, 1);
  probe.item->get();
  EXPECT_EQ(probe.value, 0);
  EXPECT_EQ(get_resource<Pixel>(probe.item->widget, XtNbackground), background);
}

TEST_F(FormItemTest, SwitchButtonStaysUntilPressedAgainOrReset) {
  auto* item = make<SwitchButtonItem>("BoolItem", form, nullptr, "a", nullptr, nullptr);
  int value = -1;
  item->bound_int = &value;
  Pixel background = get_resource<Pixel>(item->widget, XtNbackground);
  item->switch_mode();
  activate(item);
  item->get();
  EXPECT_EQ(value, 1);
  EXPECT_NE(get_resource<Pixel>(item->widget, XtNbackground), background);
  activate(item);
  EXPECT_FALSE(item->reversed());
  activate(item);
  item->reset();
  EXPECT_FALSE(item->reversed());
  EXPECT_FALSE(item->in_switch_mode());
  EXPECT_EQ(get_resource<Pixel>(item->widget, XtNbackground), background);
  // Leaving switch mode releases a button that was left pressed.
  item->switch_mode();
  activate(item);
  switch_all(item);
  item->get();
  EXPECT_EQ(value, 0);
}

TEST_F(FormItemTest, SelectShowsOneChoiceAndHandsOutItsText) {
  const char* choices[] = {"red", "green", "blue"};
  int calls = 0;
  auto* select = make<SelectItem>("EnumItem", form, nullptr, "colour", 3, choices, count_call,
                                &calls);
  const char* text = nullptr;
  int index = -1;
  select->bound_text = &text;
  select->bound_index = &index;
  select->get();
  EXPECT_EQ(text, choices[0]);
  EXPECT_TRUE(select->button(0)->reversed());
  activate(select->button(2));
  activate(select->button(2));
  EXPECT_EQ(calls, 2);
  select->get();
  EXPECT_EQ(text, choices[2]);
  EXPECT_EQ(index, 2);
  EXPECT_EQ(select->selected(), 2);
  EXPECT_FALSE(select->button(0)->reversed());
  EXPECT_TRUE(select->button(2)->reversed());
  // A reset of the panel keeps the choice.
  reset_all(select);
  select->get();
  EXPECT_EQ(index, 2);
}

TEST_F(FormItemTest, ValueAndLightShowTheirBoundValues) {
  double x = 3.14159;
  int n = -4;
  const char* colour = "green";
  int on = 1;
  auto* real = make<ValueItem>("FloatItem", form, nullptr, "x", "......");
  auto* integer = make<ValueItem>("IntItem", form, real, "n", "......");
  auto* text = make<ValueItem>("EnumItem", form, integer, "c", "......");
  auto* unbound = make<ValueItem>("IntItem", form, text, "u", "......");
  auto* light = make<LightItem>("BoolItem", form, unbound, "b");
  real->bound_double = &x;
  integer->bound_int = &n;
  text->bound_text = &colour;
  light->bound_value = &on;
  EXPECT_EQ(show_all(light), 0);
  EXPECT_EQ(label_of(real->widget), "x : 3.142");
  EXPECT_EQ(label_of(integer->widget), "n : -4");
  EXPECT_EQ(label_of(text->widget), "c : green");
  EXPECT_EQ(label_of(unbound->widget), "u : ......");
  EXPECT_TRUE(light->lit());
  on = 0;
  light->show();
  EXPECT_FALSE(light->lit());
  on = 2;
  light->show();
  reset_all(light);
  EXPECT_EQ(label_of(real->widget), "x : ......");
  EXPECT_FALSE(light->lit());
}

// Real pointer and key events: the dialog's translations and frame.
TEST_F(FormItemTest, DialogNotifiesOnClickOrReturnButNotWhenDraggedOut) {
  int calls = 0;
  auto* dialog = make<DialogItem>("IntItem", form, nullptr, "n (int)", "0", count_call, &calls);
  auto* below = make<LabelItem>("label", form, dialog, "below", true);
  show();
  Widget label = XtNameToWidget(dialog->widget, "label");
  Pixel foreground = get_resource<Pixel>(label, XtNforeground);

  Pixel background = get_resource<Pixel>(dialog->widget, XtNbackground);
  EXPECT_EQ(pixel_at(dialog->widget, 0, 0), background);
  move_to(label, 2, 2);
  EXPECT_TRUE(dialog->entered());
  // A frame two pixels wide in the label's colour, the inside left clear.
  EXPECT_EQ(pixel_at(dialog->widget, 0, 0), foreground);
  EXPECT_EQ(pixel_at(dialog->widget, 1, 1), foreground);
  EXPECT_EQ(pixel_at(dialog->widget, 2, 2), background);
  press();
  EXPECT_TRUE(dialog->pressed());
  EXPECT_NE(get_resource<Pixel>(label, XtNforeground), foreground);
  move_to(below->widget, 2, 2);
  EXPECT_FALSE(dialog->entered());
  EXPECT_EQ(pixel_at(dialog->widget, 0, 0), background);
  EXPECT_FALSE(dialog->pressed());
  release();
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(get_resource<Pixel>(label, XtNforeground), foreground);

  move_to(label, 2, 2);
  press();
  release();
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(get_resource<Pixel>(label, XtNforeground), foreground);

  move_to(XtNameToWidget(dialog->widget, "value"), 2, 2);
  EXPECT_TRUE(dialog->entered());
  key("Return");
  EXPECT_EQ(calls, 2);
}

struct ButtonProbe {
  ButtonItem* item = nullptr;
  int value = -1;
  int calls = 0;
};

void probe_button(Widget, XtPointer data, XtPointer) {
  auto* probe = static_cast<ButtonProbe*>(data);
  probe->item->get();
  probe->calls++;
}

// Of the two bindings of the press, the toolkit keeps the first (set); the
// toggle's own binding of the release flips it back and notifies. So the
// button acts once per click and never stays down.
TEST_F(FormItemTest, ButtonActsOncePerClickAndComesBackUp) {
  ButtonProbe probe;
  probe.item = make<ButtonItem>("Step", form, nullptr, "STEP", probe_button, &probe);
  probe.item->bound_int = &probe.value;
  show();
  move_to(probe.item->widget, 2, 2);
  press();
  EXPECT_EQ(probe.calls, 0);
  release();
  EXPECT_EQ(probe.calls, 1);
  EXPECT_EQ(probe.value, 0);
  press();
  release();
  EXPECT_EQ(probe.calls, 2);
  EXPECT_EQ(probe.value, 0);
}

TEST_F(FormItemTest, SwitchLabelFlipsItsLabelBeforeItsCallbackRuns) {
  struct Seen {
    SwitchLabelItem* item = nullptr;
    int state = -1;
  } seen;
  auto on_press = [](Widget, XtPointer data, XtPointer) {
    auto* s = static_cast<Seen*>(data);
    s->item->get();
  };
  seen.item = make<SwitchLabelItem>("Chmod", form, nullptr, "off", "on", on_press, &seen);
  seen.item->bound_int = &seen.state;
  activate(seen.item);
  EXPECT_EQ(seen.state, 1);
  EXPECT_EQ(label_of(seen.item->widget), "on");
  seen.item->reset();
  seen.item->get();
  EXPECT_EQ(seen.state, 0);
  EXPECT_EQ(label_of(seen.item->widget), "off");
}

}  // namespace
