// The command line of orbelstatprobe: options first, then at most one report.
#pragma once

// Runs the program. Parses all options; carries out the policy writes and the wizard, and prints
// the help texts, as soon as it reaches them. Then prints the report that was asked for. Returns
// the exit status: 0, 1 or -1, which is 255 in the shell. Advances getopt's `optind`.
int runCommandLine(int argc, char **argv);
