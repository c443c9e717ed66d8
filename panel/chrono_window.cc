#include "panel/chrono_window.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Scrollbar.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

// The canvas, in pixels: a label column, then kShown ticks.
constexpr int kLabelWidth = 110;
constexpr int kTickWidth = 20;
constexpr size_t kShown = 40;
constexpr int kAxis = 16;
constexpr int kRow = 24;
constexpr int kHigh = 4;
constexpr int kLow = 20;

// Two stripes every 8 pixels, one leaning each way, so that nil and
// division by zero differ even without colour.
const unsigned char kNilBits[] = {0x11, 0x22, 0x44, 0x88, 0x11, 0x22, 0x44, 0x88};
const unsigned char kDivBits[] = {0x88, 0x44, 0x22, 0x11, 0x88, 0x44, 0x22, 0x11};

struct Resources {
  Boolean chronogram;
};

XtResource kResources[] = {
    {const_cast<char*>("chronogram"), const_cast<char*>("Chronogram"), XtRBoolean, sizeof(Boolean),
     XtOffsetOf(Resources, chronogram), XtRImmediate, reinterpret_cast<XtPointer>(False)},
};

}  // namespace

struct ChronoWindow::Colours {
  unsigned long white, black, high, wave, nil_bg, nil_fg, div_bg, div_fg, bus, bus_line, reset;
  Pixmap nil_stipple, div_stipple;
};

std::unique_ptr<ChronoWindow> ChronoWindow::open_if_wanted(Widget top_level, const char* node_name,
                                                           SimProgram& program, StepCycle& cycle) {
  Resources wanted{False};
  XtGetApplicationResources(top_level, &wanted, kResources, XtNumber(kResources), nullptr, 0);
  if (!wanted.chronogram) return nullptr;
  return std::make_unique<ChronoWindow>(top_level, node_name, program, cycle);
}

ChronoWindow::ChronoWindow(Widget top_level, const char* node_name, SimProgram& program,
                           StepCycle& cycle)
    : history_(program, kChronoHistoryTicks), colours_(std::make_unique<Colours>()) {
  const std::string shell_name = std::string(node_name) + "-chrono";
  shell_ = XtCreatePopupShell(shell_name.c_str(), topLevelShellWidgetClass, top_level, nullptr, 0);
  Widget form = XtCreateManagedWidget("form", formWidgetClass, shell_, nullptr, 0);
  const Dimension width = kLabelWidth + kShown * kTickWidth;
  const Dimension height = kAxis + static_cast<Dimension>(history_.signals().size()) * kRow + 4;
  Arg args[4];
  XtSetArg(args[0], XtNwidth, width);
  XtSetArg(args[1], XtNheight, height);
  canvas_ = XtCreateManagedWidget("chrono", widgetClass, form, args, 2);
  XtSetArg(args[0], XtNorientation, XtorientHorizontal);
  XtSetArg(args[1], XtNlength, width);
  XtSetArg(args[2], XtNfromVert, canvas_);
  scrollbar_ = XtCreateManagedWidget("scroll", scrollbarWidgetClass, form, args, 3);
  XtAddEventHandler(canvas_, ExposureMask, False, on_expose, this);
  XtAddCallback(scrollbar_, XtNscrollProc, on_scroll, this);
  XtAddCallback(scrollbar_, XtNjumpProc, on_jump, this);
  XtPopup(shell_, XtGrabNone);

  Display* display = XtDisplay(canvas_);
  const Colormap map = DefaultColormap(display, DefaultScreen(display));
  auto colour = [&](const char* name, unsigned long fallback) {
    XColor exact, shown;
    return XAllocNamedColor(display, map, name, &shown, &exact) ? shown.pixel : fallback;
  };
  Colours& c = *colours_;
  c.white = WhitePixel(display, DefaultScreen(display));
  c.black = BlackPixel(display, DefaultScreen(display));
  c.high = colour("#bfe6bf", c.white);
  c.wave = colour("#106010", c.black);
  c.nil_bg = colour("#f6c8c8", c.white);
  c.nil_fg = colour("#c00000", c.black);
  c.div_bg = colour("#fbe2a8", c.white);
  c.div_fg = colour("#b86000", c.black);
  c.bus = colour("#dde6f6", c.white);
  c.bus_line = colour("#203870", c.black);
  c.reset = colour("#2050e0", c.black);
  const Window root = RootWindow(display, DefaultScreen(display));
  c.nil_stipple = XCreateBitmapFromData(display, root, reinterpret_cast<const char*>(kNilBits), 8, 8);
  c.div_stipple = XCreateBitmapFromData(display, root, reinterpret_cast<const char*>(kDivBits), 8, 8);
  gc_ = XCreateGC(display, root, 0, nullptr);
  history_.listen(this);
  cycle.observe(&history_);
  update_thumb();
}

ChronoWindow::~ChronoWindow() {
  Display* display = XtDisplay(canvas_);
  XFreePixmap(display, colours_->nil_stipple);
  XFreePixmap(display, colours_->div_stipple);
  XFreeGC(display, gc_);
}

void ChronoWindow::on_expose(Widget, XtPointer window, XEvent* event, Boolean*) {
  // Draw once for a series of exposures.
  if (event->xexpose.count == 0) static_cast<ChronoWindow*>(window)->draw();
}

void ChronoWindow::on_scroll(Widget, XtPointer window, XtPointer position) {
  // The scroll bar's buttons move by a quarter of the window each.
  auto* self = static_cast<ChronoWindow*>(window);
  const long pixels = static_cast<long>(reinterpret_cast<intptr_t>(position));
  const long step = static_cast<long>(kShown / 4);
  const long first = static_cast<long>(self->first_) + (pixels > 0 ? step : -step);
  self->scroll_to(static_cast<size_t>(std::max(0L, first)));
}

void ChronoWindow::on_jump(Widget, XtPointer window, XtPointer fraction) {
  auto* self = static_cast<ChronoWindow*>(window);
  const size_t kept = self->history_.end() - self->history_.first_kept();
  const double at = *static_cast<float*>(fraction) * static_cast<double>(kept);
  self->scroll_to(self->history_.first_kept() + static_cast<size_t>(std::lround(at)));
}

void ChronoWindow::follow() {
  const size_t end = history_.end() + (history_.reset_pending() ? 1 : 0);
  scroll_to(end > kShown ? end - kShown : 0);
}

void ChronoWindow::scroll_to(size_t first) {
  const size_t end = history_.end();
  const size_t last_first = end > kShown ? end - kShown + 1 : 0;
  first_ = std::clamp(first, history_.first_kept(), std::max(history_.first_kept(), last_first));
  update_thumb();
  if (XtIsRealized(canvas_)) draw();
}

void ChronoWindow::update_thumb() {
  const size_t kept = history_.end() - history_.first_kept();
  if (kept == 0) {
    XawScrollbarSetThumb(scrollbar_, 0.0, 1.0);
    return;
  }
  const double top = static_cast<double>(first_ - history_.first_kept()) / static_cast<double>(kept);
  const double shown = std::min(1.0, static_cast<double>(kShown) / static_cast<double>(kept));
  XawScrollbarSetThumb(scrollbar_, static_cast<float>(top), static_cast<float>(shown));
}

void ChronoWindow::draw() {
  Display* display = XtDisplay(canvas_);
  const Window w = XtWindow(canvas_);
  const Colours& c = *colours_;
  const size_t end = std::min(history_.end(), first_ + kShown);
  const int bottom = kAxis + static_cast<int>(history_.signals().size()) * kRow;
  XSetFillStyle(display, gc_, FillSolid);
  XSetForeground(display, gc_, c.white);
  XFillRectangle(display, w, gc_, 0, 0, kLabelWidth + kShown * kTickWidth, bottom + 4);
  XSetForeground(display, gc_, c.black);
  char number[16];
  for (size_t t = first_; t < end; ++t) {
    const int x = kLabelWidth + static_cast<int>(t - first_) * kTickWidth;
    const Tick& tick = history_.tick(t);
    const int n = tick.aborted() ? std::snprintf(number, sizeof number, "*")
                                 : std::snprintf(number, sizeof number, "%d", tick.step);
    if (tick.aborted() || tick.step % 5 == 0 || tick.step == 1) {
      XDrawString(display, w, gc_, x + 2, kAxis - 4, number, n);
    }
  }
  for (size_t i = 0; i < history_.signals().size(); ++i) {
    draw_row(kAxis + static_cast<int>(i) * kRow, i, first_, end);
  }
  XSetForeground(display, gc_, c.reset);
  for (size_t t = first_; t <= end; ++t) {
    const bool mark = t < end ? history_.tick(t).after_reset
                              : t == history_.end() && history_.reset_pending();
    if (!mark) continue;
    const int x = kLabelWidth + static_cast<int>(t - first_) * kTickWidth;
    XFillRectangle(display, w, gc_, x - 1, 2, 2, static_cast<unsigned>(bottom - 2));
  }
}

void ChronoWindow::draw_row(int y, size_t signal, size_t from, size_t end) {
  Display* display = XtDisplay(canvas_);
  const Window w = XtWindow(canvas_);
  const Colours& c = *colours_;
  const Port& port = *history_.signals()[signal].port;
  XSetForeground(display, gc_, c.black);
  XDrawString(display, w, gc_, 4, y + 15, port.name, static_cast<int>(std::strlen(port.name)));
  const int hi = y + kHigh, lo = y + kLow;
  for (size_t t = from; t < end;) {
    const Sample& s = history_.samples(t)[signal];
    size_t next = t + 1;
    while (next < end && same_sample(port.kind, history_.samples(next)[signal], s)) ++next;
    const int x0 = kLabelWidth + static_cast<int>(t - from) * kTickWidth;
    const int x1 = kLabelWidth + static_cast<int>(next - from) * kTickWidth;
    const unsigned width = static_cast<unsigned>(x1 - x0), height = static_cast<unsigned>(lo - hi);
    t = next;
    if (s.state == SampleState::kAbsent) continue;
    if (s.state != SampleState::kDefined) {
      const bool nil = s.state == SampleState::kNil;
      XSetForeground(display, gc_, nil ? c.nil_fg : c.div_fg);
      XSetBackground(display, gc_, nil ? c.nil_bg : c.div_bg);
      XSetStipple(display, gc_, nil ? c.nil_stipple : c.div_stipple);
      XSetFillStyle(display, gc_, FillOpaqueStippled);
      XFillRectangle(display, w, gc_, x0, hi, width, height);
      XSetFillStyle(display, gc_, FillSolid);
      continue;
    }
    if (port.kind == PortKind::kBool) {
      if (s.value.i) {
        XSetForeground(display, gc_, c.high);
        XFillRectangle(display, w, gc_, x0, hi, width, height);
      }
      XSetForeground(display, gc_, c.wave);
      const int level = s.value.i ? hi : lo;
      XDrawLine(display, w, gc_, x0, level, x1, level);
      if (s.value.i) {
        XDrawLine(display, w, gc_, x0, hi, x0, lo);
        XDrawLine(display, w, gc_, x1, hi, x1, lo);
      }
      continue;
    }
    XSetForeground(display, gc_, c.bus);
    XFillRectangle(display, w, gc_, x0 + 2, hi, width - 4, height);
    XSetForeground(display, gc_, c.bus_line);
    XDrawRectangle(display, w, gc_, x0 + 2, hi, width - 4, height);
    const std::string text = sample_label(port.kind, s);
    // The fixed font is 6 pixels wide.
    if (static_cast<unsigned>(text.size()) * 6 + 8 <= width) {
      XDrawString(display, w, gc_, x0 + 5, y + 16, text.c_str(), static_cast<int>(text.size()));
    }
  }
}
