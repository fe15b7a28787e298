// Entry point: the option pass, then at most one report.
#include "cli/help.h"
#include "cli/options.h"
#include "sections/global_section.h"
#include "sections/power_config.h"
#include "sections/power_reporting.h"
#include "sections/psu_info.h"
#include "upm/policy_report.h"
#include "upm/views.h"

#include <cstdio>
#include <unistd.h>

static void runReport(const Request &request) {
    switch (request.report) {
    case Report::locator:
        printf("locator=%d, index=%d\n", request.locator, request.index);
        break;
    case Report::globalSection:
        dumpGlobalSection();
        break;
    case Report::offsets:
        printGlobalSectionOffsets();
        break;
    case Report::psuInfo:
        dumpPSUInfo();
        break;
    case Report::powerReporting:
        dumpPowerReporting();
        break;
    case Report::powerConfig:
        dumpPowerConfig();
        break;
    case Report::upmData:
        dumpUpmData();
        break;
    case Report::onePolicy:
        showPolicy(request.policy);
        break;
    case Report::allPolicies:
        showAllPolicies();
        break;
    case Report::cpuPowerLimits:
        showCpuPowerLimits();
        break;
    case Report::thermalData:
        showThermalData();
        break;
    case Report::none:
        if (request.optionCount == 0) {
            puts("Error: No option passed");
            printUsage();
        }
    }
}

int main(int argc, char **argv) {
    // A report goes out in a few large writes, unless a person watches it line by line.
    static char outputBuffer[16384];
    if (isatty(STDOUT_FILENO) == 0) {
        setvbuf(stdout, outputBuffer, _IOFBF, sizeof outputBuffer);
    }
    Request request;
    int status = 0;
    if (readOptions(argc, argv, request, status)) {
        runReport(request);
    }
    return status;
}
