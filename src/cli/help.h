// The two help texts.
#pragma once

// Prints the usage text, 38 lines that cover every option.
void printUsage();

// Prints the menu of the sub-options of -u, 12 lines.
void printUpmHelp();
