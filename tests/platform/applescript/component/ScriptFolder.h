// SPDX-License-Identifier: MIT
// ScriptFolderTest: what tests of several scripts share: an instance of the component, and a folder of their own for files.
#pragma once

#include "platform/applescript/AppleScriptComponent.h"
#include "platform/base/File.h"
#include "platform/osa/OSA.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>

namespace quoddle {

class ScriptFolderTest : public testing::Test {
protected:
    ScriptFolderTest() {
        registerAppleScriptComponent();
        instance = OpenDefaultComponent(kOSAComponentType, kAppleScriptSubtype);
        std::string pattern = (std::filesystem::temp_directory_path() / "scripts.XXXXXX").string();
        folder = ::mkdtemp(pattern.data());
    }
    ~ScriptFolderTest() override {
        CloseComponent(instance);
        std::filesystem::remove_all(folder);
    }

    std::string path(const std::string& name) const { return folder + "/" + name; }
    void write(const std::string& name, std::string_view bytes) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        EXPECT_EQ(writeFile(path(name), bytes), noErr);
    }
    /// A part of the last error as text.
    std::string error(FourCharCode part) const {
        AEDesc text;
        return OSAScriptError(instance, part, "utxt"_4cc, text) == noErr ? text.asUTF8().value_or("") : "none";
    }
    /// The result of the script as source, or the part of its error.
    std::string resultOf(OSAID script, FourCharCode partOfError) const {
        OSAID result = 0;
        AEDesc text;
        if (OSAExecute(instance, script, 0, 0, result) != noErr)
            return error(partOfError);
        return result && OSADisplay(instance, result, "utxt"_4cc, 0, text) == noErr ? text.asUTF8().value_or("") : "";
    }

    ComponentInstance instance = 0;
    std::string folder;
};

} // namespace quoddle
