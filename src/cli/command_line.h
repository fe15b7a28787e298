// The command line: one pass over the options, then at most one report.
#pragma once

// Runs the program: collects from the options which report was asked for, running the immediate
// actions (UPM help, policy writes, overwrite wizard) as it meets them, and prints that report.
// Returns the exit status, 0, 1 or -1, which is 255 to the shell. Moves getopt's `optind`.
int runCommandLine(int argc, char **argv);
