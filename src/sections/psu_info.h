#pragma once
void dumpPSUInfo();
