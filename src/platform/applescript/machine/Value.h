// SPDX-License-Identifier: MIT
// A value of the running machine, in eight bytes.
//
// Decision: NaN boxing. A real is stored as itself; all other values lie in the space of negative quiet NaNs that arithmetic never
// produces, told apart by the upper 16 bits. This buys arithmetic and element access without allocation. Price: reals must be canonical
// when they enter, and pointers have 48 bits.
#pragma once

#include "platform/base/FourCharCode.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace quoddle::machine {

struct HeapObject;

class Value {
public:
    constexpr Value() : mBits(kUndefinedBits) {}

    static constexpr Value undefined() { return Value(); }
    /// Answered by an operation that has raised an error. Never stored.
    static constexpr Value failure() { return Value(kSpecialTag | 1); }
    static constexpr Value boolean(bool value) { return Value(kSpecialTag | (value ? 3 : 2)); }
    static constexpr Value integer(std::int32_t value) { return Value(kIntegerTag | static_cast<std::uint32_t>(value)); }
    static Value real(double value) { return Value(std::isnan(value) ? kCanonicalNaN : std::bit_cast<std::uint64_t>(value)); }
    /// A class, a property or a constant by its bare code.
    static constexpr Value code(FourCharCode code) { return Value(kCodeTag | code); }
    /// A constant of an enumeration. `enumeration` is an index of the machine's table of enumerations; constants are compared without it.
    static constexpr Value constant(FourCharCode code, std::uint16_t enumeration) {
        return Value(kConstantTag | static_cast<std::uint64_t>(enumeration & 0x7FFF) << 32 | code);
    }
    static Value object(const HeapObject* object) { return Value(kObjectTag | reinterpret_cast<std::uint64_t>(object)); }
    static constexpr Value missing() { return code("msng"_4cc); }
    static constexpr Value fromBits(std::uint64_t bits) { return Value(bits); }

    constexpr std::uint64_t bits() const { return mBits; }
    constexpr bool operator==(const Value&) const = default;

    constexpr bool isUndefined() const { return mBits == kUndefinedBits; }
    constexpr bool isFailure() const { return mBits == (kSpecialTag | 1); }
    constexpr bool isBoolean() const { return (mBits | 1) == (kSpecialTag | 3); }
    constexpr bool isTrue() const { return mBits == (kSpecialTag | 3); }
    constexpr bool isFalse() const { return mBits == (kSpecialTag | 2); }
    constexpr bool isInteger() const { return tag() == kIntegerTag; }
    constexpr bool isReal() const { return mBits < kIntegerTag; }
    constexpr bool isNumber() const { return mBits < kIntegerTag + kTagStep; }
    constexpr bool isCode() const { return tag() == kCodeTag; }
    constexpr bool isConstant() const { return mBits >= kConstantTag && mBits < kConstantTag + (std::uint64_t(0x8000) << 32); }
    constexpr bool isObject() const { return tag() == kObjectTag; }
    constexpr bool isMissing() const { return mBits == missing().mBits; }
    static constexpr bool areIntegers(Value a, Value b) { return (((a.mBits ^ kIntegerTag) | (b.mBits ^ kIntegerTag)) >> 32) == 0; }

    // For a value of another kind these answer 0, NaN or null, never the value's bits.
    constexpr std::int32_t asInteger() const { return isInteger() ? uncheckedInteger() : 0; }
    double asReal() const { return isReal() ? std::bit_cast<double>(mBits) : std::numeric_limits<double>::quiet_NaN(); }
    /// Of an integer or a real.
    double asNumber() const { return isInteger() ? uncheckedInteger() : asReal(); }
    /// Of a code or a constant.
    constexpr FourCharCode asCode() const { return isCode() || isConstant() ? static_cast<FourCharCode>(mBits) : 0; }
    constexpr std::uint16_t enumeration() const { return isConstant() ? static_cast<std::uint16_t>(mBits >> 32 & 0x7FFF) : 0; }
    HeapObject* asObject() const { return isObject() ? reinterpret_cast<HeapObject*>(mBits & 0x0000FFFFFFFFFFFFu) : nullptr; }
    /// For the interpreter's loop, after a test that the value is an integer.
    constexpr std::int32_t uncheckedInteger() const { return static_cast<std::int32_t>(mBits); }

private:
    explicit constexpr Value(std::uint64_t bits) : mBits(bits) {}
    constexpr std::uint64_t tag() const { return mBits & 0xFFFF000000000000u; }

    static constexpr std::uint64_t kTagStep = std::uint64_t(1) << 48;
    static constexpr std::uint64_t kIntegerTag = 0xFFF9000000000000u;
    static constexpr std::uint64_t kObjectTag = 0xFFFA000000000000u;
    static constexpr std::uint64_t kCodeTag = 0xFFFB000000000000u;
    static constexpr std::uint64_t kSpecialTag = 0xFFFC000000000000u;
    static constexpr std::uint64_t kConstantTag = 0xFFFD000000000000u;
    static constexpr std::uint64_t kUndefinedBits = kSpecialTag;
    static constexpr std::uint64_t kCanonicalNaN = 0x7FF8000000000000u;

    std::uint64_t mBits;
};

/// The range of whole numbers in the language. A number beyond is real.
constexpr std::int32_t kMaximumInteger = (1 << 29) - 1;
constexpr std::int32_t kMinimumInteger = -(1 << 29);
constexpr bool fitsInteger(std::int64_t value) {
    return value >= kMinimumInteger && value <= kMaximumInteger;
}

} // namespace quoddle::machine
