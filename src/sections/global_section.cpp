#include "sections/global_section.h"

#include "sections/rows/fields.h"
#include "sections/rows/section_report.h"

#include <cstdio>

// Label and hyphens end in the same column on every line of both reports; only the lines of the
// statistics have a run of one length.
static constexpr Style memberStyle{.prefix = "   ", .hyphens = 28, .column = 43};

static constexpr Views inOffsets = 1;
static constexpr Views inValues = 2;

// One row a line.
// clang-format off
static constexpr auto rows = [] {
    using Record = sPwrIpmiGlobalSec1;
    return rowsOf(
        line(""),
        ROW(sPowerInfoPWR.u8NMSupport),
        ROW(sPowerInfoPWR.u8PMBusSupport),
        ROW(sPowerInfoPWR.u8RapidOn),
        ROW(sPowerInfoPWR.u8PFC),
        ROW(sPowerInfoPWR.u8MaxPSU),
        ROW(sPowerInfoPWR.u8PSUFWUpdate),
        ROW(sPowerInfoPWR.u8RedundancyCapability),
        ROW(sPowerInfoPWR.u8RedundancyPolicy),
        ROW(sPowerInfoPWR.u8MinPSUCount),
        ROW(sPowerInfoPWR.u8PowerCapEnable),
        ROW(sPowerInfoPWR.u16PowerCap),
        ROW(sPowerInfoPWR.u8PowerCapOwner),
        ROW(sPowerInfoPWR.u16MaxConsumption),
        ROW(sPowerInfoPWR.u16PlatformSupport),
        ROW(sPowerInfoPWR.u8SizeManagedSys),
        ROW(sPowerInfoPWR.u8MixedModePSUSupport),
        ROW(sPowerInfoPWR.u8PECIOverSMBusSupport),
        ARRAY(Kind::hexWords, sPowerInfoPWR.au8CPUMisc),
        line(""),
        ROW(sTolmPwrBudgetTypePWR.PwrCap),
        ROW(sTolmPwrBudgetTypePWR.PwrCapUnits),
        ROW(sTolmPwrBudgetTypePWR.PwrCapEnable),
        ROW(sTolmPwrBudgetTypePWR.MinPwr),
        ROW(sTolmPwrBudgetTypePWR.MaxPwr),
        ROW(sTolmPwrBudgetTypePWR.AvailPwr),
        ROW(sTolmPwrBudgetTypePWR.SysThrottling),
        ROW(sTolmPwrBudgetTypePWR.LowThresh),
        ROW(sTolmPwrBudgetTypePWR.HighThresh),
        ROW(sTolmPwrBudgetTypePWR.Test),
        ARRAY(Kind::hexWords, sTolmPwrBudgetTypePWR.au16VRAmp),
        onlyIn(inOffsets, ROW_LABEL("sTolmPwrBudgetTypePWR.au16VRAmpRange[]",
                                       sTolmPwrBudgetTypePWR.au16VRAmpRange)),
        onlyIn(inValues, shownAs(Kind::hexWords,
                                 ROW_VERBATIM("   sTolmPwrBudgetTypePWR.au16VRAmpRange[] ------",
                                          sTolmPwrBudgetTypePWR.au16VRAmpRange))),
        ROW(sTolmPwrBudgetTypePWR.u8ISCStatus),
        ROW(sTolmPwrBudgetTypePWR.u8ISCReason),
        ROW(sTolmPwrBudgetTypePWR.u8PSUPoweredFlag),
        ROW(sTolmPwrBudgetTypePWR.u8PSUHotplugFlag),
        line(""),
        ROW(sNMStatisticsPWR.u16CurPwrPlat),
        ROW(sNMStatisticsPWR.u16MinPwrPlat),
        ROW(sNMStatisticsPWR.u16MaxPwrPlat),
        ROW(sNMStatisticsPWR.u16AvgPwrPlat),
        SIGNED(sNMStatisticsPWR.u32IPMITimeStmp),
        line(""),
        ROW(sTolmPowerPOSConfigPWR.u8I2CBus),
        shownAs(Kind::hexByte, ROW_VERBATIM("   sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr -- ",
                                        sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr)),
        shownAs(Kind::hexByte, ROW_VERBATIM("   sTolmPowerPOSConfigPWR.u8I2CWriteSecondaryAddr - ",
                                        sTolmPowerPOSConfigPWR.u8I2CWriteSecondaryAddr)),
        ROW(sTolmPowerPOSConfigPWR.u8InterruptNum),
        line(""),
        ROW(sTolmPwrDataTypePWR.pwr),
        ROW(sTolmPwrDataTypePWR.amps),
        line(""),
        ARRAY(Kind::hexWords4, sPSStateInfoPWR.u8Status),
        ARRAY(Kind::decimalBytes, sPSStateInfoPWR.u8StatusValid),
        ARRAY(Kind::decimalBytes, sPSStateInfoPWR.u8TempReadingValid),
        ROW(sPSStateInfoPWR.u8RedundancySensorEnabled),
        ROW(sPSStateInfoPWR.u8RedundancySensorValid),
        ROW(sPSStateInfoPWR.u8RedundancyStatus),
        ROW(sPSStateInfoPWR.u8CalculatedRedundancy),
        ROW(sPSStateInfoPWR.u8RedundancyValidState),
        ARRAY(Kind::hexBytes, sPSStateInfoPWR.u8StatusFAKE),
        ARRAY(Kind::hexBytes, sPSStateInfoPWR.u8PSUFaultStatusFAKE),
        ROW(sPSStateInfoPWR.testingEnabled),
        line(""),
        ROW(sSysLevelSensor.u8SDRMultiplier),
        SIGNED(sSysLevelSensor.u32CPStartTime),
        SIGNED(sSysLevelSensor.u32CumulPower),
        SIGNED(sSysLevelSensor.u32PeakStartTime),
        SIGNED(sSysLevelSensor.u32PeakPowerTime),
        ROW(sSysLevelSensor.u16PeakPower),
        SIGNED(sSysLevelSensor.u32PeakCurrTime),
        ROW(sSysLevelSensor.u16PeakCurrent),
        ROW(sSysLevelSensor.u16AvgPower),
        line(""),
        ROW(u8BladeFormFactor),
        ROW(u8BPPresenceCount),
        ROW(u8AlertDestinationSet),
        ROW(u8EnergyCounterUnitSet),
        ROW(u8powerPending),
        ROW(u8ChassisInfraNotReadyFlag),
        ROW(u8BadTimestamp),
        ROW(u8BadTimestampCP),
        ROW(u8PowerONOFFCount),
        ROW(u8ChassisControlFlag),
        ARRAY(Kind::decimalWords, au16OOBStat1minAvg),
        shownAs(Kind::i32, ROW_LABEL("lclPwrMsgIdStatus ", lclPwrMsgIdStatus)),
        ROW(u8NMState),
        ROW(u8InitAgentComplete),
        ROW(u8PSSensorInitComplete),
        ROW(u8PowerONOFFState),
        ROW(u8PSUFaultCheck),
        nested(ROW(CpuPowerStat), powerRows),
        nested(ROW(MemPowerStat), powerRows),
        onlyIn(inOffsets, ROW_LABEL("NMHealth -", NMHealth)),
        onlyIn(inOffsets, ROW_LABEL("u8PFPONCount -", u8PFPONCount)),
        onlyIn(inOffsets, ROW_LABEL("throttleState -", throttleState)),
        onlyIn(inOffsets, ROW_LABEL("u8IsMovarTimeSet -", u8IsMovarTimeSet)),
        onlyIn(inOffsets, ROW_VERBATIM("   PowerOnReqPSyS----------------------------- ", PowerOnReqPSyS)),
        onlyIn(inValues, ROW(NMHealth)),
        onlyIn(inValues, ROW(u8PFPONCount)),
        onlyIn(inValues, ROW(throttleState)),
        onlyIn(inValues, ROW(u8IsMovarTimeSet)),
        onlyIn(inValues, line("")),
        line(""));
}();
// clang-format on

Rows globalSectionFields() {
    return fieldsOf<rows>();
}

void printGlobalSectionOffsets() {
    printf("sPwrIpmiGlobalSec1 OFFSETS::: sizeof structure = %d\n", globalPowerSection.size);
    TextBuffer out;
    forEachRow(tableOf<rows>(), inOffsets, [&](const RowView &row, const Rows &nested) {
        if (row.shape.kind == Kind::line) {
            out.putLine(row.label);
            return;
        }
        // Of an array of structs every element has a line, of any other the first.
        const bool isOfStructs = nested.size() != 0;
        const int lines = isOfStructs ? row.shape.count : 1;
        for (int i = 0; i < lines; ++i) {
            putLabel(out, memberStyle, row, isOfStructs ? i : -1);
            out.putUnsigned(row.shape.offset + static_cast<unsigned>(i * row.shape.size));
            out.put('\n');
        }
    });
}

void dumpGlobalSection() {
    printSection({.section = globalPowerSection,
                  .record = "sPwrIpmiGlobalSec1",
                  .style = memberStyle,
                  .rows = tableOf<rows>(),
                  .views = inValues});
}
