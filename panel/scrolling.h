// A panel taller than the screen goes into an Athena Viewport, which
// scrolls it; a panel that fits keeps its Form directly in its shell.
// Whether a panel fits is known before any window exists, from the sizes
// its widgets already have and the way a Form lays its children out.
#pragma once

#include <X11/Intrinsic.h>

/// The width and height a widget takes once laid out, border included:
/// a Form's follows from its managed children as the Form places them, any
/// other widget's is its own.
struct Extent {
  int width;
  int height;
};
Extent laid_out_extent(Widget widget);

/// Null when `form`, laid out, fits on its screen; otherwise `form` is
/// destroyed and a viewport made in its place under `shell` (see below), to
/// hold the same items again.
Widget viewport_if_too_tall(Widget shell, Widget form);

/// A Viewport named "Viewport" under `shell`, scrolling vertically, as
/// wide as a form of `form_extent` plus the scroll bar and as high as the
/// screen allows.
Widget make_viewport(Widget shell, Extent form_extent);
