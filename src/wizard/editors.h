// The three editors of the wizard. Each returns when the user goes back or a menu prompt fails.
#pragma once

// Group 1: PPL, PL1, PL2, PL4 and dimmBwThrtlPerc of one CPU at a time, and the system limits.
void editCpuPowerLimits();

// Group 2: rawdts, thermalMargin, cpupkgPwr, tarTemp and dimmPwr of one CPU at a time.
void editThermalData();

// Group 3: the fields of one policy.
void editPolicy();
