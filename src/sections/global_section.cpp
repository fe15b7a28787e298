#include "sections/global_section.h"

#include "sections/field.h"

#include <cstdio>

using Record = sPwrIpmiGlobalSec1;

// Label and hyphens end in the same column on every line of both reports.
static constexpr Style memberStyle{.prefix = "   ", .column = 43};
static constexpr Style statisticsStyle{.prefix = "   ", .hyphens = 28};

// Of an entry the powers are shown, not the time.
static constexpr size_t statisticsCount = 4;

static constexpr Views inOffsets = 1;
static constexpr Views inValues = 2;

// An array's label says that it is one, its values stand on lines of their own.
#define ARRAY(kind, path) shownAs(kind, ROW_LABELLED(#path "[]", path))

// One row a line.
// clang-format off
static constexpr Row memberRows[] = {
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
    onlyIn(inOffsets, ROW_LABELLED("sTolmPwrBudgetTypePWR.au16VRAmpRange[]",
                                   sTolmPwrBudgetTypePWR.au16VRAmpRange)),
    onlyIn(inValues, shownAs(Kind::hexWords,
                             ROW_LEAD("sTolmPwrBudgetTypePWR.au16VRAmpRange[] ------",
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
    ROW(sNMStatisticsPWR.u32IPMITimeStmp),
    line(""),
    ROW(sTolmPowerPOSConfigPWR.u8I2CBus),
    shownAs(Kind::hexByte, ROW_LEAD("sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr -- ",
                                    sTolmPowerPOSConfigPWR.u8I2CReadSecondaryAddr)),
    shownAs(Kind::hexByte, ROW_LEAD("sTolmPowerPOSConfigPWR.u8I2CWriteSecondaryAddr - ",
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
    ROW(sSysLevelSensor.u32CPStartTime),
    ROW(sSysLevelSensor.u32CumulPower),
    ROW(sSysLevelSensor.u32PeakStartTime),
    ROW(sSysLevelSensor.u32PeakPowerTime),
    ROW(sSysLevelSensor.u16PeakPower),
    ROW(sSysLevelSensor.u32PeakCurrTime),
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
    ROW_LABELLED("lclPwrMsgIdStatus ", lclPwrMsgIdStatus),
    ROW(u8NMState),
    ROW(u8InitAgentComplete),
    ROW(u8PSSensorInitComplete),
    ROW(u8PowerONOFFState),
    ROW(u8PSUFaultCheck),
    ROW(CpuPowerStat),
    ROW(MemPowerStat),
    onlyIn(inOffsets, ROW_LABELLED("NMHealth -", NMHealth)),
    onlyIn(inOffsets, ROW_LABELLED("u8PFPONCount -", u8PFPONCount)),
    onlyIn(inOffsets, ROW_LABELLED("throttleState -", throttleState)),
    onlyIn(inOffsets, ROW_LABELLED("u8IsMovarTimeSet -", u8IsMovarTimeSet)),
    onlyIn(inOffsets, ROW_LEAD("PowerOnReqPSyS----------------------------- ", PowerOnReqPSyS)),
    onlyIn(inValues, ROW(NMHealth)),
    onlyIn(inValues, ROW(u8PFPONCount)),
    onlyIn(inValues, ROW(throttleState)),
    onlyIn(inValues, ROW(u8IsMovarTimeSet)),
    onlyIn(inValues, line("")),
    line(""),
};
// clang-format on
static constexpr auto members = makeTable<memberRows>();

static void putOffset(Output &out, const Row &row, int element, size_t offset) {
    putLead(out, memberStyle, row, element);
    out.putUnsigned(offset);
    out.put('\n');
}

void printGlobalSectionOffsets() {
    printf("sPwrIpmiGlobalSec1 OFFSETS::: sizeof structure = %d\n\n", globalPowerSize);
    Output out;
    for (size_t i = 0; i < std::size(members.rows); ++i) {
        const Row row = Rows(members)[i];
        if ((row.shape.views & inOffsets) == 0) {
            continue;
        }
        if (row.shape.kind == Kind::line) {
            out.putLine(row.label);
        } else if (row.shape.kind == Kind::record) {
            for (int entry = 0; entry < row.shape.count; ++entry) {
                putOffset(out, row, entry,
                          row.shape.offset + static_cast<size_t>(entry) * sizeof(sPwrConsEntry));
            }
        } else {
            putOffset(out, row, -1, row.shape.offset);
        }
    }
}

void dumpGlobalSection() {
    const SectionBuffer section =
        readWholeSection(Section::globalPower, globalPowerSize, MessageEnd::newline);
    if (!section) {
        return;
    }
    printf("sPwrIpmiGlobalSec1 DATA::: sizeof structure = %d\n\n", globalPowerSize);
    Output out;
    for (size_t i = 0; i < std::size(members.rows); ++i) {
        const Row row = Rows(members)[i];
        if ((row.shape.views & inValues) == 0) {
            continue;
        }
        if (row.shape.kind == Kind::record) {
            putArray(out, statisticsStyle, row, Rows(consumptionFields, statisticsCount),
                     section.get(), sizeof(sPwrConsEntry));
        } else {
            putRow(out, memberStyle, row, section.get());
        }
    }
}
