// The wizard's group 3, policies.
#pragma once

// Asks for a policy and lets the user overwrite its fields one at a time; prints the policy before
// each menu. Returns when the user chooses to go back or a menu prompt fails.
void editPolicy();
