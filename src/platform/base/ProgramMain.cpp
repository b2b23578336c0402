// SPDX-License-Identifier: MIT
#include "platform/base/ProgramMain.h"

#include "platform/base/UserFolders.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <new>
#include <unistd.h>

namespace quoddle {

namespace {

/// Opens each closed stream in the wrong direction, so that its use still fails but its number is taken.
void occupyClosedStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0)
            (void)::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

/// Makes a write beyond the limit on the size of files an error, instead of the end of the process. Programs that this one starts are
/// ended as ever, because a handler is not handed on.
void survivePastFileSizeLimit() {
    std::signal(SIGXFSZ, [](int) {});
}

} // namespace

void printVersion(const char* program) {
    std::printf("%s (Quoddle) " QUODDLE_VERSION "\n", program);
}

int programMain(const char* program, int argc, char** argv, int (*body)(int, char**)) {
    occupyClosedStreams();
    survivePastFileSizeLimit();
    int status = EXIT_FAILURE;
    try {
        if (argc > 1 && std::strcmp(argv[1], "--version") == 0) {
            printVersion(program);
            status = EXIT_SUCCESS;
        } else {
            settleUserFolders();
            status = body(argc, argv);
        }
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "%s: out of memory\n", program);
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "%s: %s\n", program, exception.what());
    }
    if (std::fflush(stdout) == 0 && !std::ferror(stdout))
        return status;
    std::fprintf(stderr, "%s: the output could not be written\n", program);
    return status == EXIT_SUCCESS ? EXIT_FAILURE : status;
}

} // namespace quoddle
