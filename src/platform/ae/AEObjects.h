// SPDX-License-Identifier: MIT
// Builds object specifiers and their parts: records of the types "obj ", "rang", "cmpd", "logi", "insl". The owner of the objects resolves
// them.
#pragma once

#include "platform/ae/AEDesc.h"

namespace quoddle {

/// A null container means the application itself. -1704 for a container that is neither null nor a specifier ("obj ", "ccnt", "exmn",
/// "insl") nor a list.
OSStatus CreateObjSpecifier(DescType desiredClass, const AEDesc& container, DescType keyForm, const AEDesc& keyData, AEDesc& specifier);
/// Makes a "rang" record with "star" and "stop".
OSStatus CreateRangeDescriptor(const AEDesc& rangeStart, const AEDesc& rangeStop, AEDesc& range);
/// Makes a "cmpd" record with "obj1", "relo" and "obj2".
OSStatus CreateCompDescriptor(DescType comparisonOperator, const AEDesc& operand1, const AEDesc& operand2, AEDesc& comparison);
/// Makes a "logi" record with "logc" and "term"; -1703 unless the terms are a list.
OSStatus CreateLogicalDescriptor(const AEDesc& logicalTerms, DescType logicalOperator, AEDesc& result);
/// Makes an "insl" record with "kobj" and "kpos"; position is one of "bgng", "end ", "befo", "afte", "rplc".
OSStatus CreateInsertionLocation(const AEDesc& object, DescType position, AEDesc& location);
/// Makes an "abso" descriptor with the ordinal ("firs", "last", "midd", "any ", "all ").
AEDesc CreateAbsoluteOrdinal(FourCharCode ordinal);

} // namespace quoddle
