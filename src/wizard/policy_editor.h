// Group 3 of the wizard.
#pragma once

// Asks for a policy and lets the user overwrite its fields one at a time, showing the policy after
// each. Returns when the user goes back or a menu prompt fails.
void editPolicy();
