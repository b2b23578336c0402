// SPDX-License-Identifier: MIT
// osalang: lists the scripting languages.
#include "ProgramTables.h"
#include "ScriptTool.h"

#include "platform/base/ProgramMain.h"

#include <iostream>

using namespace quoddle;

namespace {

int perform(int argc, char** argv) {
    const auto arguments = tool::parseArguments(tool::kOsalang, {argv + 1, argv + argc});
    if (!arguments)
        return arguments.error();
    const bool isLong = arguments->has("l"), isVeryLong = arguments->has("L");
    if (isLong && isVeryLong)
        return tool::misuse(tool::kOsalang, "-l and -L exclude each other");
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
