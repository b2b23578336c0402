// SPDX-License-Identifier: MIT
#include "../appkit/main.cpp"
