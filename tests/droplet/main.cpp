// SPDX-License-Identifier: MIT
#include "../window/main.cpp"
