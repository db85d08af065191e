#pragma once

#include <mutex>
#include <string>
#include <string_view>

/// What a terminal was sent, gathered by one thread and looked at by another.
class TerminalText {
public:
    void append(std::string_view bytes)
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        text_ += bytes;
    }
    [[nodiscard]] std::string get() const
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        return text_;
    }

private:
    mutable std::mutex mutex_;
    std::string text_;
};
