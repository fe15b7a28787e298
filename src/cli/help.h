// The help texts.
#pragma once

// Prints the usage text, which covers every option.
void printUsage();

// Prints the menu of the sub-options of -u.
void printUpmHelp();
