// SPDX-License-Identifier: MIT
// The commands beep, get volume settings, set volume. They use the sound system's mixer program that is installed.
#include "platform/additions/Commands.h"
#include "platform/additions/Program.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace quoddle::additions {

namespace {

using namespace std::chrono_literals;

constexpr auto kMixerTime = 3s;
constexpr std::u16string_view kNoMixer =
    u"The sound volume can’t be reached: no mixer was found. Install pactl (package pulseaudio-utils) or amixer (package alsa-utils).";

/// The command lines of a mixer program. A volume is the number in front of the first "%" in its output.
struct Mixer {
    std::vector<std::string> readOutput, readInput, readMuted;
    std::vector<std::string> setOutput, setInput; ///< the volume follows as an argument, such as "40%"
    std::vector<std::string> mute, unmute;
    std::string_view muted; ///< in the output of readMuted when sound is muted
};

const std::vector<Mixer>& mixers() {
    static const std::vector<Mixer> sMixers = {
        {{"pactl", "get-sink-volume", "@DEFAULT_SINK@"},
         {"pactl", "get-source-volume", "@DEFAULT_SOURCE@"},
         {"pactl", "get-sink-mute", "@DEFAULT_SINK@"},
         {"pactl", "set-sink-volume", "@DEFAULT_SINK@"},
         {"pactl", "set-source-volume", "@DEFAULT_SOURCE@"},
         {"pactl", "set-sink-mute", "@DEFAULT_SINK@", "1"},
         {"pactl", "set-sink-mute", "@DEFAULT_SINK@", "0"},
         "yes"},
        {{"amixer", "get", "Master"},
         {"amixer", "get", "Capture"},
         {"amixer", "get", "Master"},
         {"amixer", "set", "Master"},
         {"amixer", "set", "Capture"},
         {"amixer", "set", "Master", "mute"},
         {"amixer", "set", "Master", "unmute"},
         "[off]"},
    };
    return sMixers;
}

std::optional<std::string> outputOf(const std::vector<std::string>& command, const AEHandlerContext& context) {
    const auto outcome = runProgram(command, kMixerTime, context);
    return outcome && outcome->exitStatus == 0 && !outcome->isRunning ? std::optional(outcome->output) : std::nullopt;
}

std::optional<std::int32_t> percentIn(const std::string& text) {
    const std::size_t end = text.find('%');
    if (end == std::string::npos)
        return std::nullopt;
    std::size_t start = end;
    while (start > 0 && text[start - 1] >= '0' && text[start - 1] <= '9')
        --start;
    std::int32_t value = 0;
    const auto parsed = std::from_chars(text.data() + start, text.data() + end, value);
    return parsed.ec == std::errc() ? std::optional(std::clamp(value, 0, 100)) : std::nullopt;
}

/// The first mixer program that works; null when there is none.
const Mixer* findMixer(const AEHandlerContext& context) {
    for (const Mixer& mixer : mixers())
        if (outputOf(mixer.readOutput, context))
            return &mixer;
    return nullptr;
}

AEDesc volume(const std::vector<std::string>& command, const AEHandlerContext& context) {
    const auto text = outputOf(command, context);
    const auto percent = text ? percentIn(*text) : std::nullopt;
    return percent ? AEDesc::ofInt32(*percent) : missingValue();
}

/// The volume in a parameter, in percent. The direct parameter goes from 0 to 7.
std::optional<double> wantedVolume(const AEDesc& event, AEKeyword key) {
    const AEDesc* given = event.find(key);
    const auto number = given ? given->asDouble() : std::nullopt;
    if (!number || !std::isfinite(*number))
        return std::nullopt;
    return std::clamp(key == "----"_4cc ? *number / 7 * 100 : *number, 0.0, 100.0);
}

} // namespace

OSErr beep(const AEDesc& event, AEDesc&, const AEHandlerContext& context) {
    constexpr std::int32_t kMostBeeps = 100;
    const AEDesc* given = event.find("----"_4cc);
    const std::int32_t count = std::min(given ? given->asInt32().value_or(1) : 1, kMostBeeps);
    for (std::int32_t i = 0; i < count; ++i) {
        const auto outcome = runProgram({"canberra-gtk-play", "-i", "bell"}, kMixerTime, context);
        if (outcome && outcome->wasCancelled)
            return userCanceledErr;
        if (!outcome || outcome->exitStatus != 0)
            break; // the script goes on when the computer cannot make sounds
    }
    return noErr;
}

OSErr getVolumeSettings(const AEDesc&, AEDesc& reply, const AEHandlerContext& context) {
    const Mixer* mixer = findMixer(context);
    if (!mixer)
        return fail(reply, errAEEventFailed, kNoMixer);
    const auto muted = outputOf(mixer->readMuted, context);
    return answer(reply, AEDesc::record({
                             {"ouvl"_4cc, volume(mixer->readOutput, context)},
                             {"invl"_4cc, volume(mixer->readInput, context)},
                             {"alvl"_4cc, missingValue()}, // alerts have no volume of their own on this system
                             {"mute"_4cc, AEDesc::ofBoolean(muted && muted->find(mixer->muted) != std::string::npos)},
                         }));
}

OSErr setVolume(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    if (event.find("alvl"_4cc))
        return fail(reply, errAEEventFailed, u"Alerts have no volume of their own on this system.");
    const Mixer* mixer = findMixer(context);
    if (!mixer)
        return fail(reply, errAEEventFailed, kNoMixer);
    const struct {
        AEKeyword key;
        const std::vector<std::string>& command;
        std::u16string_view name;
    } kVolumes[] = {{"----"_4cc, mixer->setOutput, u"volume"},
                    {"ouvl"_4cc, mixer->setOutput, u"output volume"},
                    {"invl"_4cc, mixer->setInput, u"input volume"}};
    std::vector<std::vector<std::string>> commands;
    for (const auto& row : kVolumes) {
        if (!event.find(row.key))
            continue;
        const auto percent = wantedVolume(event, row.key);
        if (!percent)
            return failParameter(event, reply, row.key, row.name, "nmbr"_4cc);
        commands.push_back(row.command);
        commands.back().push_back(std::to_string(std::lround(*percent)) + "%");
    }
    if (event.find("mute"_4cc)) {
        const auto muted = booleanParameter(event, "mute"_4cc);
        if (!muted)
            return failParameter(event, reply, "mute"_4cc, u"output muted", "bool"_4cc);
        commands.push_back(*muted ? mixer->mute : mixer->unmute);
    }
    if (commands.empty())
        return failParameter(event, reply, "----"_4cc, u"volume", "nmbr"_4cc);
    for (const auto& command : commands)
        if (!outputOf(command, context))
            return fail(reply, errAEEventFailed, u"The mixer refused to change the volume.");
    return noErr;
}

} // namespace quoddle::additions
