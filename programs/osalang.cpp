// SPDX-License-Identifier: MIT
// osalang: lists the scripting languages.
#include "ScriptTool.h"

#include "platform/base/ProgramMain.h"

#include <cstdio>
#include <iostream>

using namespace quoddle;

namespace {

int perform(int argc, char** argv) {
    auto options = tool::parseOptions("osalang", "lL", {argv + 1, argv + argc}, true);
    if (!options)
        return 2;
    if (options->help) {
        std::fputs("usage: osalang [-l|-L]\n\nLists the scripting languages: names; -l with code and maker; -L with the version as well.\n",
                   stdout);
        return 0;
    }
    bool isLong = false, isVeryLong = false;
    for (const auto& [letter, value] : options->given) {
        isLong |= letter == 'l';
        isVeryLong |= letter == 'L';
    }
    tool::setUp();
    for (const ComponentDescription& component : RegisteredComponents()) {
        if (isLong || isVeryLong)
            std::cout << bytesOf(component.subType) << " " << component.manufacturer << " ";
        if (isVeryLong) {
            const ComponentInstance instance = OpenDefaultComponent(component.type, component.subType);
            const std::int32_t version = CallComponentVersion(instance);
            std::cout << (version >> 16) << "." << (version & 0xFFFF) << " ";
            CloseComponent(instance);
        }
        std::cout << component.name << "\n";
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    return programMain("osalang", argc, argv, &perform);
}
