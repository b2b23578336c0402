// SPDX-License-Identifier: MIT
// The command say, which uses an installed speech program.
//
// Decision: speech-dispatcher is preferred, because it speaks with the voice that the user has chosen for the whole desktop. It cannot
// write files; the eSpeak programs write them. Parameters for which a program has no option (modulation) are ignored.
#include "platform/additions/Commands.h"
#include "platform/additions/FileParameter.h"
#include "platform/additions/Program.h"
#include "platform/base/Text.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <mutex>
#include <sys/syscall.h>

namespace quoddle::additions {

namespace {

using namespace std::chrono_literals;

constexpr auto kStartTime = 100ms;            // a program that cannot work has failed by then
constexpr std::size_t kMaximumText = 100'000; // one argument of a program cannot be much longer
constexpr double kNormalRate = 175;           // words per minute
constexpr double kNormalPitch = 50;
constexpr std::u16string_view kNoProgram = u"Text can’t be spoken: no speech program was found. Install speech-dispatcher or espeak-ng.";

/// An option of a speech program with a number. The script's number is scaled: value * factor + offset, within the limits.
struct Option {
    AEKeyword key;
    std::string_view letter;
    double factor, offset, least, most;
};

struct Speaker {
    std::string_view program;
    std::string_view voice;
    std::string_view wait; ///< the option to wait for the end; empty when the program always waits
    std::vector<std::string> stop;
    std::string_view output; ///< the option for an output file; empty when the program writes no files
    std::vector<Option> numbers;
    std::vector<std::string> always;
};

std::vector<Option> espeakNumbers() {
    return {{"RATE"_4cc, "-s", 1, 0, 80, 450}, {"PTCH"_4cc, "-p", 1, 0, 0, 99}, {"VOLU"_4cc, "-a", 100, 0, 0, 200}};
}

const std::vector<Speaker>& speakers() {
    static const std::vector<Speaker> sSpeakers = {
        {"spd-say",
         "-y",
         "-w",
         {"spd-say", "-C"},
         "",
         {{"RATE"_4cc, "-r", 100 / kNormalRate, -100, -100, 100},
          {"PTCH"_4cc, "-p", 100 / kNormalPitch, -100, -100, 100},
          {"VOLU"_4cc, "-i", 200, -100, -100, 100}},
         {"-P", "message"}}, // with this priority each message waits for the one before
        {"espeak-ng", "-v", "", {}, "-w", espeakNumbers(), {}},
        {"espeak", "-v", "", {}, "-w", espeakNumbers(), {}},
    };
    return sSpeakers;
}

/// The speech program that "say" without waiting has left running.
struct CurrentSpeech {
    std::mutex mutex;
    FileDescriptor process;
};

CurrentSpeech& currentSpeech() {
    static CurrentSpeech sSpeech;
    return sSpeech;
}

void stopSpeech(const AEHandlerContext& context) {
    for (const Speaker& speaker : speakers())
        if (!speaker.stop.empty())
            (void)runProgram(speaker.stop, 1s, context);
    std::lock_guard lock(currentSpeech().mutex);
    if (currentSpeech().process.isOpen())
        ::syscall(SYS_pidfd_send_signal, currentSpeech().process.number(), SIGTERM, nullptr, 0);
    currentSpeech().process.reset();
}

struct Speech {
    std::string text;
    std::string voice;
    std::string file; // empty for speech to be heard
    bool waits = true;
    std::vector<std::pair<AEKeyword, double>> numbers;
};

std::vector<std::string> commandFor(const Speaker& speaker, const Speech& speech) {
    std::vector<std::string> command = {std::string(speaker.program)};
    command.insert(command.end(), speaker.always.begin(), speaker.always.end());
    for (const Option& option : speaker.numbers)
        for (const auto& [key, value] : speech.numbers)
            if (key == option.key) {
                const double scaled = std::clamp(value * option.factor + option.offset, option.least, option.most);
                command.insert(command.end(), {std::string(option.letter), std::to_string(std::lround(scaled))});
            }
    if (!speech.voice.empty())
        command.insert(command.end(), {std::string(speaker.voice), speech.voice});
    if (!speech.file.empty())
        command.insert(command.end(), {std::string(speaker.output), speech.file});
    else if (speech.waits && !speaker.wait.empty())
        command.emplace_back(speaker.wait);
    command.insert(command.end(), {"--", speech.text});
    return command;
}

/// Speaks with the first program that is installed and succeeds.
OSErr speak(const Speech& speech, AEDesc& reply, const AEHandlerContext& context) {
    const bool waits = speech.waits || !speech.file.empty();
    std::u16string failed;
    for (const Speaker& speaker : speakers()) {
        if (!speech.file.empty() && speaker.output.empty())
            continue;
        auto outcome = runProgram(commandFor(speaker, speech), waits ? std::chrono::hours(24) : kStartTime, context);
        if (!outcome)
            continue;
        if (outcome->wasCancelled)
            return userCanceledErr;
        if (outcome->isRunning) {
            std::lock_guard lock(currentSpeech().mutex);
            currentSpeech().process = std::move(outcome->process);
        }
        if (outcome->isRunning || outcome->exitStatus == 0)
            return noErr;
        failed = utf16FromUTF8(speaker.program);
    }
    if (!failed.empty())
        return fail(reply, errAEEventFailed, u"The text can’t be spoken: the speech program " + failed + u" failed.");
    return fail(reply, errAEEventFailed, speech.file.empty() ? kNoProgram : u"Speech can’t be saved: install espeak-ng.");
}

constexpr struct {
    AEKeyword key;
    std::u16string_view name;
} kNumbers[] = {{"RATE"_4cc, u"speaking rate"}, {"PTCH"_4cc, u"pitch"}, {"VOLU"_4cc, u"volume"}};

} // namespace

OSErr say(const AEDesc& event, AEDesc& reply, const AEHandlerContext& context) {
    const auto text = textParameter(event, "----"_4cc);
    if (!text)
        return failParameter(event, reply, "----"_4cc, u"text", "utxt"_4cc);
    Speech speech{.text = utf8FromUTF16(*text), .voice = utf8FromUTF16(textParameter(event, "VOIC"_4cc).value_or(std::u16string()))};
    if (speech.text.size() > kMaximumText)
        return fail(reply, errOSADataBlockTooLarge, u"The text is too long to be spoken at once.");
    for (const auto& row : kNumbers) {
        const AEDesc* given = event.find(row.key);
        const auto number = given ? given->asDouble() : std::nullopt;
        if (given && !(number && std::isfinite(*number)))
            return failParameter(event, reply, row.key, row.name, "nmbr"_4cc);
        if (number)
            speech.numbers.emplace_back(row.key, *number);
    }
    if (event.find("stof"_4cc)) {
        const auto path = fileParameter(event, "stof"_4cc);
        if (!path)
            return failParameter(event, reply, "stof"_4cc, u"saving to", "furl"_4cc);
        speech.file = *path;
        if (const std::string kind = std::filesystem::path(*path).extension(); kind != ".wav" && kind != ".WAV")
            return fail(reply, paramErr, u"Speech can only be saved as a WAV file: give the file a name that ends with “.wav”.");
    }
    speech.waits = booleanParameter(event, "wfsp"_4cc).value_or(true);
    if (booleanParameter(event, "STOP"_4cc).value_or(false))
        stopSpeech(context);
    return speech.text.empty() ? OSErr{noErr} : speak(speech, reply, context);
}

} // namespace quoddle::additions
