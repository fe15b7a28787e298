#pragma once
void dumpUpmData();
void showCpuPowerLimits();
void showThermalData();
