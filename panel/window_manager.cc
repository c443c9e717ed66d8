#include "panel/window_manager.h"

#include <X11/Shell.h>
#include <X11/StringDefs.h>
#include <X11/Xatom.h>

namespace {

struct CloseRequest {
  XtCallbackProc on_close;
  XtPointer client_data;
  Atom protocols;
  Atom delete_window;
};

// A client message is never selected: the handler is registered for the
// non-maskable events.
void on_client_message(Widget shell, XtPointer request, XEvent* event, Boolean*) {
  if (event->type != ClientMessage) return;
  auto* close = static_cast<CloseRequest*>(request);
  const XClientMessageEvent& message = event->xclient;
  if (message.message_type != close->protocols || message.format != 32 ||
      static_cast<Atom>(message.data.l[0]) != close->delete_window) {
    return;
  }
  close->on_close(shell, close->client_data, nullptr);
}

}  // namespace

void close_through_window_manager(Widget shell, XtCallbackProc on_close, XtPointer client_data) {
  // Kept for the whole run: the shells live until the process ends.
  Display* display = XtDisplay(shell);
  auto* request = new CloseRequest{on_close, client_data,
                                   XInternAtom(display, "WM_PROTOCOLS", False),
                                   XInternAtom(display, "WM_DELETE_WINDOW", False)};
  XtAddEventHandler(shell, NoEventMask, True, on_client_message, request);
  if (!XtIsRealized(shell)) XtRealizeWidget(shell);
  XSetWMProtocols(display, XtWindow(shell), &request->delete_window, 1);
}

void place_from_resource(Widget shell, const char* name) {
  String own = nullptr;
  XtVaGetValues(shell, XtNgeometry, &own, nullptr);
  if (own) return;
  String geometry = nullptr;
  XtResource resource = {const_cast<char*>(name),
                         const_cast<char*>("Geometry"),
                         XtRString,
                         sizeof(String),
                         0,
                         XtRString,
                         nullptr};
  // The text stays in the resource database for the whole run.
  XtGetApplicationResources(XtParent(shell), &geometry, &resource, 1, nullptr, 0);
  if (geometry) XtVaSetValues(shell, XtNgeometry, geometry, nullptr);
}
