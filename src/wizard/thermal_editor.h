// The wizard's group 2, CPU thermal readings.
#pragma once

// Lets the user overwrite rawdts, thermalMargin, cpupkgPwr, tarTemp and dimmPwr of one CPU at a
// time. Returns when the user chooses to go back, a menu prompt fails or the section cannot be
// read.
void editThermalData();
