// SPDX-License-Identifier: MIT
// Object specifiers and what they are made of: records of the types "obj ", "rang", "cmpd", "logi", "insl".
// Building only; resolving them is the business of whoever owns the objects.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

/// A null container means the application itself; -1704 for a container that is neither null nor a specifier ("obj ", "ccnt", "exmn",
/// "insl") nor a list.
OSStatus CreateObjSpecifier(DescType desiredClass, const AEDesc& container, DescType keyForm, const AEDesc& keyData, AEDesc& specifier);
/// "rang" with "star" and "stop".
OSStatus CreateRangeDescriptor(const AEDesc& rangeStart, const AEDesc& rangeStop, AEDesc& range);
/// "cmpd" with "obj1", "relo", "obj2".
OSStatus CreateCompDescriptor(DescType comparisonOperator, const AEDesc& operand1, const AEDesc& operand2, AEDesc& comparison);
/// "logi" with "logc" and "term"; -1703 unless the terms are a list.
OSStatus CreateLogicalDescriptor(const AEDesc& logicalTerms, DescType logicalOperator, AEDesc& result);
/// "insl" with "kobj" and "kpos"; position is one of "bgng", "end ", "befo", "afte", "rplc".
OSStatus CreateInsertionLocation(const AEDesc& object, DescType position, AEDesc& location);
/// "abso" holding the ordinal ("firs", "last", "midd", "any ", "all ").
AEDesc CreateAbsoluteOrdinal(FourCharCode ordinal);

} // namespace quoddle
