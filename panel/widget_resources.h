// Reading and setting single widget resources, and the two looks that
// several items share: reverse video and a hidden border.
#pragma once

#include <X11/Intrinsic.h>

/// Reads one resource; `T` must be the resource's own type (Pixel,
/// Dimension, Boolean, ...), since the toolkit writes exactly that size.
template <class T>
T get_resource(Widget widget, const char* name) {
  T value{};
  XtVaGetValues(widget, name, &value, nullptr);
  return value;
}

void set_resource(Widget widget, const char* name, XtArgVal value);

/// Swaps the widget's foreground and background.
void reverse_colours(Widget widget);
/// Paints the border in the background colour.
void hide_border(Widget widget);
