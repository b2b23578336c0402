// SPDX-License-Identifier: MIT
#include "platform/ae/AETypeTests.h"

#include "platform/ae/AECoercion.h"

#include <algorithm>
#include <initializer_list>

namespace quoddle {

namespace {

bool isOneOf(DescType type, std::initializer_list<DescType> types) {
    return std::find(types.begin(), types.end(), type) != types.end();
}

bool hasTypeOf(const AEDesc* desc, std::initializer_list<DescType> types) {
    return desc && isOneOf(desc->type(), types);
}

// A specifier is a file when it asks for one by name. The type of the "want" item decides, not the code in it.
bool specifierIsFile(const AEDesc& specifier) {
    const auto record = AECoerced(specifier, "reco"_4cc);
    const AEDesc* form = record ? record->find("form"_4cc) : nullptr;
    return form && form->asEnum() == "name"_4cc && hasTypeOf(record->find("want"_4cc), {"file"_4cc, "alis"_4cc}) &&
           record->find("from"_4cc) &&
           hasTypeOf(record->find("seld"_4cc), {"TEXT"_4cc, "furl"_4cc, "itxt"_4cc, "utf8"_4cc, "STXT"_4cc, "utxt"_4cc});
}

} // namespace

bool AEIsText(const AEDesc& desc) {
    return isOneOf(desc.type(), {"STXT"_4cc, "TEXT"_4cc, "cstr"_4cc, "encs"_4cc, "itxt"_4cc, "pstr"_4cc, "sutx"_4cc, "ut16"_4cc, "utf8"_4cc,
                                 "utxt"_4cc});
}

bool AEIsInteger(const AEDesc& desc) {
    return isOneOf(desc.type(), {"comp"_4cc, "long"_4cc, "magn"_4cc, "shor"_4cc, "ucom"_4cc, "ushr"_4cc});
}

bool AEIsReal(const AEDesc& desc) {
    return isOneOf(desc.type(), {"doub"_4cc, "ldbl"_4cc, "sing"_4cc});
}

bool AEIsFile(const AEDesc& desc) {
    if (isOneOf(desc.type(), {"alis"_4cc, "bmrk"_4cc, "file"_4cc, "fsrf"_4cc, "furl"_4cc, "psxf"_4cc}))
        return true;
    return desc.type() == "obj "_4cc && specifierIsFile(desc);
}

} // namespace quoddle
