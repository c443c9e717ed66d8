// The real korvel on a private X server, as a desktop user meets it: the
// window manager's close, the keypad, a field that cannot be read, a panel
// taller than the screen, the application defaults file. Everything goes
// through real X events (XTest, or a client message as a window manager
// sends it) and is checked on the windows themselves, pixels included.

#include "tests/gui/korvel_session.h"
// (the line keeps the order)
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>


namespace {

struct Rect {
  int x, y, width, height;  // the outside, border included, in root coordinates
  bool overlaps(const Rect& o) const {
    return x < o.x + o.width && o.x < x + width && y < o.y + o.height && o.y < y + height;
  }
};

/// korvel's session with what only these tests look at: where windows are,
/// their titles and pixels, and chords of keys.
class Korvel : public KorvelSession {
 public:
  using KorvelSession::KorvelSession;

  /// Presses and releases `keysym` with `modifier` (a modifier's keysym) held.
  void chord(const char* modifier, const char* keysym) {
    Display* display = screen.display();
    KeyCode held = XKeysymToKeycode(display, XStringToKeysym(modifier));
    KeyCode code = XKeysymToKeycode(display, XStringToKeysym(keysym));
    XTestFakeKeyEvent(display, held, True, CurrentTime);
    XTestFakeKeyEvent(display, code, True, CurrentTime);
    XTestFakeKeyEvent(display, code, False, CurrentTime);
    XTestFakeKeyEvent(display, held, False, CurrentTime);
    XSync(display, False);
  }
  /// The top-level windows on the screen, mapped or not.
  size_t top_level_count() { return screen.children(DefaultRootWindow(screen.display())).size(); }

  Rect outside(Window window) {
    XWindowAttributes a;
    XGetWindowAttributes(screen.display(), window, &a);
    int x, y;
    Window child;
    XTranslateCoordinates(screen.display(), window, DefaultRootWindow(screen.display()), 0, 0, &x,
                          &y, &child);
    return {x - a.border_width, y - a.border_width, a.width + 2 * a.border_width,
            a.height + 2 * a.border_width};
  }
  std::string title(Window window) {
    char* name = nullptr;
    std::string result;
    if (XFetchName(screen.display(), window, &name) && name) result = name;
    if (name) XFree(name);
    return result;
  }
  /// Saves a PNG of `window` under $KORVEL_SCREENSHOTS, when it is set.
  void screenshot(Window window, const std::string& name) {
    const char* dir = std::getenv("KORVEL_SCREENSHOTS");
    if (!dir) return;
    XRaiseWindow(screen.display(), window);
    XSync(screen.display(), False);
    usleep(100000);  // the client redraws what was hidden
    std::string command = "xwd -silent -id " + std::to_string(window) +
                          " | xwdtopnm 2>/dev/null | pnmtopng > " + dir + "/" + name + ".png";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
  }
};

const std::string kMixHeader = "#program mix\n#(b, n, x) returns (c, y, seen)\n";

// Why: closing any window from the window manager killed the process with
// an X error and status 1.
class WindowManagerClose : public ::testing::TestWithParam<int> {};

TEST_P(WindowManagerClose, EndsTheProcessAsQuitDoes) {
  Korvel k(program_path("mix"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  const Window windows[] = {k.main, k.inputs, k.outputs};
  const Window target = windows[GetParam()];
  Display* display = k.screen.display();
  const Atom protocols = XInternAtom(display, "WM_PROTOCOLS", False);
  const Atom delete_window = XInternAtom(display, "WM_DELETE_WINDOW", False);

  // A window manager sends the message only to a window that asks for it.
  Atom* listed = nullptr;
  int count = 0;
  ASSERT_TRUE(XGetWMProtocols(display, target, &listed, &count));
  std::vector<Atom> atoms(listed, listed + count);
  XFree(listed);
  EXPECT_NE(std::find(atoms.begin(), atoms.end(), delete_window), atoms.end());

  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = target;
  event.xclient.message_type = protocols;
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(delete_window);
  event.xclient.data.l[1] = CurrentTime;
  ASSERT_TRUE(XSendEvent(display, target, False, NoEventMask, &event));
  XSync(display, False);
  EXPECT_EQ(k.wait_end(), 0);
  EXPECT_EQ(k.trace(), kMixHeader);
  EXPECT_EQ(k.errors(), "");
}

std::string window_name(const ::testing::TestParamInfo<int>& info) {
  static const char* const kNames[] = {"Main", "Inputs", "Outputs"};
  return kNames[info.param];
}

INSTANTIATE_TEST_SUITE_P(Windows, WindowManagerClose, ::testing::Values(0, 1, 2), window_name);

// Why: the keypad's Enter inserted a line break in a numeric field instead
// of acting as Return.
TEST(Keypad, EnterStepsOnceWithTheTypedValue) {
  Korvel k(program_path("mix"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  k.enter(1, "7");
  k.screen.key("KP_Enter");
  ASSERT_TRUE(k.wait_lines(4)) << k.trace();
  EXPECT_EQ(k.trace(), kMixHeader + "#step 1\nf  7  0.000000  #7  0.000000  f  \n");

  // None of the keys that would break the line does, nor opens a dialog;
  // what is typed next joins the same line.
  const size_t windows = k.top_level_count();
  for (const char* key : {"j", "m", "o", "s", "r"}) k.chord("Control_L", key);
  k.chord("Meta_L", "i");
  k.screen.key("Linefeed");
  k.screen.type("5");
  k.step();
  ASSERT_TRUE(k.wait_lines(6)) << k.trace();
  EXPECT_EQ(k.top_level_count(), windows);
  ASSERT_EQ(k.quit(), 0) << k.errors();
  EXPECT_EQ(k.trace(), kMixHeader + "#step 1\nf  7  0.000000  #7  0.000000  f  \n" +
                           "#step 2\nf  75  0.000000  #82  0.000000  f  \n");
  EXPECT_EQ(k.errors(), "");
}

// Why: the enumerated item stayed as narrow as its widest choice in a
// 300-pixel panel.
TEST(EnumeratedItem, TakesTheWidthOfThePanel) {
  Korvel k(program_path("gear"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  k.screenshot(k.inputs, "enumerated");
  const std::vector<Window> items = k.input_items();
  ASSERT_EQ(items.size(), 4u);  // mode, g (the choice), k, STEP
  const Rect step = k.outside(items.back());
  EXPECT_GE(step.width, 300);
  for (Window item : items) {
    EXPECT_EQ(k.outside(item).width, step.width);
    EXPECT_EQ(k.outside(item).x, step.x);
  }
  // Its title and choices span it too.
  const Rect choice = k.outside(items.at(1));
  for (Window inner : k.screen.children(items.at(1))) {
    const Rect r = k.outside(inner);
    EXPECT_GE(r.width, choice.width - 12);
  }
  ASSERT_EQ(k.quit(), 0) << k.errors();
}

// Why: a field that did not parse aborted the step with nothing to see
// unless the trace was on ("O3" looks like "03").
TEST(UnreadableField, IsMarkedUntilAStepSucceedsAndTheTitleCountsSteps) {
  Korvel k(program_path("echo"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  const std::string header = "#program echo\n#(n, x) returns (m, y)\n";
  // A point of the field that no text reaches.
  auto look = [&](int input) {
    const Rect r = k.outside(k.field(input));
    return k.screen.colour_at(k.field(input), r.width - 6, r.height / 2);
  };
  const unsigned long paper = look(0);
  ASSERT_EQ(look(1), paper);

  k.enter(1, "2.5");
  k.enter(0, "O3");
  k.step();
  ASSERT_TRUE(k.wait_lines(5)) << k.trace();
  EXPECT_EQ(
      k.trace(),
      header + "#error msg from inputs manager\n#Bad integer value for 'n (int)'\n#aborted\n");
  k.screen.point_off();
  k.screenshot(k.inputs, "unreadable");
  EXPECT_NE(look(0), paper) << "the unreadable field is not marked";
  EXPECT_EQ(look(1), paper);
  EXPECT_EQ(k.title(k.inputs), "echo-inputs");

  k.enter(0, "3");
  k.step();
  ASSERT_TRUE(k.wait_lines(7)) << k.trace();
  k.screen.point_off();
  k.screenshot(k.inputs, "corrected");
  EXPECT_EQ(look(0), paper) << "the corrected field is still marked";
  EXPECT_EQ(k.title(k.inputs), "echo-inputs (step 1)");
  k.step();
  ASSERT_TRUE(k.wait_lines(9)) << k.trace();
  EXPECT_EQ(k.title(k.inputs), "echo-inputs (step 2)");
  k.reset();
  ASSERT_TRUE(k.wait_lines(10)) << k.trace();
  EXPECT_EQ(k.title(k.inputs), "echo-inputs");
  ASSERT_EQ(k.quit(), 0) << k.errors();
  EXPECT_EQ(k.trace(), header +
                           "#error msg from inputs manager\n#Bad integer value for 'n (int)'\n"
                           "#aborted\n"
                           "#step 1\n3  2.500000  #3  2.500000  \n"
                           "#step 2\n3  2.500000  #3  2.500000  \n"
                           "#reset\n");
}

// Why: the three windows opened at one place, the main window hidden under
// the input window. The application defaults file sets them side by side.
TEST(ApplicationDefaults, PlaceTheWindowsSideBySide) {
  ScopedEnv path("XFILESEARCHPATH", std::string(KORVEL_APP_DEFAULTS_DIR) + "/%N");
  Korvel k(program_path("mix"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  const Rect main = k.outside(k.main), inputs = k.outside(k.inputs), outputs = k.outside(k.outputs);
  EXPECT_FALSE(main.overlaps(inputs));
  EXPECT_FALSE(main.overlaps(outputs));
  EXPECT_FALSE(inputs.overlaps(outputs));
  // All of each on the screen.
  Screen* screen = DefaultScreenOfDisplay(k.screen.display());
  for (const Rect& r : {main, inputs, outputs}) {
    EXPECT_GE(r.x, 0);
    EXPECT_GE(r.y, 0);
    EXPECT_LE(r.x + r.width, WidthOfScreen(screen));
    EXPECT_LE(r.y + r.height, HeightOfScreen(screen));
  }
  // Every window is where a click reaches it: nothing covers its items.
  k.step();
  ASSERT_EQ(k.quit(), 0) << k.errors();
  EXPECT_EQ(k.trace(), kMixHeader + "#step 1\nf  0  0.000000  #0  0.000000  f  \n");
}

// A program's own geometry resource comes before the file's.
TEST(ApplicationDefaults, GiveWayToAProgramsOwnGeometry) {
  ScopedEnv path("XFILESEARCHPATH", std::string(KORVEL_APP_DEFAULTS_DIR) + "/%N");
  const ProgramFile resources("Korvel*mix-outputs.geometry: +500+300\n");
  ScopedEnv own("XENVIRONMENT", resources.path());
  Korvel k(program_path("mix"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  EXPECT_EQ(k.outside(k.outputs).x, 500);
  EXPECT_EQ(k.outside(k.outputs).y, 300);
  EXPECT_EQ(k.outside(k.inputs).x, 64);
  ASSERT_EQ(k.quit(), 0) << k.errors();
}

// Without the file korvel gives no resources: the windows open where the
// toolkit puts them, all at the top left corner.
TEST(ApplicationDefaults, WithoutTheFileTheWindowsOpenAtTheCorner) {
  ScopedEnv path("XFILESEARCHPATH", "/nonexistent/%N");
  Korvel k(program_path("mix"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  for (Window w : {k.main, k.inputs, k.outputs}) {
    EXPECT_EQ(k.outside(w).x, 0);
    EXPECT_EQ(k.outside(w).y, 0);
  }
  ASSERT_EQ(k.quit(), 0) << k.errors();
}

// Why: with many inputs the input window was taller than the screen, and
// STEP out of reach. Such a panel scrolls.
TEST(TallPanel, ScrollsUntilStepCanBeClicked) {
  std::string text = "node tall (";
  for (int i = 0; i < 60; i++) text += (i ? "; i" : "i") + std::to_string(i) + " : int";
  text += ")\nreturns (s : int);\nlet\n  s = i0";
  for (int i = 1; i < 60; i++) text += " + i" + std::to_string(i);
  const ProgramFile tall(text + ";\ntel\n");
  Korvel k(tall.path());
  ASSERT_NO_FATAL_FAILURE(k.open());
  Display* display = k.screen.display();
  Screen* screen = DefaultScreenOfDisplay(display);
  const Rect window = k.outside(k.inputs);
  EXPECT_LE(window.y + window.height, HeightOfScreen(screen));

  // The shell holds the viewport, which holds the clip window (and in it
  // the Form) and the scroll bar.
  const std::vector<Window> parts = k.screen.children(k.screen.children(k.inputs).at(0));
  ASSERT_EQ(parts.size(), 2u);
  const bool bar_first = k.outside(parts[0]).width < k.outside(parts[1]).width;
  const Window bar = parts[bar_first ? 0 : 1], clip = parts[bar_first ? 1 : 0];
  const std::vector<Window> items = k.screen.children(k.screen.children(clip).at(0));
  ASSERT_EQ(items.size(), 62u);  // mode, 60 inputs, STEP
  const Window step = items.back();
  EXPECT_GT(k.outside(step).y, HeightOfScreen(screen)) << "STEP is on the screen already";
  // Every item keeps the panel's width.
  for (Window item : items) EXPECT_EQ(k.outside(item).width, k.outside(step).width);

  // The middle button drags the scroll bar's thumb to the pointer: at the
  // bottom of the bar, the end of the panel shows.
  const Rect r = k.outside(bar);
  XTestFakeMotionEvent(display, -1, r.x + r.width / 2, r.y + r.height - 2, CurrentTime);
  XTestFakeButtonEvent(display, 2, True, CurrentTime);
  XTestFakeButtonEvent(display, 2, False, CurrentTime);
  XSync(display, False);
  Rect shown{};
  for (int i = 0; i < 100; i++) {
    shown = k.outside(step);
    if (shown.y + shown.height <= HeightOfScreen(screen)) break;
    usleep(20000);
  }
  k.screenshot(k.inputs, "tall");
  ASSERT_LE(shown.y + shown.height, window.y + window.height) << "STEP is still out of reach";
  ASSERT_GE(shown.y, window.y);
  k.screen.click(step);
  ASSERT_TRUE(k.wait_lines(4)) << k.trace();
  ASSERT_EQ(k.quit(), 0) << k.errors();
  EXPECT_NE(k.trace().find("#step 1\n"), std::string::npos) << k.trace();
  EXPECT_EQ(k.errors(), "");
}

// A panel that fits keeps its Form directly in its shell: the widget tree
// that users' resources address stays as it always was.
TEST(TallPanel, APanelThatFitsHasNoViewport) {
  Korvel k(program_path("mix"));
  ASSERT_NO_FATAL_FAILURE(k.open());
  EXPECT_EQ(k.screen.items(k.inputs).size(), 5u);
  EXPECT_EQ(k.screen.items(k.outputs).size(), 3u);
  ASSERT_EQ(k.quit(), 0) << k.errors();
}

}  // namespace
