// SPDX-License-Identifier: MIT
// Descriptors as bytes, for sockets and files. The format is our own:
//
//   "QAE1"                                       once, in front
//   desc    = type:u32 form:u8 body
//   body    = form 0 (bytes)   size:u32 bytes
//           | form 1 (list)    count:u32 desc…
//           | form 2 (record)  count:u32 (key:u32 desc)…
//           | form 3 (event)   class:u32 id:u32 returnID:u16 transactionID:u32 attributes parameters, both as in a record
//
// Numbers of the format are big-endian. A scalar's bytes are stored unchanged, so both sides must have the same byte order.
#pragma once

#include "platform/ae/AEDesc.h"

#include <functional>

namespace quoddle {

constexpr std::size_t kAEMaxDepth = 64;
constexpr std::size_t kAEMaxSize = std::size_t{128} << 20;
constexpr std::size_t kAEMaxCount = std::size_t{1} << 22; ///< descriptors in one flattened descriptor

/// -1702 when the descriptor exceeds a bound; `bytes` is then empty.
OSStatus AEFlattenDesc(const AEDesc& desc, std::string& bytes);
/// Accepts any bytes. -1702, with `desc` unchanged, for anything but exactly one flattened descriptor within the bounds.
OSStatus AEUnflattenDesc(std::string_view bytes, AEDesc& desc);
/// The same for bytes of a sender whose memory is accounted for. Before memory is taken, `mayTake` is asked, for a few kilobytes in
/// advance, whether the descriptor may take this many bytes in all; when not, the result is -108 and `desc` is unchanged. `taken` becomes
/// the number of bytes that the descriptor takes.
using AEMayTake = std::function<bool(std::size_t bytes)>;
OSStatus AEUnflattenDesc(std::string_view bytes, AEDesc& desc, const AEMayTake& mayTake, std::size_t& taken);
/// Reads the descriptor at the beginning of the bytes; `length` becomes the number of bytes read.
OSStatus AEUnflattenFirstDesc(std::string_view bytes, AEDesc& desc, std::size_t& length);

} // namespace quoddle
