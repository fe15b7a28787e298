// The option pass: one reading of the command line that collects which report was asked for and
// runs the immediate actions (UPM help, policy writes, overwrite wizard) as it meets them.
#pragma once

#include <cstdint>

// In order of precedence: of the reports that a command line asks for, only the first runs.
enum class Report : uint8_t {
    locator,
    globalSection,
    offsets,
    psuInfo,
    powerReporting,
    powerConfig,
    upmData,
    onePolicy,
    allPolicies,
    cpuPowerLimits,
    thermalData,
    none,
};

struct Request {
    int optionCount = 0; // options met, unrecognised ones included
    Report report = Report::none;
    int32_t locator = -1;
    int32_t index = -1;
    uint32_t policy = 0; // 0..15, for Report::onePolicy
};

// Reads the whole command line into `request`. Returns whether the run goes on to the report; if
// not, `status` is the run's exit status and everything there was to say has been printed.
bool readOptions(int argc, char **argv, Request &request, int &status);
