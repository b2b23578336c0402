// SPDX-License-Identifier: MIT
// Loads every compiled script below a folder into a machine, stores it again, reads that, and compares the two: the same tree, the same
// handlers, the same values. With a second folder the stored forms are written there, so that another reader can be tried on them.
//     storecheck FOLDER [OUT]
#include "platform/applescript/component/Descriptors.h"
#include "platform/applescript/image/Block.h"
#include "platform/applescript/image/Image.h"
#include "platform/base/File.h"

#include <filesystem>
#include <iostream>
#include <set>

using namespace quoddle;
using namespace quoddle::component;
using namespace quoddle::machine;
namespace fs = std::filesystem;

namespace {

bool same(const Object* a, const Object* b, std::set<std::pair<const Object*, const Object*>>& seen, std::string& where) {
    if (a == b || !seen.insert({a, b}).second)
        return true;
    const auto differs = [&](const char* what) {
        where += std::string(" ") + what + " (kind " + std::to_string(static_cast<int>(a->kind)) + " tag " + std::to_string(a->tag) +
                 " against kind " + std::to_string(static_cast<int>(b->kind)) + " tag " + std::to_string(b->tag) + ")";
        return false;
    };
    if (a->kind != b->kind || a->tag != b->tag)
        return differs("kind");
    if (a->kind == ObjectKind::Node && (a->flags != b->flags || a->start != b->start || a->end != b->end))
        return differs("flags or offsets");
    if ((a->kind == ObjectKind::Integer && a->integer != b->integer) || (a->kind == ObjectKind::Real && a->real != b->real))
        return differs("number");
    if (a->bytes != b->bytes || a->text != b->text)
        return differs("content");
    // A Mac reserves room behind the items of a list that it has changed, so only the counted items are compared.
    const bool isStorage = a->isBlock(block::Storage);
    if (a->children.size() != b->children.size() && !(isStorage && a->children.size() > b->children.size()))
        return differs("number of children");
    for (std::size_t i = 0; i < b->children.size(); ++i)
        if (!same(a->children[i], b->children[i], seen, where)) {
            where = "/" + std::to_string(i) + where;
            return false;
        }
    return true;
}

std::string check(const fs::path& path, const fs::path& out) {
    auto bytes = readFile(path.string(), std::size_t(64) << 20);
    if (!bytes)
        return "cannot be read";
    auto original = readImage(*bytes);
    if (!original)
        return "cannot be loaded: " + std::to_string(original.error());
    Machine machine({});
    OSStatus status = noErr;
    const Value script = scriptFromImage(machine, *bytes, status);
    if (script.isFailure())
        return "cannot be loaded: " + std::to_string(status);
    auto stored = imageFromScript(machine, script, false, status);
    if (!stored)
        return "cannot be stored: " + std::to_string(status);
    if (!out.empty())
        (void)writeFile((out / (std::to_string(std::hash<std::string>()(path.string())) + ".scpt")).string(), *stored);
    auto again = readImage(*stored);
    if (!again)
        return "what was stored cannot be read";
    if (original->root->isNil())
        return "";
    std::set<std::pair<const Object*, const Object*>> seen;
    std::string where;
    return same(original->root, again->root, seen, where) ? "" : "differs at " + where;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: storecheck FOLDER [OUT]\n";
        return 2;
    }
    int good = 0, bad = 0;
    for (const auto& entry : fs::recursive_directory_iterator(argv[1])) {
        if (entry.path().extension() != ".scpt")
            continue;
        const std::string fault = check(entry.path(), argc > 2 ? argv[2] : "");
        ++(fault.empty() ? good : bad);
        if (!fault.empty())
            std::cout << entry.path().string() << ": " << fault << "\n";
    }
    std::cout << good << " the same, " << bad << " not\n";
    return bad != 0;
}
