// SPDX-License-Identifier: MIT
// Descriptors as bytes, for sockets and files. The form is our own:
//
//   "QAE1"                                       once, in front
//   desc    = type:u32 form:u8 body
//   body    = form 0 (bytes)   size:u32 bytes
//           | form 1 (list)    count:u32 desc…
//           | form 2 (record)  count:u32 (key:u32 desc)…
//           | form 3 (event)   class:u32 id:u32 returnID:u16 transactionID:u32 attributes parameters, both as in a record
//
// Numbers of the frame are big-endian; the bytes of a scalar are passed on as they are, so both sides must have one byte order.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>

namespace quoddle {

constexpr std::size_t kAEMaxDepth = 64;
constexpr std::size_t kAEMaxSize = std::size_t{128} << 20;
constexpr std::size_t kAEMaxCount = std::size_t{1} << 22; ///< descriptors in one flattened descriptor

/// -1702 when a bound is exceeded; `bytes` is then empty.
OSStatus AEFlattenDesc(const AEDesc& desc, std::string& bytes);
/// Any bytes may be given. -1702, with `desc` untouched, for everything that is not exactly one flattened descriptor within the bounds.
OSStatus AEUnflattenDesc(std::string_view bytes, AEDesc& desc);
/// The same for bytes from somebody whose memory is counted. Asks before it makes something, a few kilobytes in advance, whether the
/// descriptor may take so many bytes in all; -108, with `desc` untouched, when it may not. `taken` is what it takes in the end.
using AEMayTake = std::function<bool(std::size_t bytes)>;
OSStatus AEUnflattenDesc(std::string_view bytes, AEDesc& desc, const AEMayTake& mayTake, std::size_t& taken);
/// The one that the bytes begin with; `length` is how many of them it takes.
OSStatus AEUnflattenFirstDesc(std::string_view bytes, AEDesc& desc, std::size_t& length);

} // namespace quoddle
