// The option -w.
#pragma once

#include "cli/arguments.h"

// Reads what follows -w, from getopt's `optind` on, which it moves past what it used. Runs the
// write or the wizard that it asks for, or prints what is wrong with it.
EarlyExit parseWriteOption(const Arguments &arguments);
