// odb_soak --minutes N | --seconds N [--seed S]: random work on a library beside a model of it for
// that long. Prints each minute, and at least four times in all, a line of JSON with the operations
// done, the resident memory and the open descriptors; at the end how fast both grew. Fails on a
// difference from the model, on more descriptors, and, when it ran for half an hour or more, on
// memory that grew by more than 1 MiB an hour. What comes in the first sixth, at most ten minutes,
// is not counted: caches fill.
#include "DatabaseModel.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct Sample {
    double hours;
    double resident_mib;
    double descriptors;
};

Sample sample_now(double seconds)
{
    std::ifstream figures("/proc/self/statm");
    long all = 0;
    long resident = 0;
    figures >> all >> resident;
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return {seconds / 3600.0,
            static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1048576.0,
            static_cast<double>(std::distance(begin(open), end(open)))};
}

/// How much a value grows in an hour: the line through the samples with the least squares.
double slope(const std::vector<Sample>& samples, double Sample::*value)
{
    const auto count = static_cast<double>(samples.size());
    double mean_hours = 0;
    double mean = 0;
    for (const Sample& one : samples) {
        mean_hours += one.hours / count;
        mean += one.*value / count;
    }
    double products = 0;
    double squares = 0;
    for (const Sample& one : samples) {
        products += (one.hours - mean_hours) * (one.*value - mean);
        squares += (one.hours - mean_hours) * (one.hours - mean_hours);
    }
    return squares > 0 ? products / squares : 0;
}

/// Whether more descriptors were open in the last third all the time than ever in the first one.
/// In between they come and go with the other library, which is open while something refers to it.
bool are_lost(const std::vector<Sample>& samples)
{
    const auto third = static_cast<std::ptrdiff_t>(samples.size() / 3);
    const auto fewer = [](const Sample& a, const Sample& b) {
        return a.descriptors < b.descriptors;
    };
    const auto most = std::max_element(samples.begin(), samples.begin() + third, fewer);
    const auto least = std::min_element(samples.end() - third, samples.end(), fewer);
    return least->descriptors > most->descriptors;
}

}  // namespace

int main(int count, char** words)
{
    double length_s = 0;
    unsigned long seed = 1;
    for (int i = 1; i + 1 < count; i += 2) {
        const std::string_view option = words[i];
        if (option == "--minutes")
            length_s = 60 * std::atof(words[i + 1]);
        else if (option == "--seconds")
            length_s = std::atof(words[i + 1]);
        else if (option == "--seed")
            seed = std::strtoul(words[i + 1], nullptr, 10);
        else
            length_s = -1;
    }
    if (length_s <= 0 || count % 2 == 0) {
        std::fprintf(stderr, "usage: odb_soak --minutes N | --seconds N [--seed S]\n");
        return 2;
    }

    constexpr int kOperationsAtOnce = 20;
    constexpr int kFirstOperations = 500;  // until the library holds something of each kind
    constexpr double kMemoryMatters_s = 1800;
    const double interval_s = std::min(60.0, length_s / 8);
    const double warm_up_s = std::min(600.0, length_s / 6);
    DatabaseModel model(static_cast<std::uint32_t>(seed));
    std::vector<Sample> samples;
    std::string failure;
    long operations = 0;
    for (; operations < kFirstOperations && failure.empty(); ++operations)
        failure = model.step();
    const auto start = std::chrono::steady_clock::now();
    double next_s = interval_s;
    double now_s = 0;
    while (failure.empty() && now_s < length_s) {
        for (int i = 0; i < kOperationsAtOnce && failure.empty(); ++i, ++operations)
            failure = model.step();
        now_s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        if (!failure.empty() || now_s < next_s)
            continue;
        next_s = now_s + interval_s;
        failure = model.reopen();
        if (failure.empty())
            failure = model.check_all();
        const Sample one = sample_now(now_s);
        if (now_s >= warm_up_s)
            samples.push_back(one);
        std::printf(
            "{\"seconds\": %.0f, \"operations\": %ld, \"resident_mib\": %.2f, "
            "\"descriptors\": %.0f}\n",
            now_s, operations, one.resident_mib, one.descriptors);
        std::fflush(stdout);
    }
    if (!failure.empty())
        failure = model.last_step() + ": " + failure;
    const double memory = slope(samples, &Sample::resident_mib);
    const double descriptors = slope(samples, &Sample::descriptors);
    if (failure.empty() && samples.size() < 3)
        failure = "too short to tell";
    else if (failure.empty() && are_lost(samples))
        failure = "descriptors are lost";
    else if (failure.empty() && length_s >= kMemoryMatters_s && memory > 1)
        failure = "memory grows";
    std::printf(
        "{\"seed\": %lu, \"operations\": %ld, \"mib_an_hour\": %.3f, "
        "\"descriptors_an_hour\": %.3f, \"failure\": \"%s\"}\n",
        seed, operations, memory, descriptors, failure.c_str());
    return failure.empty() ? 0 : 1;
}
