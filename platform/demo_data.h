// Plausible values for the sections: a system that takes 612 W under a cap of 900, and the power
// supply units of its chassis. Times are recent. What may be edited is within its bound. Each
// function fills in a record of zeros whatever is not zero in such a system.
#pragma once

#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "upm/block.h"

void fillGlobalSection(sPwrIpmiGlobalSec1 &record);
void fillPsuInfo(sPSUInfoSection &section);
void fillPowerReporting(sTolmAbsPowerReporting &record);
void fillUpmBlock(sUpmBlock &block);
void fillPowerConfig(sTolmAbsPowerConfigClr &record);
