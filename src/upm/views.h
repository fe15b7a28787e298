// The three views of the UPM data block. Each begins with the UPM timestamp and prints its own copy
// of the power reporting section; a failed allocation or read prints its message only.
#pragma once

// Current power readings, CPU power limits, thermal data and all sixteen policies (632 lines).
void dumpUpmData();

// Current power readings and CPU power limits (57 lines).
void showCpuPowerLimits();

// CPU thermal data (63 lines).
void showThermalData();
