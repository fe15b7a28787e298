// The interactive overwrite wizard.
#pragma once

// Lets the user choose a group of fields and runs its editor, again and again, until the user
// chooses Exit or input fails. The editors write every value as soon as the user has confirmed it.
void runOverwriteWizard();
