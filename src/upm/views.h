// The three views of the UPM data block. Each begins with the UPM timestamp and prints its own copy
// of the power reporting section; a failed allocation or read prints its message only.
#pragma once

// Current power readings, CPU power limits, thermal data and all policies.
void dumpUpmData();

// Current power readings and CPU power limits.
void showCpuPowerLimits();

// CPU thermal data.
void showThermalData();
