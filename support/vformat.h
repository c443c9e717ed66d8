// printf-style formatting into a buffer sized to the result, so no caller
// has to guess a length that some input will exceed.
#pragma once

#include <cstdarg>
#include <string>

/// The text `fmt` produces with `args`; `args` is consumed.
std::string vformat(const char* fmt, va_list args);
