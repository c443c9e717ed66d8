// The one text buffer that labels, translations and bad-value messages are
// formatted into. A text stays valid until the next call formats over it.
#pragma once

#include "support/diagnostics.h"

/// Size of the shared buffer, terminating zero included.
constexpr int kTextBufferSize = 512;

/// Formats printf-style into the shared buffer. A longer text is cut at the
/// buffer's end rather than written past it.
const char* format_text(const char* fmt, ...) KORVEL_PRINTF(1, 2);
