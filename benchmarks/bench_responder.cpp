// Responders beside Qt 6 and plain code that does the same work. Contestants take turns within each
// repetition, so that a noisy machine disturbs all of them; what is printed are medians of
// processor time and their ratios. Each row has a process of its own, so that no row finds the heap
// as another one left it.
//   bench_responder [NAME]     only the rows whose name holds NAME

#include "ResponderPeers.h"
#include "foundation/OwnedObject.h"
#include "responder/GBehaviour.h"
#include "responder/GResponder_Iterators.h"

#include <malloc.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

long g_handled = 0;

std::vector<int> places_of(const TreeShape& shape)
{
    std::vector<int> places(static_cast<std::size_t>(shape.nodes));
    for (int number = 0; number < shape.nodes; ++number)
        places[static_cast<std::size_t>(number)] = number;
    if (shape.shuffled)
        std::shuffle(places.begin(), places.end(), std::mt19937(5));
    return places;
}

std::vector<int> removal_order(int count)
{
    return places_of({count, 1, true});
}

namespace {

constexpr auto kKind = static_cast<GEvent::GEventType>(0x10);
constexpr int kRepetitions = 15;
const char* g_wanted = "";
bool g_failed = false;

double now_ns()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

double median(std::vector<double>& values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double timed(const Work& work, int turns)
{
    const double start = now_ns();
    for (int turn = 0; turn < turns; ++turn)
        work();
    return now_ns() - start;
}

/// An untimed turn comes first: each contestant finds the caches as it leaves them itself.
double timed_warm(const Work& work, int turns)
{
    work();
    return timed(work, turns);
}

/// What a peer's time divided by ours, or ours by the peer's, should reach.
enum class Goal { AtLeastTimesFaster, AtMostTimesSlower };
struct Contestant {
    const char* name;
    Work work;
    Goal goal;
    double bound;
};

bool is_wanted(const char* row)
{
    return std::strstr(row, g_wanted) != nullptr;
}

/// Runs `rows`, which print themselves, in a new process.
template <class Rows>
void in_new_process(Rows rows)
{
    std::fflush(stdout);
    const pid_t process = ::fork();
    if (process == 0) {
        rows();
        std::fflush(stdout);
        ::_exit(g_handled > 0 ? 0 : 1);
    }
    int status = -1;
    if (process < 0 || ::waitpid(process, &status, 0) != process || status != 0)
        g_failed = true;
}

void print_ratio(double ours, double theirs, const Contestant& peer)
{
    const bool faster = peer.goal == Goal::AtLeastTimesFaster;
    const double ratio = faster ? theirs / ours : ours / theirs;
    const bool reached = faster ? ratio >= peer.bound : ratio <= peer.bound;
    std::printf("; %s %.2f, %s %.2f (goal %s%.2g)%s", peer.name, theirs,
                faster ? "ratio" : "ours is times", ratio, faster ? "" : "<= ", peer.bound,
                reached ? "" : " MISSED");
}

/// One row: `per` units of work in a call.
void compare(const char* row, const Work& ours, const std::vector<Contestant>& peers, double per)
{
    // Enough turns that a measurement takes some milliseconds.
    ours();
    const double once = std::max(timed(ours, 1), 50.0);
    const int turns = static_cast<int>(std::clamp(3e6 / once, 1.0, 1e6));
    std::vector<double> own;
    std::vector<std::vector<double>> others(peers.size());
    for (const Contestant& peer : peers)
        peer.work();
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {
        own.push_back(timed_warm(ours, turns) / turns / per);
        for (std::size_t number = 0; number < peers.size(); ++number)
            others[number].push_back(timed_warm(peers[number].work, turns) / turns / per);
    }
    const double median_own = median(own);
    std::printf("%-34s %.2f ns", row, median_own);
    for (std::size_t number = 0; number < peers.size(); ++number)
        print_ratio(median_own, median(others[number]), peers[number]);
    std::printf("\n");
}

struct HalfTimes {
    double first = 0;
    double second = 0;
};

/// In a new process, whose heap holds what this work leaves there and nothing of the other
/// contestant's: that decides the place of what is built, and so its times.
HalfTimes time_halves(const Halves& work, int turns)
{
    int ends[2];
    if (::pipe(ends) != 0)
        std::abort();
    const pid_t process = ::fork();
    if (process == 0) {
        HalfTimes sums;
        for (int turn = -2; turn < turns; ++turn) {
            const double first = timed(work.first, 1);
            const double second = timed(work.second, 1);
            work.clean_up();
            if (turn < 0)
                continue;  // the heap grows to its size
            sums.first += first / turns;
            sums.second += second / turns;
        }
        ::_exit(::write(ends[1], &sums, sizeof sums) == sizeof sums ? 0 : 1);
    }
    HalfTimes sums;
    ::close(ends[1]);
    if (process < 0 || ::read(ends[0], &sums, sizeof sums) != sizeof sums ||
        ::waitpid(process, nullptr, 0) != process)
        std::abort();
    ::close(ends[0]);
    return sums;
}

/// Two rows, for work that comes in two halves.
void compare_halves(const char* row1, const char* row2, const Halves& ours, const Halves& peer,
                    double per, double goal1, double goal2, int turns)
{
    std::vector<double> times[4];
    for (int repetition = 0; repetition < kRepetitions; ++repetition) {
        const HalfTimes own = time_halves(ours, turns);
        const HalfTimes theirs = time_halves(peer, turns);
        times[0].push_back(own.first / per);
        times[1].push_back(own.second / per);
        times[2].push_back(theirs.first / per);
        times[3].push_back(theirs.second / per);
    }
    const Contestant first = {"Qt", {}, Goal::AtLeastTimesFaster, goal1};
    const Contestant second = {"Qt", {}, Goal::AtLeastTimesFaster, goal2};
    double medians[4];
    for (int number = 0; number < 4; ++number)
        medians[number] = median(times[number]);
    std::printf("%-34s %.2f ns", row1, medians[0]);
    print_ratio(medians[0], medians[2], first);
    std::printf("\n%-34s %.2f ns", row2, medians[1]);
    print_ratio(medians[1], medians[3], second);
    std::printf("\n");
    ++g_handled;
}

class Counting final : public GResponder {
public:
    void handle_event(GEvent& event) override
    {
        ++g_handled;
        GResponder::handle_event(event);
    }
};

/// Handles what it asked to be told.
class Receiver final : public GResponder {
public:
    void handle_event(GEvent&) override { ++g_handled; }
};

class CountingBehaviour final : public GBehaviour {
public:
    void handle_event(GEvent&) override { ++g_handled; }
};

template <class T>
std::shared_ptr<T> make_tree(const TreeShape& shape)
{
    std::vector<T*> allocated;
    for (int number = 0; number < shape.nodes; ++number)
        allocated.push_back(new T);
    std::vector<T*> nodes;
    for (const int place : places_of(shape))
        nodes.push_back(allocated[static_cast<std::size_t>(place)]);
    for (int number = 1; number < shape.nodes; ++number)
        nodes[static_cast<std::size_t>(parent_of(number, shape.fan))]->insert_before(
            nodes[static_cast<std::size_t>(number)], nullptr);
    return std::shared_ptr<T>(nodes.front(), zmr::ObjectDestroyer());
}

void count(const GResponder& responder)
{
    ++g_handled;
    for (GResponder_Iterator child(responder); child(); ++child)
        count(*child.object());
}

void run_event(const char* name, int filters, double goal)
{
    const auto responder = std::make_shared<Counting>();
    for (int number = 0; number < filters; ++number)
        responder->attach(new CountingBehaviour);
    const auto send = [responder] {
        for (int turn = 0; turn < 1000; ++turn) {
            GEvent event;
            event.what = kKind;
            GResponder::Message(responder.get(), event);
        }
    };
    const std::size_t before = ::mallinfo2().uordblks;
    send();
    if (::mallinfo2().uordblks != before)
        std::printf("an event allocates\n");
    compare(name, send, {{"Qt", qt::event(filters), Goal::AtLeastTimesFaster, goal}}, 1000);
}

void run_events()
{
    constexpr double goals[] = {3, 2.5, 2};
    constexpr int filters[] = {0, 1, 4};
    for (int row = 0; row < 3; ++row) {
        char name[64];
        std::snprintf(name, sizeof name, "event, %d behaviours", filters[row]);
        if (is_wanted(name))
            in_new_process([&] { run_event(name, filters[row], goals[row]); });
    }
}

void run_broadcast(const char* name, const TreeShape& shape, double qt_goal, double plain_goal)
{
    const auto root = make_tree<Counting>(shape);
    const auto send = [root] {
        GEvent event;
        event.what = kKind;
        GResponder::Message(root.get(), event);
    };
    compare(name, send,
            {{"Qt", qt::broadcast(shape), Goal::AtLeastTimesFaster, qt_goal},
             {"recursion", plain::broadcast(shape), Goal::AtMostTimesSlower, plain_goal}},
            shape.nodes);
}

void run_broadcasts()
{
    const auto run = [](const TreeShape& shape, double qt_goal, double plain_goal) {
        char name[64];
        std::snprintf(name, sizeof name, "broadcast, %d by %d%s", shape.nodes, shape.fan,
                      shape.shuffled ? ", shuffled" : "");
        if (is_wanted(name))
            in_new_process([&] { run_broadcast(name, shape, qt_goal, plain_goal); });
    };
    for (const int fan : {4, 16, 100}) {
        run({1000, fan, false}, 4, 2);
        run({100'000, fan, false}, 3, 1.4);
    }
    run({100'000, 16, true}, 4, 1.5);
}

void run_notification()
{
    constexpr int kReceivers = 1000;
    const auto sender = std::make_shared<GResponder>();
    const auto receivers = std::make_shared<std::vector<std::unique_ptr<Receiver>>>();
    for (int number = 0; number < kReceivers; ++number) {
        receivers->push_back(std::make_unique<Receiver>());
        sender->notify_when_modified(receivers->back().get(), kKind, 1);
    }
    compare(
        "notify 1000 receivers", [sender, receivers] { sender->object_modified(); },
        {{"Qt", qt::notify(kReceivers), Goal::AtLeastTimesFaster, 6}}, kReceivers);
}

Halves own_children(int owners, int children)
{
    auto parents = std::make_shared<std::vector<std::unique_ptr<GResponder>>>();
    auto all = std::make_shared<std::vector<std::unique_ptr<GResponder>>>();
    for (int owner = 0; owner < owners; ++owner)
        parents->push_back(std::make_unique<GResponder>());
    for (int child = 0; child < owners * children; ++child)
        all->push_back(std::make_unique<GResponder>());
    const auto append = [=] {
        std::size_t next = 0;
        for (const auto& parent : *parents) {
            for (int child = 0; child < children; ++child)
                parent->insert_before((*all)[next++].get(), nullptr);
        }
    };
    const auto remove = [=, order = removal_order(children)] {
        for (int owner = 0; owner < owners; ++owner) {
            for (const int child : order)
                (*parents)[static_cast<std::size_t>(owner)]->remove(
                    (*all)[static_cast<std::size_t>(owner * children + child)].get());
        }
    };
    return {append, remove, [] {}};
}

void run_children()
{
    for (const int children : {4, 100, 10'000}) {
        char append[64];
        char remove[64];
        std::snprintf(append, sizeof append, "append, %d children", children);
        std::snprintf(remove, sizeof remove, "remove, %d children", children);
        if (!is_wanted(append) && !is_wanted(remove))
            continue;
        const int owners = 10'000 / children;
        in_new_process([&] {
            compare_halves(append, remove, own_children(owners, children),
                           qt::children(owners, children), 10'000, 6, children < 10'000 ? 6 : 1,
                           10);
        });
    }
}

void run_walks()
{
    for (const bool shuffled : {false, true}) {
        const char* name = shuffled ? "walk, 100000 by 16, shuffled" : "walk, 100000 by 16";
        const TreeShape shape = {100'000, 16, shuffled};
        if (!is_wanted(name))
            continue;
        in_new_process([&] {
            compare(
                name, [root = make_tree<GResponder>(shape)] { count(*root); },
                {{"Qt", qt::walk(shape), Goal::AtLeastTimesFaster, 2.5},
                 {"vectors", plain::walk(shape), Goal::AtMostTimesSlower, 1.1}},
                shape.nodes);
        });
    }
}

void run_build_and_teardown()
{
    const TreeShape shape = {100'000, 16, false};
    auto root = std::make_shared<GResponder*>(nullptr);
    const auto build = [=] {
        std::vector<GResponder*> nodes = {new GResponder};
        for (int number = 1; number < shape.nodes; ++number) {
            nodes.push_back(new GResponder);
            nodes[static_cast<std::size_t>(parent_of(number, shape.fan))]->insert_before(
                nodes.back(), nullptr);
        }
        *root = nodes.front();
    };
    compare_halves("build, 100000 by 16", "teardown, 100000 by 16",
                   {build, [root] { GStreamable::Destroy(*root); }, [] {}},
                   qt::build_and_end(shape), shape.nodes, 2.5, 3.5, 3);
}

void run_states()
{
    for (const int nodes : {1000, 10'000}) {
        char name[64];
        std::snprintf(name, sizeof name, "state bit, %d by 10", nodes);
        if (!is_wanted(name))
            continue;
        const TreeShape shape = {nodes, 10, false};
        in_new_process([&] {
            const auto set = [root = make_tree<GResponder>(shape), on = false]() mutable {
                on = !on;
                root->set_state(GResponder::state_disabled, on ? 1 : 0);
                ++g_handled;
            };
            compare(name, set,
                    {{"QWidget", qt::state(shape), Goal::AtLeastTimesFaster, 20},
                     {"recursion", plain::state(shape), Goal::AtMostTimesSlower, 2}},
                    nodes);
        });
    }
}

void run_command_reads(const char* name, unsigned long step)
{
    CommandIds ids;
    for (unsigned long number = 0; number < 1000; ++number) {
        ids.ids.push_back(number * step);
        GResponder::CheckCommand(number * step, 1);
    }
    const auto read = [ids = ids.ids] {
        long enabled = 0;
        for (const unsigned long id : ids)
            enabled += GResponder::CommandEnabled(id) ? 1 : 0;
        g_handled += enabled;
    };
    compare(name, read,
            {{"QAction", qt::commands(ids), Goal::AtLeastTimesFaster, 2.5},
             {"packed fields", plain::commands(ids), Goal::AtMostTimesSlower, 1.1}},
            1000);
}

void run_commands()
{
    for (const unsigned long step : {1UL, 97UL}) {
        const char* name = step == 1 ? "1000 command reads, dense" : "1000 command reads, sparse";
        if (is_wanted(name))
            in_new_process([&] { run_command_reads(name, step); });
    }
}

void run_idle_pass()
{
    const auto pass = [] {
        for (int turn = 0; turn < 1000; ++turn)
            GIdler::CallAllIdleFunctions();
    };
    compare("idle pass without idlers", pass, {}, 1000);
    ++g_handled;
}

void compare_sizes()
{
    constexpr std::size_t kObjects = 1000;
    // They come from a pool: so far apart do most of them stand.
    std::vector<std::unique_ptr<GResponder>> objects(kObjects);
    std::vector<std::uintptr_t> addresses;
    for (auto& object : objects) {
        object = std::make_unique<GResponder>();
        addresses.push_back(reinterpret_cast<std::uintptr_t>(object.get()));
    }
    std::sort(addresses.begin(), addresses.end());
    std::vector<std::uintptr_t> distances;
    for (std::size_t number = 1; number < kObjects; ++number)
        distances.push_back(addresses[number] - addresses[number - 1]);
    std::sort(distances.begin(), distances.end());
    const std::size_t own = distances[distances.size() / 2];
    const std::size_t theirs = qt::object_bytes();
    std::printf("%-34s %zu; QObject %zu%s\n", "bytes of a bare object", own, theirs,
                own <= theirs ? "" : " MISSED");
    ++g_handled;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc > 1 && argv[1][0] != '-')  // options are Google Benchmark's
        g_wanted = argv[1];
    // Memory that was freed stays with the process: nobody pays for getting it anew.
    ::mallopt(M_TRIM_THRESHOLD, 1 << 30);
    ::mallopt(M_MMAP_THRESHOLD, 1 << 30);
    qt::start(argc, argv);
    run_events();
    run_broadcasts();
    if (is_wanted("notify 1000 receivers"))
        in_new_process(run_notification);
    run_children();
    run_walks();
    if (is_wanted("build, 100000 by 16") || is_wanted("teardown, 100000 by 16"))
        in_new_process(run_build_and_teardown);
    run_states();
    run_commands();
    if (is_wanted("idle pass without idlers"))
        in_new_process(run_idle_pass);
    if (is_wanted("bytes of a bare object"))
        in_new_process(compare_sizes);
    return g_failed ? 1 : 0;
}
