#pragma once
void dumpPowerReporting();
