#include "tests/panel/toolkit_fixture.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>
#include <X11/Xutil.h>

#include "panel/dialog_item.h"
#include "panel/widget_resources.h"

std::vector<void*>* ToolkitTest::kept_items = new std::vector<void*>;
XtAppContext ToolkitTest::app = nullptr;
Widget ToolkitTest::top_level = nullptr;

void ToolkitTest::SetUp() {
  if (!top_level) {
    Display* display = XOpenDisplay(nullptr);
    if (!display) GTEST_SKIP() << "no X display";
    XtToolkitInitialize();
    app = XtCreateApplicationContext();
    int argc = 0;
    XtDisplayInitialize(app, display, "panel_tests", "Korvel", nullptr, 0, &argc, nullptr);
    top_level = XtAppCreateShell("panel_tests", "Korvel", applicationShellWidgetClass, display,
                                 nullptr, 0);
    DialogItem::add_actions(app);
  }
  shell = XtCreatePopupShell("test", topLevelShellWidgetClass, top_level, nullptr, 0);
  form = XtCreateManagedWidget("form", formWidgetClass, shell, nullptr, 0);
}

void ToolkitTest::show() {
  // The pointer may still be where an earlier test, or an earlier round of
  // a repeated run, left it: over the place where this window opens.
  screen.point_off();
  XtPopup(shell, XtGrabNone);
  // Every test's window opens at the same place: this one goes on top.
  XRaiseWindow(XtDisplay(shell), XtWindow(shell));
  settle();
}

Pixel ToolkitTest::pixel_at(Widget widget, int x, int y) {
  XImage* image = XGetImage(XtDisplay(widget), XtWindow(widget), x, y, 1, 1, AllPlanes, ZPixmap);
  Pixel pixel = XGetPixel(image, 0, 0);
  XDestroyImage(image);
  return pixel;
}

Dimension ToolkitTest::width_of(Widget widget) {
  return get_resource<Dimension>(widget, XtNwidth);
}

std::string ToolkitTest::label_of(Widget widget) {
  return get_resource<const char*>(widget, XtNlabel);
}

void ToolkitTest::settle() {
  // Handling an event may send requests that bring further events.
  bool handled;
  do {
    XSync(XtDisplay(top_level), False);
    handled = false;
    while (XtAppPending(app)) {
      XtAppProcessEvent(app, XtIMAll);
      handled = true;
    }
  } while (handled);
}

void ToolkitTest::move_to(Widget widget) {
  screen.point_at(XtWindow(widget));
  settle();
}

void ToolkitTest::press() {
  screen.button(true);
  settle();
}

void ToolkitTest::release() {
  screen.button(false);
  settle();
}

void ToolkitTest::key(const char* keysym) {
  screen.key(keysym);
  settle();
}
