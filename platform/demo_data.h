// Plausible values for the four sections: every field that a report prints is non-zero and differs
// from its neighbours. Times are recent.
#pragma once

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"

void fillGlobalSection(sPwrIpmiGlobalSec1 &record);
void fillPsuInfo(sPSUInfoSection &section);
void fillPowerReporting(sTolmAbsPowerReporting &record);
void fillPowerConfig(sTolmAbsPowerConfigClr &record);
