// The wizard's group 1, CPU power limits.
#pragma once

// Lets the user overwrite PPL, PL1, PL2, PL4 and dimmBwThrtlPerc of one CPU at a time, and the
// system limits. Returns when the user chooses to go back, a menu prompt fails or the section
// cannot be read.
void editCpuPowerLimits();
