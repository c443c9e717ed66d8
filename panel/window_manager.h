// What a window manager expects of korvel's shells: a close through the
// window manager (the WM_DELETE_WINDOW protocol) ends the process the way
// Quit does, instead of the X error a killed connection would bring.
#pragma once

#include <X11/Intrinsic.h>

/// Realizes `shell` if needed, announces WM_DELETE_WINDOW on it, and calls
/// `on_close(shell, client_data, nullptr)` when the window manager sends it.
void close_through_window_manager(Widget shell, XtCallbackProc on_close, XtPointer client_data);

/// Gives `shell`, not yet realized, the geometry named by the application
/// resource `name` (class "Geometry"), unless the shell has a geometry
/// resource of its own. Without either the shell keeps the toolkit's
/// placement.
void place_from_resource(Widget shell, const char* name);
