// bench_store [OBJECTS] [FOLDER]: the library file beside LMDB and SQLite (WAL, full synchronous),
// which do the same work in the same run. Each object is a mediator of 80 bytes, an icon of 4 KiB
// and a content of 16 KiB that do not compress; objects arrive round-robin in OBJECTS / 100
// directories (at least 10). Prints microseconds and the ratio of ours to each peer. Caches are
// warm.
#include "StorePeers.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kPeers = 3;
constexpr std::array<const char*, kPeers> kNames = {"library", "lmdb", "sqlite"};
constexpr int kDurable = 300;
constexpr int kMoved = 1000;

struct Workload {
    int objects;
    int directories;
    std::string noise;

    [[nodiscard]] std::string directory(int object) const
    {
        return "directory " + std::to_string(object % directories);
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

double median(int times, const std::function<double()>& measure)
{
    std::vector<double> values;
    for (int i = 0; i < times; ++i)
        values.push_back(measure());
    std::nth_element(values.begin(), values.begin() + times / 2, values.end());
    return values[static_cast<std::size_t>(times / 2)];
}

void print(const char* phase, const std::array<double, kPeers>& figures)
{
    std::printf("%-34s %12.1f %12.1f %12.1f %8.2f %8.2f\n", phase, figures[0], figures[1],
                figures[2], figures[0] / figures[1], figures[0] / figures[2]);
    std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments)
{
    Workload work;
    work.objects = count > 1 ? std::max(2000, std::atoi(arguments[1])) : 10'000;
    work.directories = 100;
    const std::filesystem::path folder = count > 2 ? arguments[2] : "/tmp/zmr_bench_store";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::mt19937 random(1);
    work.noise.resize(1u << 20);
    for (char& byte : work.noise)
        byte = static_cast<char>(random());

    std::array<std::unique_ptr<StorePeer>, kPeers> peers = {make_library_peer(), make_lmdb_peer(),
                                                            make_sqlite_peer()};
    std::array<std::string, kPeers> files;
    for (std::size_t i = 0; i < kPeers; ++i)
        files[i] = (folder / kNames[i]).string();
    const auto phase = [&](const char* name,
                           const std::function<double(StorePeer&, const std::string&)>& measure) {
        std::array<double, kPeers> figures{};
        for (std::size_t i = 0; i < kPeers; ++i)
            figures[i] = in_fresh_process([&] { return measure(*peers[i], files[i]); });
        print(name, figures);
    };
    std::printf("%d objects in %d directories; microseconds, last: library / peer\n%-34s",
                work.objects, work.directories, "");
    std::printf(" %12s %12s %12s %8s %8s\n", kNames[0], kNames[1], kNames[2], "/lmdb", "/sqlite");

    phase("bulk create, one commit", [&](StorePeer& peer, const std::string& file) {
        return microseconds([&] {
            peer.open(file, true);
            peer.begin();
            for (int i = 0; i < work.objects; ++i)
                work.put(peer, i, 0);
            peer.commit();
            peer.close();
        });
    });
    const double payload = work.objects * (80.0 + 4096.0 + 16384.0);
    phase("file size / payload, x 1000", [&](StorePeer&, const std::string& file) {
        return static_cast<double>(std::filesystem::file_size(file)) / payload * 1000;
    });
    phase("open", [&](StorePeer& peer, const std::string& file) {
        return median(51, [&] {
            return in_fresh_process([&] {
                const double time = microseconds([&] { peer.open(file, false); });
                peer.close();
                return time;
            });
        });
    });
    phase("open + list one directory", [&](StorePeer& peer, const std::string& file) {
        return median(51, [&] {
            return in_fresh_process([&] {
                const double time = microseconds([&] {
                    peer.open(file, false);
                    if (peer.list(work.directory(3), "mediator") == 0)
                        std::exit(1);
                });
                peer.close();
                return time;
            });
        });
    });
    phase("open + list all", [&](StorePeer& peer, const std::string& file) {
        return median(7, [&] {
            return in_fresh_process([&] {
                const double time = microseconds([&] {
                    peer.open(file, false);
                    for (int i = 0; i < work.directories; ++i)
                        if (peer.list(work.directory(i), "mediator") == 0)
                            std::exit(1);
                });
                peer.close();
                return time;
            });
        });
    });
    for (const auto& [type, size, times] : {std::tuple{"icon", std::size_t{4096}, 10'000},
                                            std::tuple{"object", std::size_t{16384}, 1000}})
        phase(type, [&, type = type, size = size, times = times](StorePeer& peer,
                                                                 const std::string& file) {
            peer.open(file, false);
            std::mt19937 order(5);
            std::string bytes;
            const auto read = [&] {
                for (int i = 0; i < times; ++i) {
                    const int object =
                        static_cast<int>(order() % static_cast<unsigned>(work.objects));
                    if (peer.get(work.directory(object), Workload::name(object), type, bytes) !=
                        size)
                        std::exit(1);
                }
            };
            read();
            const double time = microseconds(read) / times;
            peer.close();
            return time;
        });
    phase("create, durable each", [&](StorePeer& peer, const std::string& file) {
        peer.open(file, true);
        int next = work.objects;
        const double time = median(kDurable, [&] {
            return microseconds([&] {
                peer.begin();
                work.put(peer, next++, 0);
                peer.commit();
            });
        });
        peer.close();
        return time;
    });
    phase("replace object, durable each", [&](StorePeer& peer, const std::string& file) {
        peer.open(file, true);
        int next = 0;
        const double time = median(kDurable, [&] {
            const int object = next++ * 31 % work.objects;
            return microseconds([&] {
                peer.begin();
                peer.put(work.directory(object), Workload::name(object), "object",
                         work.bytes(object + 1, 16384));
                peer.commit();
            });
        });
        peer.close();
        return time;
    });
    phase("rename 1000, one commit", [&](StorePeer& peer, const std::string& file) {
        peer.open(file, true);
        const double time = microseconds([&] {
            peer.begin();
            for (int i = 0; i < kMoved; ++i)
                for (const char* type : {"mediator", "icon", "object"})
                    peer.rename(work.directory(i), Workload::name(i),
                                "renamed " + std::to_string(i), type);
            peer.commit();
        });
        peer.close();
        return time;
    });
    phase("remove 1000, one commit", [&](StorePeer& peer, const std::string& file) {
        peer.open(file, true);
        const double time = microseconds([&] {
            peer.begin();
            for (int i = 0; i < kMoved; ++i)
                for (const char* type : {"mediator", "icon", "object"})
                    peer.remove(work.directory(i), "renamed " + std::to_string(i), type);
            peer.commit();
        });
        peer.close();
        return time;
    });
    phase("compact after removing half", [&](StorePeer& peer, const std::string& file) {
        peer.open(file, true);
        peer.begin();
        for (int i = kMoved; i < work.objects; i += 2)
            for (const char* type : {"mediator", "icon", "object"})
                peer.remove(work.directory(i), Workload::name(i), type);
        peer.commit();
        const double time = microseconds([&] { peer.compact(file); });
        peer.close();
        return time;
    });
    const double left = (work.objects - kMoved) / 2 + kDurable;
    phase("file size / what lives, x 1000", [&](StorePeer&, const std::string& file) {
        return static_cast<double>(std::filesystem::file_size(file)) /
               (left * (80.0 + 4096.0 + 16384.0)) * 1000;
    });
    std::filesystem::remove_all(folder);
}
