// The command line: one pass over the options, then at most one report.
#pragma once

// The exit status of a run of the wizard, whatever becomes of its output.
inline constexpr int wizardStatus = 255;

// Runs the program: collects from the options which report was asked for, running the immediate
// actions (UPM help, policy writes, overwrite wizard) as it meets them, and prints that report.
// Returns the exit status; -1 is 255 to the shell. Moves getopt's `optind`.
int runCommandLine(int argc, char **argv);
