// SPDX-License-Identifier: MIT
// Gives every function that reads from outside damaged input. Meant to be built with the address sanitizer, works without one.
//
//   fuzz [--seconds N | --rounds N] [--seed N] [--only TARGET] [--input FILE]
//
// The targets take turns. When the program dies, the input that was being read is left in fuzz-TARGET.input, to be read again with --only
// TARGET --input. A target that uses the processor for twenty seconds over one input counts as dead.
#include "fuzz/Mutator.h"
#include "fuzz/Targets.h"
#include "platform/applescript/AppleScriptComponent.h"
#include "platform/base/File.h"

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/time.h>
#include <unistd.h>

#include <QApplication>
#include <QLoggingCategory>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=0:max_allocation_size_mb=1024:hard_rss_limit_mb=4096:detect_leaks=1";
}
#endif

using namespace quoddle;
using namespace quoddle::fuzz;

namespace {

constexpr time_t kProcessorTime = 20;
constexpr unsigned kPatience = 300;    // seconds; ends a target that waits without using the processor
constexpr long kRoundsByDefault = 200; // for each target
constexpr std::size_t kMaximumInput = std::size_t(64) << 20;

int sReport = STDERR_FILENO; // where reports go; standard error gets the messages of libraries that read pictures

// The target and the input being read, for the report when the program dies.
const Target* sTarget = nullptr;
const std::string* sInput = nullptr;

void leaveInput() {
    if (!sTarget || !sInput)
        return;
    char name[100];
    std::snprintf(name, sizeof name, "fuzz-%s.input", sTarget->name);
    const int file = ::open(name, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    [[maybe_unused]] const auto written = ::write(file, sInput->data(), sInput->size());
    ::dprintf(sReport, "\nfuzz: what was being read is in %s\n", name);
}

void dieOf(int signal) {
    leaveInput();
    ::dprintf(sReport, "fuzz: %s\n", signal == SIGALRM || signal == SIGPROF ? "it takes too long" : ::strsignal(signal));
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

void quietLibraries() {
    sReport = ::dup(STDERR_FILENO);
    ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_report_fd(reinterpret_cast<void*>(static_cast<std::intptr_t>(sReport)));
#endif
}

void watchForDeath() {
    std::signal(SIGALRM, dieOf);
    std::signal(SIGPROF, dieOf);
#ifdef __SANITIZE_ADDRESS__
    __sanitizer_set_death_callback(leaveInput);
    std::signal(SIGABRT, dieOf);
#else
    for (int signal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGILL})
        std::signal(signal, dieOf);
#endif
}

void limitTime(time_t processor, unsigned wall) {
    const itimerval limit{{}, {processor, 0}};
    ::setitimer(ITIMER_PROF, &limit, nullptr);
    ::alarm(wall);
}

void read(const Target& target, const std::string& bytes) {
    sTarget = &target;
    sInput = &bytes;
    limitTime(kProcessorTime, kPatience);
    target.read(bytes);
    limitTime(0, 0);
    sInput = nullptr;
}

struct Wishes {
    std::optional<std::chrono::seconds> time;
    long rounds = kRoundsByDefault;
    std::uint32_t seed = 1;
    std::string only, input;
};

std::optional<Wishes> wishesFrom(int argc, char** argv) {
    Wishes wishes;
    for (int i = 1; i < argc; i += 2) {
        const std::string option = argv[i];
        if (i + 1 >= argc)
            return std::nullopt;
        if (option == "--seconds")
            wishes.time = std::chrono::seconds(std::atol(argv[i + 1]));
        else if (option == "--rounds")
            wishes.rounds = std::atol(argv[i + 1]);
        else if (option == "--seed")
            wishes.seed = static_cast<std::uint32_t>(std::atol(argv[i + 1]));
        else if (option == "--only")
            wishes.only = argv[i + 1];
        else if (option == "--input")
            wishes.input = argv[i + 1];
        else
            return std::nullopt;
    }
    return wishes;
}

struct Runner {
    const Target* target;
    Mutator mutator;
};

int fuzzAll(const Wishes& wishes) {
    std::vector<Runner> runners;
    for (const Target& target : targets()) {
        if (!wishes.only.empty() && wishes.only != target.name)
            continue;
        const std::vector<std::string> seeds = target.seeds();
        for (const std::string& seed : seeds)
            read(target, seed);
        runners.push_back({&target, Mutator(seeds, target.words, wishes.seed)});
    }
    if (runners.empty())
        return 2;
    const auto end = std::chrono::steady_clock::now() + wishes.time.value_or(std::chrono::seconds(0));
    long rounds = 0;
    for (; wishes.time ? std::chrono::steady_clock::now() < end : rounds < wishes.rounds; ++rounds)
        for (Runner& runner : runners)
            read(*runner.target, runner.mutator.next());
    std::printf("%ld inputs for each of %zu targets\n", rounds, runners.size());
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const auto wishes = wishesFrom(argc, argv);
    if (!wishes) {
        std::fputs("usage: fuzz [--seconds N | --rounds N] [--seed N] [--only TARGET] [--input FILE]\n", stderr);
        return 2;
    }
    QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
    registerAppleScriptComponent();
    quietLibraries();
    watchForDeath();
    if (wishes->input.empty())
        return fuzzAll(*wishes);
    const auto bytes = readFile(wishes->input, kMaximumInput);
    for (const Target& target : targets())
        if (bytes && wishes->only == target.name)
            read(target, *bytes);
    return bytes ? 0 : 2;
}
