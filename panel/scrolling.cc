#include "panel/scrolling.h"

#include <X11/StringDefs.h>
#include <X11/Xaw/Form.h>
#include <X11/Xaw/Viewport.h>

#include <algorithm>
#include <map>

#include "panel/widget_resources.h"

namespace {

// Room for the vertical scroll bar: its default thickness and border.
constexpr int kScrollBarWidth = 14 + 2;
// Room left on the screen around a scrolled panel (window decorations).
constexpr int kScreenMargin = 48;

int border_of(Widget widget) { return 2 * get_resource<Dimension>(widget, XtNborderWidth); }

// The place of each managed child of one Form, as the Form's layout gives
// it: its distance from the Form's side or from the widget it is chained
// to, then its size.
class FormLayout {
 public:
  explicit FormLayout(Widget form) : form_(form) {}

  Extent extent() {
    WidgetList children = nullptr;
    Cardinal count = 0;
    XtVaGetValues(form_, XtNchildren, &children, XtNnumChildren, &count, nullptr);
    int right = 0, bottom = 0;
    for (Cardinal i = 0; i < count; i++) {
      if (!XtIsManaged(children[i])) continue;
      right = std::max(right, far_edge(children[i], XtNfromHoriz, XtNhorizDistance, true));
      bottom = std::max(bottom, far_edge(children[i], XtNfromVert, XtNvertDistance, false));
    }
    const int spacing = get_resource<int>(form_, XtNdefaultDistance);
    return {right + spacing + border_of(form_), bottom + spacing + border_of(form_)};
  }

 private:
  // The right (or bottom) edge of a child, its border included.
  int far_edge(Widget child, const char* from, const char* distance, bool horizontal) {
    auto& memo = horizontal ? right_ : bottom_;
    if (auto found = memo.find(child); found != memo.end()) return found->second;
    Widget chained = get_resource<Widget>(child, from);
    int near = get_resource<int>(child, distance);
    if (chained) near += far_edge(chained, from, distance, horizontal);
    const Extent size = laid_out_extent(child);
    return memo[child] = near + (horizontal ? size.width : size.height);
  }

  Widget form_;
  std::map<Widget, int> right_, bottom_;
};

}  // namespace

Extent laid_out_extent(Widget widget) {
  if (XtIsSubclass(widget, formWidgetClass)) return FormLayout(widget).extent();
  return {get_resource<Dimension>(widget, XtNwidth) + border_of(widget),
          get_resource<Dimension>(widget, XtNheight) + border_of(widget)};
}

Widget viewport_if_too_tall(Widget shell, Widget form) {
  const Extent extent = laid_out_extent(form);
  if (extent.height <= HeightOfScreen(XtScreen(form))) return nullptr;
  XtDestroyWidget(form);
  return make_viewport(shell, extent);
}

Widget make_viewport(Widget shell, Extent form_extent) {
  const int height = std::max(100, HeightOfScreen(XtScreen(shell)) - kScreenMargin);
  Arg args[5];
  Cardinal n = 0;
  XtSetArg(args[n], XtNallowVert, True);
  n++;
  XtSetArg(args[n], XtNallowHoriz, False);
  n++;
  XtSetArg(args[n], XtNwidth, form_extent.width + kScrollBarWidth);
  n++;
  XtSetArg(args[n], XtNheight, std::min(height, form_extent.height));
  n++;
  XtSetArg(args[n], XtNborderWidth, 0);
  n++;
  return XtCreateManagedWidget("Viewport", viewportWidgetClass, shell, args, n);
}
