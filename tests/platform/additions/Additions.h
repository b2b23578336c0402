// SPDX-License-Identifier: MIT
// Sends commands to this process's additions as a script does. The fixture has a folder of its own for files.
#pragma once

#include "platform/additions/StandardAdditions.h"
#include "platform/ae/AESendMessage.h"
#include "platform/base/Text.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <vector>

namespace quoddle::testing_additions {

using Parameters = std::vector<AEItem>;

class Answer {
public:
    explicit Answer(AEDesc reply) : mReply(std::move(reply)) {}

    OSStatus error() const {
        const AEDesc* number = mReply.find("errn"_4cc);
        return number ? number->asInt32().value_or(errOSAGeneralError) : noErr;
    }
    std::string errorText() const {
        const AEDesc* text = mReply.find("errs"_4cc);
        return text ? text->asUTF8().value_or("") : "";
    }
    /// The result; the null descriptor when there is none.
    AEDesc value() const {
        const AEDesc* result = mReply.find("----"_4cc);
        return result ? *result : AEDesc();
    }
    std::string text() const { return value().asUTF8().value_or("no text, error " + std::to_string(error())); }
    std::optional<std::int64_t> number() const { return value().asInt64(); }
    std::optional<double> real() const { return value().asDouble(); }
    std::vector<std::string> texts() const {
        std::vector<std::string> result;
        const AEDesc list = value();
        for (const AEDesc& item : list.items())
            result.push_back(item.asUTF8().value_or("no text"));
        return result;
    }

private:
    AEDesc mReply;
};

/// Sends a command, given by a text of eight characters: class and ID.
inline Answer send(std::string_view command, Parameters parameters = {}, AESendOptions options = {}, Parameters attributes = {}) {
    installStandardAdditions();
    AEDesc event = AEDesc::appleEvent(fourCharCode(command.substr(0, 4)), fourCharCode(command.substr(4)), AEDesc::ofCurrentProcess());
    for (AEItem& parameter : parameters)
        (void)event.put(parameter.key, std::move(parameter.value));
    for (const AEItem& attribute : attributes)
        (void)event.setAttribute(attribute.key, attribute.value);
    AEDesc reply;
    const OSStatus status = AESendMessage(event, &reply, kAEWaitReply, kAEDefaultTimeout, options);
    if (reply.isNull()) {
        reply = AEDesc::appleEvent("aevt"_4cc, "ansr"_4cc);
        (void)reply.put("errn"_4cc, AEDesc::ofInt32(status));
    }
    return Answer(std::move(reply));
}

inline AEDesc text(std::string_view utf8) {
    return AEDesc::ofUTF8(utf8);
}
inline AEDesc whole(std::int32_t number) {
    return AEDesc::ofInt32(number);
}
inline AEDesc real(double number) {
    return AEDesc::ofDouble(number);
}
inline AEDesc listOf(std::vector<AEDesc> items) {
    return AEDesc::list(std::move(items));
}

class AdditionsTest : public testing::Test {
protected:
    AdditionsTest() {
        std::string pattern = (std::filesystem::temp_directory_path() / "additions.XXXXXX").string();
        mFolder = ::mkdtemp(pattern.data());
    }
    ~AdditionsTest() override {
        for (auto saved = mEnvironment.rbegin(); saved != mEnvironment.rend(); ++saved) // a variable may have been changed more than once
            saved->second ? ::setenv(saved->first.c_str(), saved->second->c_str(), 1) : ::unsetenv(saved->first.c_str());
        std::filesystem::remove_all(mFolder);
    }

    std::string path(const std::string& name) const { return mFolder + "/" + name; }
    AEDesc file(const std::string& name) const { return AEDesc::ofFilePath(path(name)); }
    AEDesc make(const std::string& name, std::string_view bytes) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        std::ofstream(path(name), std::ios::binary) << bytes;
        return file(name);
    }
    std::string bytesOf(const std::string& name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    /// Sets an environment variable until the end of the test.
    void setEnvironment(const char* name, const std::string& value) {
        const char* old = std::getenv(name);
        mEnvironment.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
        ::setenv(name, value.c_str(), 1);
    }

private:
    std::string mFolder;
    std::vector<std::pair<std::string, std::optional<std::string>>> mEnvironment;
};

} // namespace quoddle::testing_additions
