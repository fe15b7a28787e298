// The option -w, which writes shared memory.
#pragma once

#include "cli/arguments.h"

// Parses the arguments of -w, starting at getopt's `optind`, and advances `optind` past them. Runs
// the requested write or the wizard, or prints an error. Returns -1, which is 255 in the shell,
// after an error and after the wizard.
EarlyExit parseWriteOption(const Arguments &arguments);
