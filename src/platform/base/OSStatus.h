// SPDX-License-Identifier: MIT
// Status numbers of the Apple Event Manager and the Open Scripting Architecture. One list, from which the constants and their descriptions
// are made.
#pragma once

#include <cstdint>

namespace quoddle {

using OSStatus = std::int32_t;
using OSErr = std::int16_t;

constexpr OSStatus noErr = 0;
constexpr OSStatus eofErr = -39;
constexpr OSStatus fnfErr = -43;
constexpr OSStatus paramErr = -50;
constexpr OSStatus memFullErr = -108;
constexpr OSStatus userCanceledErr = -128;
constexpr OSStatus resNotFound = -192;
constexpr OSStatus procNotFound = -600;
constexpr OSStatus connectionInvalid = -609;

constexpr OSStatus errAECoercionFail = -1700;
constexpr OSStatus errAEDescNotFound = -1701;
constexpr OSStatus errAECorruptData = -1702;
constexpr OSStatus errAEWrongDataType = -1703;
constexpr OSStatus errAENotAEDesc = -1704;
constexpr OSStatus errAEBadListItem = -1705;
constexpr OSStatus errAENotAppleEvent = -1707;
constexpr OSStatus errAEEventNotHandled = -1708;
constexpr OSStatus errAEWaitCanceled = -1711;
constexpr OSStatus errAETimeout = -1712;
constexpr OSStatus errAENoUserInteraction = -1713;
constexpr OSStatus errAEParamMissed = -1715;
constexpr OSStatus errAEUnknownAddressType = -1716;
constexpr OSStatus errAEHandlerNotFound = -1717;
constexpr OSStatus errAEReplyNotArrived = -1718;
constexpr OSStatus errAEIllegalIndex = -1719;
constexpr OSStatus errAEImpossibleRange = -1720;
constexpr OSStatus errAEAccessDenied = -1723;
constexpr OSStatus errAENoSuchObject = -1728;
constexpr OSStatus errAENotAnElement = -1730;
constexpr OSStatus errAETypeError = -10001;
constexpr OSStatus errAEEventFailed = -10000;
constexpr OSStatus errAECantHandleClass = -10010;

constexpr OSStatus errOSASystemError = -1750;
constexpr OSStatus errOSAInvalidID = -1751;
constexpr OSStatus errOSABadStorageType = -1752;
constexpr OSStatus errOSAScriptError = -1753;
constexpr OSStatus errOSABadSelector = -1754;
constexpr OSStatus errOSAInvalidAccess = -1755;
constexpr OSStatus errOSASourceNotAvailable = -1756;
constexpr OSStatus errOSANoSuchDialect = -1757;
constexpr OSStatus errOSADataFormatObsolete = -1758;
constexpr OSStatus errOSADataFormatTooNew = -1759;
constexpr OSStatus errOSACorruptData = errAECorruptData;
constexpr OSStatus errOSACantCoerce = errAECoercionFail;
constexpr OSStatus errOSARecordingIsAlreadyOn = -1760;
constexpr OSStatus errOSAComponentMismatch = -1761;
constexpr OSStatus errOSACantOpenComponent = -1762;

constexpr OSStatus errOSAGeneralError = -2700;
constexpr OSStatus errOSADivideByZero = -2701;
constexpr OSStatus errOSANumericOverflow = -2702;
constexpr OSStatus errOSAStackOverflow = -2706;
constexpr OSStatus errOSAInternalTableOverflow = -2707;
constexpr OSStatus errOSADataBlockTooLarge = -2708;
constexpr OSStatus OSASyntaxError = -2740;
constexpr OSStatus OSASyntaxTypeError = -2741;
constexpr OSStatus OSATokenTooLong = -2742;
constexpr OSStatus OSADuplicateParameter = -2750;
constexpr OSStatus OSADuplicateProperty = -2751;
constexpr OSStatus OSADuplicateHandler = -2752;
constexpr OSStatus OSAUndefinedVariable = -2753;
constexpr OSStatus OSAInconsistentDeclarations = -2754;
constexpr OSStatus OSAControlFlowError = -2755;
constexpr OSStatus OSAIllegalAssign = -10003;

} // namespace quoddle
