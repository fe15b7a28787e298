#include "sections/power_reporting.h"

#include <cstdio>

static constexpr Style fieldStyle{.prefix = "   sPowerReportSection.", .hyphens = 6};

// The five lines of one kind's statistics over a period. The labels of the maximum and its time
// come spelled out: some are misspelt, and scripts look for them as they are.
#define STATISTICS(period, kind, maximumLead, maximumTimeLabel)                                    \
    ROW_LABELLED(#period "_avg_cups_" #kind, period.kind.average),                                 \
        ROW_LABELLED(#period "_min_cups_" #kind, period.kind.minimum),                             \
        ROW_LABELLED(#period "_min_cups_" #kind "_time", period.kind.minimumTime),                 \
        ROW_LEAD(#period maximumLead, period.kind.maximum),                                        \
        ROW_LABELLED(#period maximumTimeLabel, period.kind.maximumTime)

// One row a line.
// clang-format off
using Record = sTolmAbsPowerReporting;
static constexpr Row summaryFields[] = {
    ROW(peakHeadroom),
    ROW(instHeadroom),
    ROW(bladePowerAllocation),
    ROW(psuRedundancyCapability),
    ROW(systemCapabilities),
    ROW(activePolicyCapWatts),
    ROW(lastHourAvgPower),
    ROW(lastHourMinPowerTime),
    ROW(lastHourMinPower),
    ROW(lastHourMaxPower),
    ROW(lastHourMaxPowerTime),
    ROW(lastDayAvgPower),
    ROW(lastDayMinPower),
    ROW(lastDayMinPowerTime),
    ROW(lastDayMaxPowerTime),
    ROW(lastDayMaxPower),
    ROW(lastWeekAvgPower),
    ROW(lastWeekMinPower),
    ROW(lastWeekMinPowerTime),
    ROW(lastWeekMaxPower),
    ROW(activePolicyName),
    ROW(activePolicyValue1),
    ROW(activePolicyValue2),
    line("   sPowerReportSection.sysPwrConsumption :"),
    ROW(sysPwrConsumption.instWattsPSU1_2),
    ROW(sysPwrConsumption.instAmpsPSU1_2),
    ROW(sysPwrConsumption.SCViewSledPwr),
    ROW(sysPwrConsumption.SCViewSledCur),
    ROW(peciCupsUtilLimits.collectionPending),
    ROW(peciCupsUtilLimits.startMonitoring),
    ROW(peciCupsUtilLimits.retryCtr),
    ROW(peciCupsUtilLimits.cmaxValid),
    ROW(peciCupsUtilLimits.mmaxValid),
    ROW(peciCupsUtilLimits.imaxValid),
    ROW(peciCupsUtilLimits.CUPS_CMAX),
    ROW(peciCupsUtilLimits.CUPS_MMAX),
    ROW(peciCupsUtilLimits.CUPS_IMAX),
    ROW(CUPS_CPU),
    ROW(CUPS_MEM),
    ROW(CUPS_IO),
    ROW(CUPS_SYS),
    line("   sPowerReportSection CUPS for last hour:"),
    STATISTICS(last_hour, cpu, "_max_cups_cpu ------ ", "_max_cups_cpu_time"),
    STATISTICS(last_hour, io, "_max_cups_io ------ ", "_max_cups_io_time"),
    STATISTICS(last_hour, mem, "_max_cups_mem ------ ", "_max_cups_men_time"),
    STATISTICS(last_hour, sys, "_max_cups_sys------ ", "_max_cups_sys_time"),
    line("   sPowerReportSection CUPS for last_day:"),
    STATISTICS(last_day, cpu, "_max_cups_cpu ------ ", "_max_cups_cpu_time"),
    STATISTICS(last_day, io, "_max_cups_io ------ ", "_max_cups_io_time"),
    STATISTICS(last_day, mem, "_max_cups_mem ------ ", "_max_cups_men_time"),
    STATISTICS(last_day, sys, "_max_cups_sys------ ", "_max_cups_sys_time"),
    line("   sPowerReportSection CUPS for last week:"),
    STATISTICS(last_week, cpu, "_max_cups_cpu ------ ", "_max_cups_cpu_time"),
    STATISTICS(last_week, io, "_max_cups_io ------ ", "_max_cups_io_time"),
    STATISTICS(last_week, mem, "_max_cups_mem ------ ", "_max_cups_mem_time"),
    STATISTICS(last_week, sys, "_max_cups_sys ------ ", "_max_cups_sys_time"),
    ROW(peak_util_cups_cpu),
    ROW(peak_util_cups_io),
    ROW(peak_util_cups_mem),
    ROW(peak_util_cups_sys),
    ROW(peak_util_cups_cpu_time),
    ROW(peak_util_cups_io_time),
    ROW(peak_util_cups_mem_time),
    ROW(peak_util_cups_sys_time),
};

static constexpr Row peakStartFields[] = {
    line(""),
    shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_cpu)),
    shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_mem)),
    shownAs(Kind::timeUnspaced, ROW_LEAD("peak_util_start_time_cups_io ------- ",
                                         peak_util_start_time_cups_io)),
    shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_sys)),
};

static constexpr Row channelFields[] = {
    ROW(subSystemCurrentChannel.currentChannel1),
    ROW(subSystemCurrentChannel.voltageChannel1),
    ROW(subSystemCurrentChannel.currentChannel2),
    ROW(subSystemCurrentChannel.voltageChannel2),
    ROW(subSystemCurrentChannel.currentChannel3),
    ROW(subSystemCurrentChannel.voltageChannel3),
    ROW(subSystemCurrentChannel.time),
    ROW(subSystemPowerChannel.powerChannel1),
    ROW(subSystemPowerChannel.powerChannel2),
    ROW(subSystemPowerChannel.powerChannel3),
    ROW(subSystemPowerChannel.time),
    ROW(subSystemPowerData.storagePower),
    ROW(subSystemPowerData.pciePower),
    ROW(subSystemPowerData.fanPower),
    ROW(subSystemPowerData.gpuFanPower),
    ROW(subSystemPowerData.computeBoardPower),
    ROW(subSystemPowerData.gpuBoardPower),
    ROW(subSystemPowerData.psbPower),
    ROW(subSystemPowerData.prochotcntr),
    ROW(subSystemPowerData.pwrbrkcntr),
    ROW(subSystemPowerData.smbaltcntr),
    ROW(subSystemPowerData.time),
};

namespace regulator {
using Record = sVcoreVRData;
static constexpr Row fields[] = {
    ROW(u32IPMITimeStmp),
    ROW(temp),
    ROW(Vin),
    ROW(Vout),
    ROW(Pout),
    ROW(Iout),
    ROW(CntlrTemp),
    ROW(Pcc),
    ROW(Ocw),
    ROW(FinalICA),
    ROW(DisplayName),
    ROW(PlanarId),
    ROW(VendorName),
};
} // namespace regulator
// clang-format on

static void printReadings(const char *heading, const char *unit, const uint8_t *readings,
                          int count) {
    printf("   sPowerReportSection.%s:\n", heading);
    for (int i = 0; i < count; ++i) {
        const auto reading = load<sOOBData>(readings + static_cast<size_t>(i) * sizeof(sOOBData));
        printf("   Last %s-%2d\tcups_cpu_usage = %3d\tcups_mem_usage = %3d\t"
               "cups_io_usage = %3d\tcups_syslvl_usage = %3d\n",
               unit, i, reading.cups_cpu_usage, reading.cups_mem_usage, reading.cups_io_usage,
               reading.cups_syslvl_usage);
    }
}

static void printConsumption(const uint8_t *section) {
    puts("\n   sPowerReportSection.power monitoring consumption data:");
    printArray(fieldStyle, "CpuPwrCons", consumptionFields, section + offsetof(Record, CpuPwrCons),
               sizeof(sPwrConsEntry), 5);
    printArray(fieldStyle, "MemPwrCons", consumptionFields, section + offsetof(Record, MemPwrCons),
               sizeof(sPwrConsEntry), 9);
    printRows({.prefix = "   sPowerReportSection.SystemInputPwrCons.", .hyphens = 6},
              consumptionFields, section + offsetof(Record, SystemInputPwrCons));
    printRows({.prefix = "   sPowerReportSection.SystemOutputPwrCons.", .hyphens = 6},
              consumptionFields, section + offsetof(Record, SystemOutputPwrCons));
}

void dumpPowerReporting() {
    const SectionBuffer buffer =
        readWholeSection(Section::powerReporting, powerReportingSize, MessageEnd::newline);
    if (!buffer) {
        return;
    }
    const uint8_t *section = buffer.get();
    printf("sTolmAbsPowerReporting DATA::: sizeof structure = %d\n", powerReportingSize);
    printRows(fieldStyle, summaryFields, section);
    printReadings("hour_oob_data.OOBData[0-59] (average readings, last 60 minutes)", "minute",
                  section + offsetof(Record, hour_oob_data), 60);
    putchar('\n');
    printReadings("day_oob_data.OOBData[0-23] (average readings, last 24 hours)", "hour",
                  section + offsetof(Record, day_oob_data), 24);
    putchar('\n');
    printReadings("week_oob_data.OOBData[0-13] (average readings, last 14 days)", "day",
                  section + offsetof(Record, week_oob_data), 14);
    printRows(fieldStyle, peakStartFields, section);
    printConsumption(section);
    printRows(fieldStyle, channelFields, section);
    printArray(fieldStyle, "vcoreVRData", regulator::fields,
               section + offsetof(Record, vcoreVRData), sizeof(sVcoreVRData), 20);
    puts("\n   cups sub second sample data: ");
    for (size_t i = 0; i < sizeof Record::cpuSample; ++i) {
        printf("   cpuSample = %3u\n", section[offsetof(Record, cpuSample) + i]);
    }
}
