// SPDX-License-Identifier: MIT
#include "platform/ae/AEObjects.h"

#include <algorithm>

namespace quoddle {

namespace {

// Whether a descriptor may stand for an object: the application (null), a specifier, or a placeholder inside a range or test.
bool mayBeObject(const AEDesc& desc) {
    constexpr DescType kObjects[] = {"null"_4cc, "obj "_4cc, "ccnt"_4cc, "exmn"_4cc, "insl"_4cc, "list"_4cc};
    return std::find(std::begin(kObjects), std::end(kObjects), desc.type()) != std::end(kObjects);
}

} // namespace

OSStatus CreateObjSpecifier(DescType desiredClass, const AEDesc& container, DescType keyForm, const AEDesc& keyData, AEDesc& specifier) {
    if (!mayBeObject(container))
        return errAENotAEDesc;
    specifier = AEDesc::record(
        {{"want"_4cc, AEDesc::ofType(desiredClass)}, {"form"_4cc, AEDesc::ofEnum(keyForm)}, {"seld"_4cc, keyData}, {"from"_4cc, container}},
        "obj "_4cc);
    return noErr;
}

OSStatus CreateRangeDescriptor(const AEDesc& rangeStart, const AEDesc& rangeStop, AEDesc& range) {
    range = AEDesc::record({{"star"_4cc, rangeStart}, {"stop"_4cc, rangeStop}}, "rang"_4cc);
    return noErr;
}

OSStatus CreateCompDescriptor(DescType comparisonOperator, const AEDesc& operand1, const AEDesc& operand2, AEDesc& comparison) {
    comparison =
        AEDesc::record({{"relo"_4cc, AEDesc::ofEnum(comparisonOperator)}, {"obj1"_4cc, operand1}, {"obj2"_4cc, operand2}}, "cmpd"_4cc);
    return noErr;
}

OSStatus CreateLogicalDescriptor(const AEDesc& logicalTerms, DescType logicalOperator, AEDesc& result) {
    if (!logicalTerms.isList())
        return errAEWrongDataType;
    result = AEDesc::record({{"logc"_4cc, AEDesc::ofEnum(logicalOperator)}, {"term"_4cc, logicalTerms}}, "logi"_4cc);
    return noErr;
}

OSStatus CreateInsertionLocation(const AEDesc& object, DescType position, AEDesc& location) {
    if (!mayBeObject(object))
        return errAENotAEDesc;
    location = AEDesc::record({{"kobj"_4cc, object}, {"kpos"_4cc, AEDesc::ofEnum(position)}}, "insl"_4cc);
    return noErr;
}

AEDesc CreateAbsoluteOrdinal(FourCharCode ordinal) {
    return AEDesc::ofCode("abso"_4cc, ordinal);
}

} // namespace quoddle
