#include "tools/odb/Terminal.h"

#include <unistd.h>
#include <csignal>
#include <cstdio>

namespace terminal {

namespace {

volatile std::sig_atomic_t g_interrupted = 0;

void note_interrupt(int)
{
    g_interrupted = 1;
}

}  // namespace

std::vector<std::string> arguments(int count, char** words)
{
    return {words, words + count};
}

bool error_is_terminal()
{
    return isatty(STDERR_FILENO) == 1;
}

void write_error(std::string_view text)
{
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));  // not buffered
}

void wipe_error_line()
{
    write_error("\r\x1b[K");
}

void catch_interrupts()
{
    struct sigaction action = {};
    action.sa_handler = note_interrupt;
    // The first signal only marks; with the handler gone the second one ends the process.
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        sigaction(signal, &action, nullptr);
    // A write beyond a limit of the file's size then fails as one to a full disk does.
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    sigaction(SIGXFSZ, &ignore, nullptr);
}

bool interrupted()
{
    return g_interrupted != 0;
}

}  // namespace terminal
