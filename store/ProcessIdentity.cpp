#include "store/ProcessIdentity.h"

#include "store/ProcessFacts.h"

#include <array>
#include <chrono>
#include <cstdio>

namespace zmr {
namespace {

/// Not by the C library, whose broken-down time is one for all threads.
std::string time_now()
{
    using namespace std::chrono;
    const auto now = floor<seconds>(system_clock::now());
    const auto midnight = floor<days>(now);
    const year_month_day date(midnight);
    const hh_mm_ss time(now - midnight);
    std::array<char, 96> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d UTC",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(time.hours().count()),
                  static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}

}  // namespace

std::string process_identity()
{
    const ProcessFacts facts = process_facts();
    return facts.user.substr(0, 100) + "@" + facts.host.substr(0, 200) + ", process " +
           std::to_string(facts.process) + ", since " + time_now();
}

}  // namespace zmr
