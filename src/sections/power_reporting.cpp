#include "sections/power_reporting.h"

#include "sections/rows/fields.h"
#include "sections/rows/section_report.h"

// Lines of one kind's statistics over a period.
#define AVERAGE_AND_MINIMUM(period, kind)                                                          \
    ROW_LABEL(#period "_avg_cups_" #kind, period.kind.average),                                    \
        ROW_LABEL(#period "_min_cups_" #kind, period.kind.minimum),                                \
        ROW_LABEL(#period "_min_cups_" #kind "_time", period.kind.minimumTime)
#define MAXIMUM(period, kind) ROW_LABEL(#period "_max_cups_" #kind, period.kind.maximum)
#define MAXIMUM_TIME(period, kind)                                                                 \
    ROW_LABEL(#period "_max_cups_" #kind "_time", period.kind.maximumTime)
#define STATISTICS(period, kind)                                                                   \
    AVERAGE_AND_MINIMUM(period, kind), MAXIMUM(period, kind), MAXIMUM_TIME(period, kind)

// A line of average readings for each element of an array.
#define READINGS(text, path)                                                                       \
    nested(shownAs(Kind::readings, ROW_VERBATIM("   Last " text "-", path)), readingRows)

// One row a line.
// clang-format off
static constexpr auto readingRows = [] {
    using Record = sOOBData;
    return rowsOf(
        shownAs(Kind::reading, ROW_VERBATIM("\tcups_cpu_usage = ", cups_cpu_usage)),
        shownAs(Kind::reading, ROW_VERBATIM("\tcups_mem_usage = ", cups_mem_usage)),
        shownAs(Kind::reading, ROW_VERBATIM("\tcups_io_usage = ", cups_io_usage)),
        shownAs(Kind::reading, ROW_VERBATIM("\tcups_syslvl_usage = ", cups_syslvl_usage)));
}();

static constexpr auto regulatorRows = [] {
    using Record = sVcoreVRData;
    return rowsOf(
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
        ROW(VendorName));
}();

static constexpr auto rows = [] {
    using Record = sTolmAbsPowerReporting;
    return rowsOf(
        ROW(peakHeadroom),
        ROW(instHeadroom),
        ROW(bladePowerAllocation),
        ROW(psuRedundancyCapability),
        SIGNED(systemCapabilities),
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
        SIGNED(lastWeekMinPowerTime),
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
        STATISTICS(last_hour, cpu),
        STATISTICS(last_hour, io),
        AVERAGE_AND_MINIMUM(last_hour, mem),
        MAXIMUM(last_hour, mem),
        ROW_LABEL("last_hour_max_cups_men_time", last_hour.mem.maximumTime),
        AVERAGE_AND_MINIMUM(last_hour, sys),
        ROW_VERBATIM("   sPowerReportSection.last_hour_max_cups_sys------ ", last_hour.sys.maximum),
        MAXIMUM_TIME(last_hour, sys),
        line("   sPowerReportSection CUPS for last_day:"),
        STATISTICS(last_day, cpu),
        STATISTICS(last_day, io),
        AVERAGE_AND_MINIMUM(last_day, mem),
        MAXIMUM(last_day, mem),
        ROW_LABEL("last_day_max_cups_men_time", last_day.mem.maximumTime),
        AVERAGE_AND_MINIMUM(last_day, sys),
        ROW_VERBATIM("   sPowerReportSection.last_day_max_cups_sys------ ", last_day.sys.maximum),
        MAXIMUM_TIME(last_day, sys),
        line("   sPowerReportSection CUPS for last week:"),
        STATISTICS(last_week, cpu),
        STATISTICS(last_week, io),
        STATISTICS(last_week, mem),
        STATISTICS(last_week, sys),
        ROW(peak_util_cups_cpu),
        ROW(peak_util_cups_io),
        ROW(peak_util_cups_mem),
        ROW(peak_util_cups_sys),
        ROW(peak_util_cups_cpu_time),
        ROW(peak_util_cups_io_time),
        ROW(peak_util_cups_mem_time),
        ROW(peak_util_cups_sys_time),
        line("   sPowerReportSection.hour_oob_data.OOBData[0-59] (average readings, last 60 minutes):"),
        READINGS("minute", hour_oob_data),
        line("\n   sPowerReportSection.day_oob_data.OOBData[0-23] (average readings, last 24 hours):"),
        READINGS("hour", day_oob_data),
        line("\n   sPowerReportSection.week_oob_data.OOBData[0-13] (average readings, last 14 days):"),
        READINGS("day", week_oob_data),
        line(""),
        shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_cpu)),
        shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_mem)),
        shownAs(Kind::timeUnspaced, ROW_VERBATIM("   sPowerReportSection.peak_util_start_time_cups_io ------- ",
                                             peak_util_start_time_cups_io)),
        shownAs(Kind::timeUnspaced, ROW(peak_util_start_time_cups_sys)),
        line("\n   sPowerReportSection.power monitoring consumption data:"),
        nested(ROW(CpuPwrCons), consumptionRows),
        nested(ROW(MemPwrCons), consumptionRows),
        nested(ROW(SystemInputPwrCons), consumptionRows),
        nested(ROW(SystemOutputPwrCons), consumptionRows),
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
        nested(ROW(vcoreVRData), regulatorRows),
        line("\n   cups sub second sample data: "),
        shownAs(Kind::sample, ROW_VERBATIM("   cpuSample = ", cpuSample)));
}();
// clang-format on

Rows powerReportingFields() {
    return fieldsOf<rows>();
}

void dumpPowerReporting() {
    printSection({.section = powerReportingSection,
                  .record = "sTolmAbsPowerReporting",
                  .style = {.prefix = "   sPowerReportSection.", .hyphens = 6},
                  .rows = tableOf<rows>()});
}
