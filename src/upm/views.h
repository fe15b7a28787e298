// The three views of the UPM data block. Each reads the power reporting section and prints the UPM
// timestamp first. If the allocation or the read fails, it prints only a message.
#pragma once

// Prints the current power readings, CPU power limits, thermal data and all policies.
void dumpUpmData();

// Prints the current power readings and CPU power limits.
void showCpuPowerLimits();

// Prints the CPU thermal data.
void showThermalData();
