#include "sections/power_reporting.h"

#include "sections/field.h"

#include <cstdio>

static constexpr Style fieldStyle{.prefix = "   sPowerReportSection.", .hyphens = 6};

// The five lines of one kind's statistics over a period. The labels of the maximum and its time
// come spelled out: some are irregular, and output is kept as it is.
#define STATISTICS(period, kind, maximumLead, maximumTimeLabel)                                    \
    ROW_LABELLED(#period "_avg_cups_" #kind, period.kind.average),                                 \
        ROW_LABELLED(#period "_min_cups_" #kind, period.kind.minimum),                             \
        ROW_LABELLED(#period "_min_cups_" #kind "_time", period.kind.minimumTime),                 \
        ROW_LEAD(#period maximumLead, period.kind.maximum),                                        \
        ROW_LABELLED(#period maximumTimeLabel, period.kind.maximumTime)

// One row a line.
// clang-format off
using Record = sTolmAbsPowerReporting;
static constexpr Row summaryRows[] = {
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
static constexpr auto summaryFields = makeTable<summaryRows>();

static constexpr Row peakStartRows[] = {
    line(""),
    shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_cpu)),
    shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_mem)),
    shownAs(Kind::timeUnspaced, ROW_LEAD("peak_util_start_time_cups_io ------- ",
                                         peak_util_start_time_cups_io)),
    shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_sys)),
};
static constexpr auto peakStartFields = makeTable<peakStartRows>();

static constexpr Row channelRows[] = {
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
static constexpr auto channelFields = makeTable<channelRows>();

namespace regulator {
using Record = sVcoreVRData;
static constexpr Row rows[] = {
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
static constexpr auto fields = makeTable<rows>();
} // namespace regulator
// clang-format on

static void putReadings(Output &out, const char *heading, const char *unit,
                        const RowShape &readings, const uint8_t *section) {
    out.putLine(heading);
    for (size_t i = 0; i < readings.count; ++i) {
        const auto reading = load<sOOBData>(section + readings.offset + i * sizeof(sOOBData));
        out.put("   Last ");
        out.put(unit);
        out.put('-');
        out.putUnsigned(i, 2);
        out.put("\tcups_cpu_usage = ");
        out.putUnsigned(reading.cups_cpu_usage, 3);
        out.put("\tcups_mem_usage = ");
        out.putUnsigned(reading.cups_mem_usage, 3);
        out.put("\tcups_io_usage = ");
        out.putUnsigned(reading.cups_io_usage, 3);
        out.put("\tcups_syslvl_usage = ");
        out.putUnsigned(reading.cups_syslvl_usage, 3);
        out.put('\n');
    }
}

static void putAllReadings(Output &out, const uint8_t *section) {
    putReadings(out,
                "   sPowerReportSection.hour_oob_data.OOBData[0-59] (average readings, "
                "last 60 minutes):",
                "minute", ROW(hour_oob_data).shape, section);
    putReadings(out,
                "\n   sPowerReportSection.day_oob_data.OOBData[0-23] (average readings, "
                "last 24 hours):",
                "hour", ROW(day_oob_data).shape, section);
    putReadings(out,
                "\n   sPowerReportSection.week_oob_data.OOBData[0-13] (average readings, "
                "last 14 days):",
                "day", ROW(week_oob_data).shape, section);
}

static void putConsumption(Output &out, const uint8_t *section) {
    out.putLine("\n   sPowerReportSection.power monitoring consumption data:");
    putArray(out, fieldStyle, ROW(CpuPwrCons), consumptionFields, section, sizeof(sPwrConsEntry));
    putArray(out, fieldStyle, ROW(MemPwrCons), consumptionFields, section, sizeof(sPwrConsEntry));
    putRows(out, {.prefix = "   sPowerReportSection.SystemInputPwrCons.", .hyphens = 6},
            consumptionFields, section + offsetof(Record, SystemInputPwrCons));
    putRows(out, {.prefix = "   sPowerReportSection.SystemOutputPwrCons.", .hyphens = 6},
            consumptionFields, section + offsetof(Record, SystemOutputPwrCons));
}

static void putSamples(Output &out, const uint8_t *section) {
    out.putLine("\n   cups sub second sample data: ");
    for (size_t i = 0; i < sizeof Record::cpuSample; ++i) {
        out.put("   cpuSample = ");
        out.putUnsigned(section[offsetof(Record, cpuSample) + i], 3);
        out.put('\n');
    }
}

void dumpPowerReporting() {
    const SectionBuffer buffer =
        readWholeSection(Section::powerReporting, powerReportingSize, MessageEnd::newline);
    if (!buffer) {
        return;
    }
    const uint8_t *section = buffer.get();
    printf("sTolmAbsPowerReporting DATA::: sizeof structure = %d\n", powerReportingSize);
    Output out;
    putRows(out, fieldStyle, summaryFields, section);
    putAllReadings(out, section);
    putRows(out, fieldStyle, peakStartFields, section);
    putConsumption(out, section);
    putRows(out, fieldStyle, channelFields, section);
    putArray(out, fieldStyle, ROW(vcoreVRData), regulator::fields, section, sizeof(sVcoreVRData));
    putSamples(out, section);
}
