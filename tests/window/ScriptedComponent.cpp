// SPDX-License-Identifier: MIT
// The scripts of the runtime's tests, for ours.
#include "runtime/ScriptedComponent.cpp"
