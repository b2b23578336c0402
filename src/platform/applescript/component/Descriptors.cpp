// SPDX-License-Identifier: MIT
// Names, stored scripts and addresses. Values as descriptors: ValueToDescriptor.cpp and DescriptorToValue.cpp.
#include "platform/applescript/component/Descriptors.h"

#include "platform/applescript/image/Image.h"
#include "platform/applescript/machine/Loader.h"
#include "platform/base/Text.h"

#include <cstring>

namespace quoddle::component {

using namespace machine;

Value symbolFor(Machine& machine, std::u16string_view name) {
    const std::string spelling = utf8FromUTF16(name);
    if (name.size() > 2 && name.starts_with(u'|') && name.ends_with(u'|')) {
        const std::string exact = spelling.substr(1, spelling.size() - 2);
        return Value::object(machine.heap().symbol(exact, exact));
    }
    std::string key = spelling;
    for (char& c : key)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c + 32);
    return Value::object(machine.heap().symbol(key, spelling));
}

std::optional<std::string> imageFromScript(Machine& machine, Value script, bool runOnly, OSStatus& status) {
    Saver saver(machine);
    const Object* root = saver.save(script, runOnly);
    status = saver.status();
    if (!root)
        return std::nullopt;
    auto bytes = writeImage(root);
    if (bytes)
        return std::move(*bytes);
    status = bytes.error();
    return std::nullopt;
}

Value scriptFromImage(Machine& machine, std::string_view bytes, OSStatus& status) {
    auto image = readImage(bytes);
    if (!image) {
        status = image.error();
        return Value::failure();
    }
    status = noErr;
    if (image->root->isNil())
        return Value::object(machine.heap().make<Script>());
    return Loader(machine, image->store).load(image->root);
}

AEDesc addressOf(const Application& application) {
    if (!application.identifier.empty())
        return AEDesc("bund"_4cc, utf8FromUTF16(application.identifier));
    if (!application.name.empty())
        return AEDesc("aprl"_4cc, utf8FromUTF16(application.name));
    return AEDesc::ofCurrentProcess();
}

const Application* applicationOf(Value value) {
    for (std::size_t depth = 0; depth < 1000; ++depth) {
        if (const Application* application = as<Application>(value))
            return application;
        const Specifier* specifier = as<Specifier>(value);
        if (!specifier)
            return nullptr;
        value = specifier->container;
    }
    return nullptr;
}

AEDesc descriptorOfEventName(std::string_view characters) {
    const FourCharCode codes[] = {fourCharCode(characters.substr(0, 4)), fourCharCode(characters.substr(4, 4))};
    return {"evnt"_4cc, {reinterpret_cast<const char*>(codes), sizeof codes}};
}

std::string eventNameOfDescriptor(const AEDesc& descriptor) {
    FourCharCode codes[2];
    if (descriptor.data().size() < sizeof codes)
        return {};
    std::memcpy(codes, descriptor.data().data(), sizeof codes);
    return bytesOf(codes[0]) + bytesOf(codes[1]);
}

} // namespace quoddle::component
