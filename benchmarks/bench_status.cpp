// Texts of status lines beside a std::string under a mutex. Contestants take turns within each
// repetition, so that a noisy machine disturbs both; what is printed are medians and their ratio:
// of processor time, and of wall time where threads work together. Allocations are counted for the
// whole process.

#include "settings/StatusLines.h"

#include <time.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace {

std::atomic<long> g_allocations = 0;

}  // namespace

extern "C" {
void* __libc_malloc(std::size_t bytes);

// In the place of the C library's: what printf and strings take from the heap comes through here.
void* malloc(std::size_t bytes)
{
    g_allocations.fetch_add(1, std::memory_order_relaxed);
    return __libc_malloc(bytes);
}
}

namespace {

constexpr int kRepetitions = 15;
constexpr int kWorkers = 4;
constexpr int kTextsOfAWorker = 100'000;
constexpr clockid_t kProcessorTime = CLOCK_PROCESS_CPUTIME_ID;
constexpr clockid_t kWallTime = CLOCK_MONOTONIC;
constexpr double kUnchangedLimitNs = 1000.0;

/// What is compared: a place for one line's text.
class Line {
public:
    virtual ~Line() = default;
    virtual void put(const char* format, ...) = 0;
    /// True when the text differs from the one that was shown, which it becomes.
    virtual bool show() = 0;
};

class OurLine : public Line {
public:
    void put(const char* format, ...) override
    {
        std::va_list arguments;
        va_start(arguments, format);
        lines_.put(1, format, arguments);
        va_end(arguments);
        if (lines_.announce(1, 1, 0))
            announced = true;
    }
    bool show() override
    {
        zmr::StatusText text;
        lines_.take(1, text);
        if (std::strcmp(text.data(), shown_.data()) == 0)
            return false;
        shown_ = text;
        return true;
    }
    std::atomic<bool> announced = false;

private:
    zmr::StatusLines lines_;
    zmr::StatusText shown_{};
};

class PeerLine : public Line {
public:
    void put(const char* format, ...) override
    {
        char text[1024];
        std::va_list arguments;
        va_start(arguments, format);
        std::vsnprintf(text, sizeof text, format, arguments);
        va_end(arguments);
        const std::lock_guard hold(lock_);
        text_ = text;
    }
    bool show() override
    {
        std::string text;
        {
            const std::lock_guard hold(lock_);
            text = text_;
        }
        if (text == shown_)
            return false;
        shown_ = std::move(text);
        return true;
    }

private:
    std::mutex lock_;
    std::string text_;
    std::string shown_;
};

double timed_ns(clockid_t clock, const std::function<void()>& work)
{
    const auto now_ns = [clock] {
        timespec time{};
        ::clock_gettime(clock, &time);
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
    };
    const double start = now_ns();
    work();
    return now_ns() - start;
}

struct Cost {
    double ns;           ///< Of one text.
    double allocations;  ///< For one text.
};

/// The medians of both contestants, who take turns.
template <class Work>
std::pair<Cost, Cost> compare(clockid_t clock, double texts, const Work& work)
{
    std::vector<double> times[2];
    double allocations[2] = {};
    for (int repetition = 0; repetition < kRepetitions; ++repetition)
        for (int contestant = 0; contestant < 2; ++contestant) {
            OurLine ours;
            PeerLine peers;
            Line& line = contestant == 0 ? static_cast<Line&>(ours) : peers;
            const long before = g_allocations;
            times[contestant].push_back(timed_ns(clock, [&] { work(line); }) / texts);
            allocations[contestant] = static_cast<double>(g_allocations - before) / texts;
        }
    for (std::vector<double>& each : times)
        std::sort(each.begin(), each.end());
    return {{times[0][kRepetitions / 2], allocations[0]},
            {times[1][kRepetitions / 2], allocations[1]}};
}

std::pair<Cost, Cost> print(const char* name, const std::pair<Cost, Cost>& costs)
{
    const auto& [ours, peers] = costs;
    std::printf("%-34s %8.0f ns %8.0f ns  ratio %5.2f   allocations a text %.4f : %.4f\n", name,
                ours.ns, peers.ns, ours.ns / peers.ns, ours.allocations, peers.allocations);
    return costs;
}

void put_unchanged(Line& line)
{
    for (int text = 0; text < 100'000; ++text) {
        line.put("X: %7.2f of the scene's whole extent", 12.5);
        line.show();
    }
}

void put_changing(Line& line)
{
    for (int text = 0; text < 100'000; ++text) {
        line.put("X: %7.2f of the scene's whole extent", text * 0.25);
        line.show();
    }
}

void put_from_workers(Line& line)
{
    std::atomic<int> running = kWorkers;
    std::vector<std::thread> workers;
    for (int worker = 0; worker < kWorkers; ++worker)
        workers.emplace_back([&] {
            for (int text = 0; text < kTextsOfAWorker; ++text)
                line.put("frame %d of %d is rendered", text, kTextsOfAWorker);
            --running;
        });
    while (running > 0) {
        line.show();
        std::this_thread::yield();
    }
    for (std::thread& worker : workers)
        worker.join();
    line.show();
}

}  // namespace

int main()
{
    std::printf("%-34s %11s %11s\n", "for one text", "ours", "std::string");
    const Cost unchanged =
        print("unchanged, put and looked at", compare(kProcessorTime, 1e5, &put_unchanged)).first;
    print("changing, put and looked at", compare(kProcessorTime, 1e5, &put_changing));
    print("4 workers put, one looks",
          compare(kWallTime, double{kWorkers} * kTextsOfAWorker, &put_from_workers));
    if (unchanged.ns < kUnchangedLimitNs && unchanged.allocations == 0.0)
        return 0;
    std::puts(
        "An unchanged text must cost less than a microsecond and take nothing from the heap.");
    return 1;
}
