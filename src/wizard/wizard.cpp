#include "wizard/wizard.h"

#include "wizard/policy_editor.h"
#include "wizard/power_limits_editor.h"
#include "wizard/prompts.h"
#include "wizard/thermal_editor.h"

#include <cstdio>

// The editors in the order of the menu.
static constexpr void (*editors[])() = {editCpuPowerLimits, editThermalData, editPolicy};

void runOverwriteWizard() {
    for (;;) {
        int32_t group = 0;
        int32_t next = 0;
        puts("\n============ Overwrite Wizard ============\n"
             " 1) CPU power limits data\n"
             " 2) Thermal data\n"
             " 3) Policies data\n"
             " 0) Exit");
        if (promptInt("Select", 0, 3, group) != 0 || group == 0) {
            return;
        }
        editors[group - 1]();
        puts("\nNext?\n"
             " 1) Continue same group\n"
             " 2) Switch group\n"
             " 0) Exit");
        if (promptInt("Select", 0, 2, next) != 0 || next == 0) {
            return;
        }
        if (next == 1) {
            editors[group - 1]();
        }
    }
}
