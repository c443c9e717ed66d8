// A form item wraps one Athena widget (or a small group) inside a Form and
// binds it to a variable of the program. Items of one form are stacked: each
// sits below the item created before it, and that `above` link chains them,
// so a panel runs its group operations from the last item upward.
#pragma once

#include <X11/Intrinsic.h>

class FormItem {
 public:
  FormItem(const FormItem&) = delete;
  FormItem& operator=(const FormItem&) = delete;
  /// The widget stays: the toolkit owns it.
  virtual ~FormItem() = default;

  /// Gives this item and every item above it the width of the widest of
  /// them, and at least `min_width`; returns that width.
  virtual Dimension fit_width(Dimension min_width);
  /// Copies the widget's state into the bound variable; returns null, or a
  /// text describing a value that cannot be read.
  virtual const char* get() { return nullptr; }
  /// Copies the bound variable into the widget; always 0.
  virtual int show() { return 0; }
  virtual void switch_mode() {}
  /// Puts the widget back to its initial look or text.
  virtual void reset() {}

  /// The wrapped widget (for a SelectItem, its inner Form).
  Widget widget = nullptr;
  /// The Form holding the item.
  Widget parent;
  /// The item directly above, null for the first item of a form.
  FormItem* above;

 protected:
  FormItem(Widget parent, FormItem* above) : parent(parent), above(above) {}

  /// Creates the wrapped widget under the parent, placed below the item
  /// above; a null label leaves the widget's own.
  void create_widget(const char* name, WidgetClass widget_class, const char* label);
};

// Group operations on a chain, each given its tail and walking upward.

/// Calls `get` from the tail up and stops at the first item that reports a
/// bad value, whose text it returns; null when every item read cleanly.
const char* get_all(FormItem* tail);
int show_all(FormItem* tail);
void switch_all(FormItem* tail);
void reset_all(FormItem* tail);
