#include "tests/common/x_screen.h"

#include <X11/XKBlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

XScreen::XScreen() : display_(XOpenDisplay(nullptr)) {
  int event_base, error_base, major, minor;
  if (display_ && !XTestQueryExtension(display_, &event_base, &error_base, &major, &minor)) {
    XCloseDisplay(display_);
    display_ = nullptr;
  }
}

XScreen::~XScreen() {
  if (display_) XCloseDisplay(display_);
}

Window XScreen::wait_for_window(const std::string& name, int timeout_ms) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  do {
    for (Window window : children(DefaultRootWindow(display_))) {
      char* title = nullptr;
      bool match = XFetchName(display_, window, &title) && title && name == title;
      if (title) XFree(title);
      XWindowAttributes attributes;
      if (match && XGetWindowAttributes(display_, window, &attributes) &&
          attributes.map_state == IsViewable) {
        return window;
      }
    }
    usleep(20000);
  } while (std::chrono::steady_clock::now() < deadline);
  return 0;
}

std::vector<Window> XScreen::children(Window window) {
  Window root, parent, *list = nullptr;
  unsigned count = 0;
  std::vector<Window> result;
  if (XQueryTree(display_, window, &root, &parent, &list, &count)) {
    result.assign(list, list + count);
    if (list) XFree(list);
  }
  auto top = [this](Window w) {
    XWindowAttributes attributes;
    XGetWindowAttributes(display_, w, &attributes);
    return attributes.y;
  };
  std::stable_sort(result.begin(), result.end(),
                   [&](Window a, Window b) { return top(a) < top(b); });
  return result;
}

void XScreen::raise_top_level(Window window) {
  Window root, parent, *list = nullptr;
  unsigned count = 0;
  while (XQueryTree(display_, window, &root, &parent, &list, &count) && parent != root) {
    if (list) XFree(list);
    list = nullptr;
    window = parent;
  }
  if (list) XFree(list);
  XRaiseWindow(display_, window);
}

void XScreen::point_at(Window window) {
  raise_top_level(window);
  XWindowAttributes attributes;
  XGetWindowAttributes(display_, window, &attributes);
  int x, y;
  Window child;
  XTranslateCoordinates(display_, window, DefaultRootWindow(display_), attributes.width / 2,
                        attributes.height / 2, &x, &y, &child);
  XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
  XSync(display_, False);
}

void XScreen::point_off() {
  Screen* screen = DefaultScreenOfDisplay(display_);
  XTestFakeMotionEvent(display_, -1, WidthOfScreen(screen) - 1, HeightOfScreen(screen) - 1,
                       CurrentTime);
  XSync(display_, False);
}

void XScreen::button(bool down) {
  XTestFakeButtonEvent(display_, 1, down, CurrentTime);
  XSync(display_, False);
}

void XScreen::click(Window window) {
  point_at(window);
  button(true);
  button(false);
}

void XScreen::key_code(KeySym keysym, bool shift, bool control) {
  KeyCode code = XKeysymToKeycode(display_, keysym);
  KeyCode shift_code = XKeysymToKeycode(display_, XK_Shift_L);
  KeyCode control_code = XKeysymToKeycode(display_, XK_Control_L);
  if (control) XTestFakeKeyEvent(display_, control_code, True, CurrentTime);
  if (shift) XTestFakeKeyEvent(display_, shift_code, True, CurrentTime);
  XTestFakeKeyEvent(display_, code, True, CurrentTime);
  XTestFakeKeyEvent(display_, code, False, CurrentTime);
  if (shift) XTestFakeKeyEvent(display_, shift_code, False, CurrentTime);
  if (control) XTestFakeKeyEvent(display_, control_code, False, CurrentTime);
  XSync(display_, False);
}

void XScreen::key(const char* keysym, bool control) {
  key_code(XStringToKeysym(keysym), false, control);
}

void XScreen::type(const std::string& text) {
  for (char c : text) {
    KeySym keysym = static_cast<unsigned char>(c);  // Latin-1 keysyms are the characters
    KeyCode code = XKeysymToKeycode(display_, keysym);
    // A character on the shifted level of its key needs Shift held.
    bool shift = XkbKeycodeToKeysym(display_, code, 0, 0) != keysym;
    key_code(keysym, shift, false);
  }
}

unsigned long XScreen::colour_at(Window window, int x, int y) {
  XSync(display_, False);
  XImage* image = XGetImage(display_, window, x, y, 1, 1, AllPlanes, ZPixmap);
  if (!image) return ~0ul;
  XColor colour;
  colour.pixel = XGetPixel(image, 0, 0);
  XDestroyImage(image);
  XQueryColor(display_, DefaultColormap(display_, DefaultScreen(display_)), &colour);
  return (colour.red >> 8) << 16 | (colour.green >> 8) << 8 | colour.blue >> 8;
}
