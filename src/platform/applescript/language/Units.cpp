// SPDX-License-Identifier: MIT
#include "platform/applescript/language/Coercion.h"

#include <algorithm>
#include <cstring>

namespace quoddle::language {

using namespace machine;

namespace {

enum class Kind : std::uint8_t { Length, Area, LiquidVolume, CubicVolume, Weight, Temperature };

struct Unit {
    FourCharCode code;
    Kind kind;
    /// The unit's size, in a measure so small that the size of every unit of the kind is whole: conversions are then as exact as real
    /// numbers can be. For temperatures: degrees in a hundred kelvins.
    double size;
    double zero; // of a temperature scale, in degrees Celsius
};

constexpr Unit kUnits[] = {
    {"metr"_4cc, Kind::Length, 10000, 0},
    {"cmtr"_4cc, Kind::Length, 100, 0},
    {"kmtr"_4cc, Kind::Length, 1e7, 0},
    {"inch"_4cc, Kind::Length, 254, 0},
    {"feet"_4cc, Kind::Length, 3048, 0},
    {"yard"_4cc, Kind::Length, 9144, 0},
    {"mile"_4cc, Kind::Length, 16093440, 0},
    {"sqrm"_4cc, Kind::Area, 1e8, 0},
    {"sqkm"_4cc, Kind::Area, 1e14, 0},
    {"sqft"_4cc, Kind::Area, 9290304, 0},
    {"sqyd"_4cc, Kind::Area, 83612736, 0},
    {"sqmi"_4cc, Kind::Area, 258998811033600, 0},
    {"litr"_4cc, Kind::LiquidVolume, 1e9, 0},
    {"galn"_4cc, Kind::LiquidVolume, 3785411784, 0},
    {"qrts"_4cc, Kind::LiquidVolume, 946352946, 0},
    {"cmet"_4cc, Kind::CubicVolume, 1e12, 0},
    {"ccmt"_4cc, Kind::CubicVolume, 1e6, 0},
    {"cuin"_4cc, Kind::CubicVolume, 16387064, 0},
    {"cfet"_4cc, Kind::CubicVolume, 28316846592, 0},
    {"cyrd"_4cc, Kind::CubicVolume, 764554857984, 0},
    {"kgrm"_4cc, Kind::Weight, 1e12, 0},
    {"gram"_4cc, Kind::Weight, 1e9, 0},
    {"ozs "_4cc, Kind::Weight, 28349523125, 0},
    {"lbs "_4cc, Kind::Weight, 453592370000, 0},
    {"degc"_4cc, Kind::Temperature, 100, 0},
    {"degf"_4cc, Kind::Temperature, 180, 32},
    {"degk"_4cc, Kind::Temperature, 100, 273.15},
};

const Unit* unitOf(FourCharCode code) {
    const Unit* unit = std::find_if(std::begin(kUnits), std::end(kUnits), [code](const Unit& candidate) { return candidate.code == code; });
    return unit == std::end(kUnits) ? nullptr : unit;
}

double converted(double amount, const Unit& from, const Unit& to) {
    if (from.kind == Kind::Temperature)
        return (amount - from.zero) * to.size / from.size + to.zero;
    return amount * from.size / to.size;
}

} // namespace

std::optional<double> amountOf(Value value) {
    const Data* data = as<Data>(value);
    double amount;
    if (!data || data->bytes.size() != sizeof amount || !unitOf(data->dataType))
        return std::nullopt;
    std::memcpy(&amount, data->bytes.data(), sizeof amount);
    return amount;
}

Value makeMeasure(Machine& machine, Value from, FourCharCode wanted) {
    const Unit* unit = unitOf(wanted);
    if (!unit)
        return Value::failure();
    double amount;
    if (const auto given = amountOf(from)) {
        const Unit* old = unitOf(as<Data>(from)->dataType);
        if (old->kind != unit->kind)
            return Value::failure();
        amount = old == unit ? *given : converted(*given, *old, *unit);
    } else if (from.isNumber()) {
        amount = from.asNumber();
    } else {
        return Value::failure();
    }
    return Value::object(machine.heap().make<Data>(wanted, std::string_view(reinterpret_cast<const char*>(&amount), sizeof amount)));
}

} // namespace quoddle::language
