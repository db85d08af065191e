// bench_store [OBJECTS] [FOLDER]: the library file beside LMDB and SQLite, each tuned, which do the
// same work in the same run. Each object is a mediator of 80 bytes, an icon of 4 KiB and a content
// of 16 KiB that do not compress; objects arrive round-robin in 100 directories. Each figure is the
// median of its repetitions; each of those runs in a process of its own, the stores taking turns.
// Microseconds, and the ratio of ours to each peer. Caches are warm.
#include "StorePeers.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace {

constexpr std::size_t kPeers = 3;
constexpr std::array<const char*, kPeers> kNames = {"library", "lmdb", "sqlite"};
constexpr int kDirectories = 100;
constexpr int kDurable = 300;  // in each repetition
constexpr int kMoved = 1000;

struct Workload {
    int objects;
    std::string noise;

    [[nodiscard]] static std::string directory(int object)
    {
        return "directory " + std::to_string(object % kDirectories);
    }
    [[nodiscard]] static std::string name(int object) { return "object " + std::to_string(object); }
    [[nodiscard]] std::string_view bytes(int object, std::size_t size) const
    {
        const auto at = static_cast<std::size_t>(object) * 7919 % (noise.size() - size);
        return std::string_view(noise).substr(at, size);
    }
    void put(StorePeer& peer, int object, int version) const
    {
        const std::string where = directory(object);
        const std::string what = name(object);
        peer.put(where, what, "mediator", bytes(object + version, 80));
        peer.put(where, what, "icon", bytes(object + version, 4096));
        peer.put(where, what, "object", bytes(object + version, 16384));
    }
};

double microseconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
        .count();
}

/// What `measure` gives in a process of its own.
double in_fresh_process(const std::function<double()>& measure)
{
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0)
        std::exit(1);
    const pid_t child = ::fork();
    if (child == 0) {
        const double figure = measure();
        ::_exit(::write(pipe[1], &figure, sizeof figure) == sizeof figure ? 0 : 1);
    }
    ::close(pipe[1]);
    double figure = 0;
    if (child < 0 || ::read(pipe[0], &figure, sizeof figure) != sizeof figure)
        std::exit(1);
    ::close(pipe[0]);
    ::waitpid(child, nullptr, 0);
    return figure;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The largest memory that this process held, its mapped files included, in MiB.
double peak_memory()
{
    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

/// The stores in their files, measured one beside the other.
class Contest {
public:
    using Measure = std::function<double(StorePeer&, const std::string& file, int repetition)>;

    explicit Contest(const std::filesystem::path& folder)
    {
        for (std::size_t i = 0; i < kPeers; ++i)
            files_[i] = (folder / kNames[i]).string();
    }
    /// Does the work once in each store, so that its pages are in the system's memory.
    void warm_up(const Measure& measure)
    {
        for (std::size_t peer = 0; peer < kPeers; ++peer)
            static_cast<void>(
                in_fresh_process([&] { return measure(*peers_[peer], files_[peer], 0); }));
    }
    void phase(const char* name, int repetitions, const Measure& measure)
    {
        // What phases before have left for the disk must not be paid by this one.
        ::sync();
        std::array<std::vector<double>, kPeers> values;
        for (int i = 0; i < repetitions; ++i)
            for (std::size_t peer = 0; peer < kPeers; ++peer)
                values[peer].push_back(
                    in_fresh_process([&] { return measure(*peers_[peer], files_[peer], i); }));
        std::array<double, kPeers> figures{};
        for (std::size_t peer = 0; peer < kPeers; ++peer)
            figures[peer] = median(values[peer]);
        std::printf("%-34s %12.1f %12.1f %12.1f %8.2f %8.2f\n", name, figures[0], figures[1],
                    figures[2], figures[0] / figures[1], figures[0] / figures[2]);
        std::fflush(stdout);
    }
    void head(int objects) const
    {
        std::printf("%d objects in %d directories; microseconds, last: library / peer\n%-34s",
                    objects, kDirectories, "");
        std::printf(" %12s %12s %12s %8s %8s\n", kNames[0], kNames[1], kNames[2], "/lmdb",
                    "/sqlite");
    }

private:
    std::array<std::unique_ptr<StorePeer>, kPeers> peers_ = {make_library_peer(), make_lmdb_peer(),
                                                             make_sqlite_peer()};
    std::array<std::string, kPeers> files_;
};

void remove_store(const std::string& file)
{
    for (const char* end : {"", "-lock", "-wal", "-shm"})
        std::filesystem::remove(file + end);
}

void create_all(Contest& contest, const Workload& work)
{
    const auto create = [&](StorePeer& peer, const std::string& file) {
        remove_store(file);
        return microseconds([&] {
            peer.open(file, true);
            peer.begin();
            for (int i = 0; i < work.objects; ++i)
                work.put(peer, i, 0);
            peer.commit();
            peer.close();
        });
    };
    contest.phase(
        "bulk create, one commit", work.objects > 20'000 ? 1 : 5,
        [&](StorePeer& peer, const std::string& file, int) { return create(peer, file); });
    contest.phase("  its peak memory, MiB", 1, [&](StorePeer& peer, const std::string& file, int) {
        create(peer, file);
        return peak_memory();
    });
    const double payload = work.objects * (80.0 + 4096.0 + 16384.0);
    contest.phase("  file size / payload, x 1000", 1,
                  [&](StorePeer&, const std::string& file, int) {
                      return static_cast<double>(std::filesystem::file_size(file)) / payload * 1000;
                  });
}

void list_and_read(Contest& contest, const Workload& work)
{
    const auto list = [](StorePeer& peer, int directory) {
        if (peer.list(Workload::directory(directory), "mediator") == 0)
            std::exit(1);
    };
    const auto list_all = [&](StorePeer& peer, const std::string& file, int) {
        return microseconds([&] {
            peer.open(file, false);
            for (int i = 0; i < kDirectories; ++i)
                list(peer, i);
        });
    };
    contest.warm_up(list_all);
    contest.phase("open", 101, [](StorePeer& peer, const std::string& file, int) {
        return microseconds([&] { peer.open(file, false); });
    });
    contest.phase("open + list one directory", 101,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      return microseconds([&] {
                          peer.open(file, false);
                          list(peer, repetition % kDirectories);
                      });
                  });
    // The first calls of a process pay for its pages of code; here another store has paid.
    contest.phase("  the second store of a process", 101,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      const std::string other = file + ".other";
                      remove_store(other);
                      peer.open(other, true);
                      peer.begin();
                      for (int i = 0; i < kDirectories; ++i)
                          work.put(peer, i, 0);
                      peer.commit();
                      peer.close();
                      peer.open(other, false);
                      list(peer, repetition % kDirectories);
                      peer.close();
                      const double time = microseconds([&] {
                          peer.open(file, false);
                          list(peer, repetition % kDirectories);
                      });
                      peer.close();
                      remove_store(other);
                      return time;
                  });
    contest.phase("open + list all", 15, list_all);
    contest.phase("  its peak memory, MiB", 3,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      static_cast<void>(list_all(peer, file, repetition));
                      return peak_memory();
                  });
    for (const auto& [type, size, times] : {std::tuple{"icon", std::size_t{4096}, 10'000},
                                            std::tuple{"object", std::size_t{16384}, 1000}})
        contest.phase(type, 5,
                      [&, type = type, size = size, times = times](
                          StorePeer& peer, const std::string& file, int repetition) {
                          peer.open(file, false);
                          std::mt19937 order(static_cast<unsigned>(repetition));
                          std::string bytes;
                          const auto read = [&] {
                              for (int i = 0; i < times; ++i) {
                                  const auto object = static_cast<int>(
                                      order() % static_cast<unsigned>(work.objects));
                                  if (peer.get(Workload::directory(object), Workload::name(object),
                                               type, bytes) != size)
                                      std::exit(1);
                              }
                          };
                          read();
                          const double time = microseconds(read) / times;
                          peer.close();
                          return time;
                      });
}

void commit_one_by_one(Contest& contest, const Workload& work)
{
    constexpr int kRepetitions = 5;
    contest.phase("create, durable each", kRepetitions,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      peer.open(file, true);
                      std::vector<double> times;
                      for (int i = 0; i < kDurable; ++i)
                          times.push_back(microseconds([&] {
                              peer.begin();
                              work.put(peer, work.objects + repetition * kDurable + i, 0);
                              peer.commit();
                          }));
                      peer.close();
                      return median(times);
                  });
    contest.phase("replace object, durable each", kRepetitions,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      peer.open(file, true);
                      std::vector<double> times;
                      for (int i = 0; i < kDurable; ++i) {
                          const int object = (repetition * kDurable + i) * 31 % work.objects;
                          times.push_back(microseconds([&] {
                              peer.begin();
                              peer.put(Workload::directory(object), Workload::name(object),
                                       "object", work.bytes(object + 1 + repetition, 16384));
                              peer.commit();
                          }));
                      }
                      peer.close();
                      return median(times);
                  });
}

void rename_remove_compact(Contest& contest, const Workload& work)
{
    const int repetitions = std::clamp(work.objects / kMoved / 2, 1, 3);
    const auto each_moved = [](int repetition, const std::function<void(int, const char*)>& visit) {
        for (int i = repetition * kMoved; i < (repetition + 1) * kMoved; ++i)
            for (const char* type : {"mediator", "icon", "object"})
                visit(i, type);
    };
    const auto new_name = [](int object) { return "renamed " + std::to_string(object); };
    contest.phase("rename 1000, one commit", repetitions,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      peer.open(file, true);
                      const double time = microseconds([&] {
                          peer.begin();
                          each_moved(repetition, [&](int i, const char* type) {
                              peer.rename(Workload::directory(i), Workload::name(i), new_name(i),
                                          type);
                          });
                          peer.commit();
                      });
                      peer.close();
                      return time;
                  });
    contest.phase("remove 1000, one commit", repetitions,
                  [&](StorePeer& peer, const std::string& file, int repetition) {
                      peer.open(file, true);
                      const double time = microseconds([&] {
                          peer.begin();
                          each_moved(repetition, [&](int i, const char* type) {
                              peer.remove(Workload::directory(i), new_name(i), type);
                          });
                          peer.commit();
                      });
                      peer.close();
                      return time;
                  });
    const int removed = repetitions * kMoved;
    contest.phase("compact after removing half", 1,
                  [&](StorePeer& peer, const std::string& file, int) {
                      peer.open(file, true);
                      peer.begin();
                      for (int i = removed; i < work.objects; i += 2)
                          for (const char* type : {"mediator", "icon", "object"})
                              peer.remove(Workload::directory(i), Workload::name(i), type);
                      peer.commit();
                      const double time = microseconds([&] { peer.compact(file); });
                      peer.close();
                      return time;
                  });
    constexpr int kCreated = 5 * kDurable;
    const double left = (work.objects - removed) / 2 + kCreated;
    contest.phase("  file size / what lives, x 1000", 1,
                  [&](StorePeer&, const std::string& file, int) {
                      return static_cast<double>(std::filesystem::file_size(file)) /
                             (left * (80.0 + 4096.0 + 16384.0)) * 1000;
                  });
}

}  // namespace

int main(int count, char** arguments)
{
    Workload work;
    work.objects = count > 1 ? std::max(2000, std::atoi(arguments[1])) : 10'000;
    const std::filesystem::path folder = count > 2 ? arguments[2] : "/tmp/zmr_bench_store";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::mt19937 random(1);
    work.noise.resize(1u << 20);
    for (char& byte : work.noise)
        byte = static_cast<char>(random());

    Contest contest(folder);
    contest.head(work.objects);
    create_all(contest, work);
    list_and_read(contest, work);
    commit_one_by_one(contest, work);
    rename_remove_compact(contest, work);
    std::filesystem::remove_all(folder);
}
