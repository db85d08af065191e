// Looking classes up by name among 2,000, beside std::unordered_map over string views. Both get the
// names as C strings, in an order that no cache can guess.

#include "foundation/GMetaClass.h"

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr int kClasses = 2000;
constexpr int kRounds = 200;
constexpr int kRepetitions = 5;

const type_info kType("Bench");

class Names {
public:
    Names()
    {
        static const char* const kinds[] = {"Light", "Mesh", "Camera", "Material", "Curve"};
        static const char* const roles[] = {"", "Attribute", "Behaviour", "Dialog"};
        for (int number = 0; number < kClasses; ++number) {
            const auto at = static_cast<std::size_t>(number);
            names_.push_back(std::string("G") + kinds[at % 5] +
                             std::to_string(number * 7919 % 9973) + roles[at / 5 % 4]);
        }
        std::mt19937 random(1);
        for (const std::string& name : names_) {
            classes_.push_back(std::make_unique<GMetaClass>(nullptr, kType, name.c_str(), nullptr,
                                                            nullptr, nullptr));
            peer_.emplace(name, classes_.back().get());
        }
        for (const std::string& name : names_)
            asked_.push_back(name);
        std::shuffle(asked_.begin(), asked_.end(), random);
    }

    [[nodiscard]] std::size_t look_up_ours() const
    {
        std::size_t found = 0;
        for (const std::string& name : asked_)
            found += GMetaClass::FindByName(name.c_str()) != nullptr;
        return found;
    }
    [[nodiscard]] std::size_t look_up_peer() const
    {
        std::size_t found = 0;
        for (const std::string& name : asked_)
            found += peer_.find(std::string_view(name.c_str())) != peer_.end();
        return found;
    }

private:
    std::vector<std::string> names_;
    std::vector<std::string> asked_;
    std::vector<std::unique_ptr<GMetaClass>> classes_;
    std::unordered_map<std::string_view, const GMetaClass*> peer_;
};

const Names& names()
{
    static const Names all;
    return all;
}

void ours(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(names().look_up_ours());
    state.SetItemsProcessed(state.iterations() * kClasses);
}
void peer(benchmark::State& state)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(names().look_up_peer());
    state.SetItemsProcessed(state.iterations() * kClasses);
}
BENCHMARK(ours)->Name("FindByName");
BENCHMARK(peer)->Name("unordered_map<string_view>");

/// Processor time of this thread, which other programs on the machine disturb least.
double now_seconds()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Work>
double seconds(Work work)
{
    const double start = now_seconds();
    for (int round = 0; round < kRounds; ++round)
        benchmark::DoNotOptimize(work());
    return now_seconds() - start;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();

    std::vector<double> of_ours;
    std::vector<double> of_peer;
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {  // interleaved
        of_ours.push_back(seconds([] { return names().look_up_ours(); }));
        of_peer.push_back(seconds([] { return names().look_up_peer(); }));
    }
    const double per_look_up = 1e9 / (double{kClasses} * kRounds);
    std::printf("class by name: %.1f ns, unordered_map %.1f ns (medians of %d)\n",
                median(of_ours) * per_look_up, median(of_peer) * per_look_up, kRepetitions);
    std::printf("ratio classes %.2f (goal 1.7)\n", median(of_peer) / median(of_ours));
    return 0;
}
