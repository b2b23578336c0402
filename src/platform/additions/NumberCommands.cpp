// SPDX-License-Identifier: MIT
// The commands random number and round. The generator is our own, so that a seed gives the same numbers on every machine and in every
// version.
#include "platform/additions/Commands.h"

#include <bit>
#include <cmath>
#include <mutex>
#include <random>

namespace quoddle::additions {

namespace {

/// The generator xoshiro256**, seeded by splitmix64. Shared by all scripts; has its own lock.
class Generator {
public:
    Generator() {
        std::random_device device;
        seed(std::uint64_t(device()) << 32 | device());
    }

    void seed(std::uint64_t value) {
        std::lock_guard lock(mMutex);
        for (std::uint64_t& word : mState) {
            value += 0x9E3779B97F4A7C15u;
            std::uint64_t mixed = (value ^ value >> 30) * 0xBF58476D1CE4E5B9u;
            mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EBu;
            word = mixed ^ mixed >> 31;
        }
    }

    std::uint64_t next() {
        std::lock_guard lock(mMutex);
        const std::uint64_t result = std::rotl(mState[1] * 5, 7) * 9;
        const std::uint64_t shifted = mState[1] << 17;
        mState[2] ^= mState[0];
        mState[3] ^= mState[1];
        mState[1] ^= mState[2];
        mState[0] ^= mState[3];
        mState[2] ^= shifted;
        mState[3] = std::rotl(mState[3], 45);
        return result;
    }

    /// A number from 0 to `last`, both included, all equally likely.
    std::uint64_t upTo(std::uint64_t last) {
        if (last == UINT64_MAX)
            return next();
        const std::uint64_t count = last + 1;
        // the highest numbers, which would make small remainders more likely
        const std::uint64_t surplus = (UINT64_MAX % count + 1) % count;
        std::uint64_t number;
        do
            number = next();
        while (number > UINT64_MAX - surplus);
        return number % count;
    }

    /// A number from 0 to 1, both included.
    double fraction() {
        constexpr double kLargest = 0x1.FFFFFFFFFFFFFp+52;
        return static_cast<double>(next() >> 11) / kLargest;
    }

private:
    std::mutex mMutex;
    std::uint64_t mState[4] = {};
};

Generator& generator() {
    static Generator sGenerator;
    return sGenerator;
}

bool isReal(const AEDesc& number) {
    const DescType type = number.type();
    if (type == "doub"_4cc || type == "sing"_4cc || type == "ldbl"_4cc)
        return true;
    const bool isInteger = type == "long"_4cc || type == "shor"_4cc || type == "comp"_4cc || type == "magn"_4cc || type == "ushr"_4cc;
    return !isInteger && number.asDouble() != std::optional(std::nearbyint(number.asDouble().value_or(0.5)));
}

struct Limits {
    AEDesc low = AEDesc::ofInt32(0);
    AEDesc high = AEDesc::ofDouble(1);
    bool areReal = true;
};

Limits limitsOf(const AEDesc& event) {
    Limits limits;
    const AEDesc* low = event.find("from"_4cc);
    const AEDesc* high = event.find("to  "_4cc);
    if (!high)
        high = event.find("----"_4cc);
    if (low)
        limits.low = *low;
    if (high)
        limits.high = *high;
    limits.areReal = !high || isReal(limits.low) || isReal(limits.high);
    return limits;
}

double toNearest(double number) {
    return number - std::remainder(number, 1.0); // exact; rounds halves to even whatever the thread's rounding mode
}

struct Rounding {
    DescType direction;
    double (*round)(double number);
};

constexpr Rounding kRoundings[] = {
    {"rndN"_4cc, toNearest},
    {"rndU"_4cc, [](double number) { return std::ceil(number); }},
    {"rndD"_4cc, [](double number) { return std::floor(number); }},
    {"rndZ"_4cc, [](double number) { return std::trunc(number); }},
    {"rndS"_4cc, [](double number) { return std::round(number); }},
};

} // namespace

OSErr randomNumber(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    for (AEKeyword key : {"----"_4cc, "from"_4cc, "to  "_4cc, "seed"_4cc})
        if (const AEDesc* number = event.find(key); number && !std::isfinite(number->asDouble().value_or(NAN)))
            return failParameter(event, reply, key, u"limit or seed", "nmbr"_4cc);
    if (const AEDesc* seed = event.find("seed"_4cc))
        generator().seed(std::bit_cast<std::uint64_t>(seed->asInt64().value_or(0)));
    const Limits limits = limitsOf(event);
    const auto wholeLow = limits.low.asInt64(), wholeHigh = limits.high.asInt64();
    if (!limits.areReal && wholeLow && wholeHigh) {
        const std::int64_t low = std::min(*wholeLow, *wholeHigh), high = std::max(*wholeLow, *wholeHigh);
        const std::uint64_t offset = generator().upTo(static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low));
        return answer(reply, AEDesc::ofInt64(static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + offset)));
    }
    const double low = *limits.low.asDouble(), high = *limits.high.asDouble();
    return answer(reply, AEDesc::ofDouble(std::lerp(low, high, generator().fraction())));
}

OSErr roundNumber(const AEDesc& event, AEDesc& reply, const AEHandlerContext&) {
    const AEDesc* given = event.find("----"_4cc);
    const std::optional<double> number = given ? given->asDouble() : std::nullopt;
    if (!number || !std::isfinite(*number))
        return failParameter(event, reply, "----"_4cc, u"number", "doub"_4cc);
    const DescType direction = event.find("dire"_4cc) ? codeParameter(event, "dire"_4cc) : "rndN"_4cc;
    for (const Rounding& rounding : kRoundings)
        if (rounding.direction == direction) {
            const double rounded = rounding.round(*number);
            const bool fits = std::fabs(rounded) < 0x1p63;
            return answer(reply, fits ? AEDesc::ofInt64(static_cast<std::int64_t>(rounded)) : AEDesc::ofDouble(rounded));
        }
    return failParameter(event, reply, "dire"_4cc, u"rounding", "enum"_4cc);
}

} // namespace quoddle::additions
