// Which inputs and outputs a front end may offer. The window can show a
// named value only as a choice among its type's user constants; korvel-run
// refuses what the window refuses, with the same bytes at the same point,
// so that every trace it writes could have been made in the window.
#pragma once

#include "engine/interface.h"

/// Goes through the inputs, then the outputs, in declaration order, as the
/// window builds its panels. A named value must be of a declared type with
/// user constants; the first that is not ends the process with status 1
/// after "Sorry, type ... not implemented". Each named input before it
/// gets the warning that its type is offered as an enumeration.
void check_offered_ports(const ProgramInterface& described);
