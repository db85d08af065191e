#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// Whether a program has a terminal (a console), as when a person starts it.
enum class ChildTerminal : std::uint8_t {
    None,
    Aside,     ///< It has one; what it prints goes elsewhere.
    ForErrors  ///< And its standard error goes there.
};

/// What is started, and where its streams go.
struct ChildStart {
    std::string program;             ///< The full name of its file, UTF-8.
    std::vector<std::string> words;  ///< Behind its name, UTF-8.
    std::string out_file;            ///< Made for what it prints; empty: for read_line().
    std::string err_file;            ///< Made for its errors; empty: the test's own error output.
    ChildTerminal terminal = ChildTerminal::None;
};

/// What a program left that has ended.
struct ChildEnd {
    int code = -1;                 ///< Its exit code; -1 when it did not end by itself.
    std::uint64_t peak_bytes = 0;  ///< The most memory it had at once; 0 where it isn't told.
};

/// A program in a process of its own, started by a test. One thread.
class ChildProcess {
public:
    /// Null with the reason when the system refuses.
    [[nodiscard]] static std::unique_ptr<ChildProcess> Start(const ChildStart& start,
                                                             std::string& reason);
    /// Kills it if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Gives it a line on its standard input, when it has no terminal. False when nobody reads.
    [[nodiscard]] bool write_line(std::string_view line);
    /// Waits for the next line that it prints and gives it without its end. False when there are no
    /// more: it has ended, and a line that it did not finish is lost.
    [[nodiscard]] bool read_line(std::string& line);
    /// Whether it has not ended yet.
    [[nodiscard]] bool runs();
    /// Ends it at once, without telling it, and waits until it is gone. What it printed before can
    /// still be read.
    void kill();
    /// Presses Ctrl-C on its terminal.
    void interrupt();
    /// Waits for its end.
    ChildEnd wait();
    /// What its terminal was sent until now; all of it after wait().
    [[nodiscard]] std::string terminal_text() const;

private:
    struct System;  ///< What the system lends for it: one for each lane.
    explicit ChildProcess(std::unique_ptr<System> system);
    /// Waits for bytes that it prints; 0 at the end.
    [[nodiscard]] std::size_t read_out(char* bytes, std::size_t size);

    std::unique_ptr<System> system_;
    std::string read_;  ///< From its output, not yet given as lines.
};
