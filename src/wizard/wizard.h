#pragma once
void runOverwriteWizard();
