// SPDX-License-Identifier: MIT
#include "LineEditor.h"

#include "platform/base/File.h"
#include "platform/base/SourceEncoding.h"
#include "platform/base/Text.h"
#include "platform/base/UserFolders.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cwchar>
#include <dlfcn.h>
#include <filesystem>
#include <histedit.h>
#include <iostream>
#include <poll.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>

namespace quoddle::tool {

namespace {

constexpr const char* kLibrary = "libedit.so.2"; // the binary interface that belongs to the header
constexpr int kLinesOfHistory = 1000;
constexpr std::string_view kFirstLineOfHistory = "_HiStOrY_V2_\n"; // the library's mark
constexpr std::size_t kLargestHistory = std::size_t(16) << 20;     // bytes
constexpr std::size_t kMostShown = 200;                            // choices
constexpr std::size_t kWidthOfList = 78;

struct Library {
#define QUODDLE_EDIT_FUNCTIONS(X)                                                                                                          \
    X(el_init) X(el_end) X(el_gets) X(el_set) X(el_wset) X(el_line) X(el_insertstr) X(history_init) X(history_end) X(history)
#define QUODDLE_EDIT_MEMBER(name) decltype(&::name) name = nullptr;
    QUODDLE_EDIT_FUNCTIONS(QUODDLE_EDIT_MEMBER)
#undef QUODDLE_EDIT_MEMBER

    bool load() {
        void* file = ::dlopen(kLibrary, RTLD_LAZY | RTLD_LOCAL);
        bool complete = file;
#define QUODDLE_EDIT_LOAD(name)                                                                                                            \
    name = file ? reinterpret_cast<decltype(&::name)>(::dlsym(file, #name)) : nullptr;                                                     \
    complete = complete && name;
        QUODDLE_EDIT_FUNCTIONS(QUODDLE_EDIT_LOAD)
#undef QUODDLE_EDIT_LOAD
        return complete;
    }
};

void list(const std::vector<std::string>& choices) {
    std::cout << '\n';
    if (choices.size() > kMostShown) {
        std::cout << choices.size() << " choices\n" << std::flush;
        return;
    }
    std::size_t width = 0;
    for (const std::string& choice : choices)
        width = std::max(width, choice.size() + 2);
    const std::size_t columns = std::max<std::size_t>(1, kWidthOfList / width), rows = (choices.size() + columns - 1) / columns;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t i = row; i < choices.size(); i += rows)
            std::cout << choices[i] << (i + rows < choices.size() ? std::string(width - choices[i].size(), ' ') : "");
        std::cout << '\n';
    }
    std::cout << std::flush;
}

} // namespace

struct LineEditor::State {
    Library library;
    EditLine* editor = nullptr;
    History* history = nullptr;
    std::function<std::vector<std::string>()> phrases;
    std::string historyFile, prompt;
    bool isAbandoned = false;

    /// The library's functions carry no pointer to us that every version hands out, and a process has one terminal.
    static inline State* sCurrent = nullptr;

    static char* promptOf(EditLine*) { return sCurrent->prompt.data(); }

    static unsigned char abandon(EditLine*, wint_t) {
        sCurrent->isAbandoned = true;
        return CC_NEWLINE;
    }

    static unsigned char complete(EditLine* editor, wint_t) {
        const LineInfo* info = sCurrent->library.el_line(editor);
        const Completion completion =
            completionOf({info->buffer, static_cast<std::size_t>(info->cursor - info->buffer)}, sCurrent->phrases());
        if (completion.choices.empty())
            return CC_ERROR;
        if (!completion.inserted.empty())
            return sCurrent->library.el_insertstr(editor, completion.inserted.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
        list(completion.choices);
        return CC_REDISPLAY;
    }

    /// Takes a character from the terminal; bytes that are none are shown as U+FFFD, which the library would drop.
    static int character(EditLine*, wchar_t* typed) {
        std::mbstate_t state{};
        for (;;) {
            char byte = 0;
            const ssize_t count = ::read(STDIN_FILENO, &byte, 1);
            if (count < 0 && errno == EINTR)
                continue;
            if (count < 0 && errno == EAGAIN) { // another program has left the terminal so
                pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
                ::poll(&input, 1, -1);
                continue;
            }
            if (count <= 0)
                return static_cast<int>(count);
            const std::size_t length = std::mbrtowc(typed, &byte, 1, &state);
            if (length == static_cast<std::size_t>(-2))
                continue;
            if (length == static_cast<std::size_t>(-1))
                *typed = 0xFFFD;
            return 1;
        }
    }

    /// Reads the history. False, with a message printed, when the file is none that may be written.
    bool loadHistory() {
        std::error_code error;
        const auto file = writtenPath(historyFile);
        const bool isNew = !std::filesystem::exists(file ? *file : historyFile, error);
        const auto bytes = isNew || !file ? Result<std::string, OSStatus>(std::string()) : readFile(*file, kLargestHistory);
        if (!file || !bytes || bytes->find('\0') != std::string::npos) {
            std::cerr << "osascript: " << historyFile << ": the history is not kept: this is no file for it\n";
            return false;
        }
        historyFile = *file;
        HistEvent event;
        if (bytes->starts_with(kFirstLineOfHistory)) {
            library.history(history, &event, H_LOAD, historyFile.c_str());
            return true;
        }
        std::istringstream lines(utf8FromUTF16(utf16FromSourceBytes(*bytes))); // as a user has written them
        for (std::string line; std::getline(lines, line);)
            if (line.find_first_not_of(" \t\r") != std::string::npos)
                library.history(history, &event, H_ENTER, line.c_str());
        return true;
    }

    void saveHistory() {
        if (historyFile.empty())
            return;
        HistEvent event;
        std::error_code error;
        std::filesystem::create_directories(std::filesystem::path(historyFile).parent_path(), error);
        const std::string beside = historyFile + "." + std::to_string(::getpid());
        const mode_t mask = ::umask(077); // what people type is nobody else's business
        const bool isSaved = library.history(history, &event, H_SAVE, beside.c_str()) >= 0;
        ::umask(mask);
        if (!isSaved || ::rename(beside.c_str(), historyFile.c_str()) != 0)
            ::unlink(beside.c_str());
    }
};

LineEditor::LineEditor(std::function<std::vector<std::string>()> phrases, std::string historyFile) {
    auto state = std::make_unique<State>();
    const char* terminal = std::getenv("TERM");
    if (!terminal || std::string_view(terminal) == "dumb" || !state->library.load())
        return;
    std::setlocale(LC_CTYPE, "");
    if (MB_CUR_MAX == 1) // without a locale the library would drop every character beyond ASCII
        std::setlocale(LC_CTYPE, "C.UTF-8");
    Library& library = state->library;
    state->phrases = std::move(phrases);
    state->historyFile = std::move(historyFile);
    state->history = library.history_init();
    state->editor = library.el_init("osascript", stdin, stdout, stderr);
    if (!state->history || !state->editor)
        return;
    HistEvent event;
    library.history(state->history, &event, H_SETSIZE, kLinesOfHistory);
    library.history(state->history, &event, H_SETUNIQUE, 1);
    if (!state->loadHistory())
        state->historyFile.clear();
    EditLine* editor = state->editor;
    library.el_set(editor, EL_HIST, library.history, state->history);
    library.el_set(editor, EL_PROMPT, &State::promptOf);
    library.el_set(editor, EL_EDITOR, "emacs");
    library.el_wset(editor, EL_GETCFN, &State::character);
    // The library keeps these texts as they are; of narrow ones it makes copies that nobody frees.
    library.el_wset(editor, EL_ADDFN, L"complete-words", L"completes words of the language", &State::complete);
    library.el_wset(editor, EL_ADDFN, L"abandon-line", L"gives the statement up", &State::abandon);
    // While a line is edited Control-C is a key; while a statement runs the terminal makes an interrupt of it.
    library.el_set(editor, EL_SETTY, "-d", "-isig", nullptr);
    library.el_set(editor, EL_BIND, "^I", "complete-words", nullptr);
    library.el_set(editor, EL_BIND, "^C", "abandon-line", nullptr);
    library.el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    State::sCurrent = state.get();
    mState = std::move(state);
}

LineEditor::~LineEditor() {
    if (!mState)
        return;
    State::sCurrent = nullptr;
    mState->library.el_end(mState->editor);
    mState->library.history_end(mState->history);
}

LineEditor::Ending LineEditor::read(const std::string& prompt, std::string& line) {
    mState->prompt = prompt;
    mState->isAbandoned = false;
    // By itself the library takes the keys only behind the prompt; Control-D right after the prompt would be lost.
    mState->library.el_set(mState->editor, EL_PREP_TERM, 1);
    int count = 0;
    const char* typed = mState->library.el_gets(mState->editor, &count);
    if (mState->isAbandoned) {
        std::cout << "^C" << std::endl;
        return Ending::Abandoned;
    }
    if (!typed || count <= 0)
        return Ending::EndOfInput;
    line.assign(typed, static_cast<std::size_t>(count));
    while (line.ends_with('\n') || line.ends_with('\r'))
        line.pop_back();
    if (line.find_first_not_of(" \t") != std::string::npos) {
        HistEvent event;
        mState->library.history(mState->history, &event, H_ENTER, line.c_str());
        mState->saveHistory();
    }
    return Ending::Entered;
}

std::string stateFile(const std::string& name) {
    return stateFolder() + "/quoddle/" + name;
}

} // namespace quoddle::tool
