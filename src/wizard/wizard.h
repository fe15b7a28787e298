// The interactive overwrite wizard on the console.
#pragma once

// Offers the groups and runs their editors until the user chooses Exit or input fails. Every value
// that the user confirms is written at once. Reads no shared memory itself.
void runOverwriteWizard();
