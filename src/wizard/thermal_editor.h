// Group 2 of the wizard.
#pragma once

// Lets the user overwrite rawdts, thermalMargin, cpupkgPwr, tarTemp and dimmPwr of one CPU at a
// time. Returns when the user goes back, a menu prompt fails or the section cannot be read.
void editThermalData();
