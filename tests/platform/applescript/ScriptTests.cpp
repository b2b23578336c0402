// SPDX-License-Identifier: MIT
// Runs the scripts of tests/scripts. In each, the value of a "log" is to be what the comment beside it says:
//     log 1 + 2 --> 3
// Values are compared as source text, in the order in which the script logs them; a script that ends in an error fails.
#include "platform/applescript/compiler/Compiler.h"
#include "platform/applescript/image/Image.h"
#include "platform/applescript/language/Display.h"
#include "platform/applescript/machine/Loader.h"
#include "platform/applescript/syntax/Parser.h"
#include "platform/base/File.h"
#include "platform/base/Text.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>

namespace quoddle {
namespace {

using namespace machine;

namespace fs = std::filesystem;

std::vector<std::string> scriptFiles() {
    std::vector<std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(QUODDLE_TEST_SOURCE_DIR) / "scripts"))
        if (entry.path().extension() == ".applescript")
            files.push_back(fs::relative(entry.path(), fs::path(QUODDLE_TEST_SOURCE_DIR) / "scripts").string());
    std::sort(files.begin(), files.end());
    return files;
}

struct Expectation {
    int line;
    std::string value;
};

std::vector<Expectation> expectations(const std::string& source) {
    std::vector<Expectation> expected;
    std::istringstream lines(source);
    int number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        if (const auto at = line.find(" --> "); at != std::string::npos)
            expected.push_back({number, line.substr(at + 5)});
    }
    return expected;
}

/// Names each line whose value is another one, and what the script logs beyond the last line or does not log.
void compare(const std::vector<std::string>& logged, const std::vector<Expectation>& expected, const std::string& script) {
    for (std::size_t i = 0; i < std::min(logged.size(), expected.size()); ++i)
        EXPECT_EQ(logged[i], expected[i].value) << script << ":" << expected[i].line;
    EXPECT_EQ(logged.size(), expected.size()) << script << " logs more or fewer values than it says";
}

struct Outcome {
    std::vector<std::string> logged;
    std::string error;
    std::string image;
};

/// Compiles and runs a script; with `stored` it runs the script that is read back from the stored form.
Outcome run(const std::string& source, const std::string* stored) {
    Outcome outcome;
    Machine::Host host;
    host.log = [&](Machine& machine, Value value) { outcome.logged.push_back(utf8FromUTF16(language::display(machine, value))); };
    Machine machine(host);
    Value kept;
    machine.setRootMarker([&](Heap& heap) { heap.mark(kept); });
    const auto failed = [&] {
        outcome.error =
            std::to_string(machine.error().number) + ": " + utf8FromUTF16(language::humanDisplay(machine, machine.error().message));
        return outcome;
    };
    if (stored) {
        auto image = readImage(*stored);
        if (!image) {
            outcome.error = "cannot be read back";
            return outcome;
        }
        kept = Loader(machine, image->store).load(image->root);
    } else {
        auto store = std::make_shared<ObjectStore>();
        auto tree = syntax::parse(utf16FromUTF8(source), *store);
        if (!tree) {
            outcome.error = "syntax: " + utf8FromUTF16(tree.error().message) + " at " + std::to_string(tree.error().start);
            return outcome;
        }
        auto initialiser = compiler::compileScript(*tree, *store);
        if (!initialiser) {
            outcome.error = "compile: " + utf8FromUTF16(initialiser.error().message);
            return outcome;
        }
        kept = machine.literal(*initialiser, store);
        const Value script = machine.makeScript(as<Handler>(kept), Value(), *tree, store);
        if (script.isFailure())
            return failed();
        kept = script;
        Saver saver(machine);
        if (const Object* root = saver.save(script, false))
            if (auto bytes = writeImage(root))
                outcome.image = std::move(*bytes);
    }
    const Value handler = Value::object(machine.heap().eventName("aevtoapp"));
    if (machine.callHandler(as<Script>(kept), handler, {}).isFailure())
        return failed();
    return outcome;
}

class ScriptTest : public testing::TestWithParam<std::string> {};

TEST_P(ScriptTest, LogsWhatItSays) {
    auto source = readFile((fs::path(QUODDLE_TEST_SOURCE_DIR) / "scripts" / GetParam()).string(), 1 << 20);
    ASSERT_TRUE(source);
    const std::vector<Expectation> expected = expectations(*source);
    ASSERT_FALSE(expected.empty()) << "the script expects nothing";

    const Outcome compiled = run(*source, nullptr);
    EXPECT_EQ(compiled.error, "");
    compare(compiled.logged, expected, GetParam());

    // The script that is read back from the stored form logs the same values.
    ASSERT_FALSE(compiled.image.empty());
    const Outcome loaded = run(*source, &compiled.image);
    EXPECT_EQ(loaded.error, "");
    compare(loaded.logged, expected, GetParam() + ", read back");
}

std::string testName(const testing::TestParamInfo<std::string>& script) {
    std::string name = script.param.substr(0, script.param.rfind('.'));
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Scripts, ScriptTest, testing::ValuesIn(scriptFiles()), testName);

} // namespace
} // namespace quoddle
