// What listing a library costs above the bare library file: time and private memory of
// get_contents, which makes a mediator of each entry. What copying a library costs beside cp, and
// renaming a directory of which few entries are in memory. Each phase runs in a process of its own.
//   bench_odb [entries]      (100,000 unless given, in 100 directories)

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ObjectDatabase.h"
#include "store/LibraryFile.h"
#include "tests/TemporaryFolder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <string>
#include <vector>

class BenchModel : public GStreamable {
    G_DECLARE_CLASS(BenchModel)

public:
    void read(ipstream& in) override
    {
        static_cast<void>(in.readByte());
        GStreamable::read(in);
    }
    void write(opstream& out) override
    {
        out.writeByte(0);
        GStreamable::write(out);
    }
};

G_DEFINE_CLASS(BenchModel, GStreamable);

/// An object with a content that can't be compressed.
class BenchMesh : public GStreamable {
    G_DECLARE_CLASS(BenchMesh)

public:
    void read(ipstream& in) override
    {
        static_cast<void>(in.readByte());
        GStreamable::read(in);
        bytes.resize(in.readDWord());
        in.readBytes(bytes.data(), static_cast<long>(bytes.size()));
    }
    void write(opstream& out) override
    {
        out.writeByte(0);
        GStreamable::write(out);
        out.writeDWord(bytes.size());
        out.writeBytes(bytes.data(), static_cast<long>(bytes.size()));
    }

    std::string bytes;
};

G_DEFINE_CLASS(BenchMesh, GStreamable);

namespace {

constexpr int kDirectories = 100;

double private_mb()
{
    std::ifstream rollup("/proc/self/smaps_rollup");
    std::string word;
    long total_kb = 0;
    while (rollup >> word) {
        long kb = 0;
        if ((word == "Private_Clean:" || word == "Private_Dirty:") && rollup >> kb)
            total_kb += kb;
    }
    return static_cast<double>(total_kb) / 1024.0;
}

class Clock {
public:
    [[nodiscard]] double ms() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_)
            .count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void in_process_of_its_own(const std::function<void()>& phase)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        phase();
        std::fflush(stdout);
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0)
        std::exit(1);
}

GResourcePath directory_of(int entry)
{
    GResourcePath path;
    path += GString(("directory" + std::to_string(entry % kDirectories)).c_str());
    return path;
}

void fill(const std::string& file, int entries)
{
    const Clock clock;
    ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
    BenchModel model;
    for (int i = 0; i < entries; ++i) {
        const GResourceFullName name(directory_of(i),
                                     GString(("model" + std::to_string(i)).c_str()),
                                     ObjectDatabase::MediatorResourceType);
        database.append_object(&model, name, nullptr);
        database.unload(name);
    }
    const double appended_ms = clock.ms();
    database.close();
    std::printf("append %d objects: %.0f ms (%.1f us each), close %.0f ms, private %.1f MB\n",
                entries, appended_ms, appended_ms * 1000.0 / entries, clock.ms() - appended_ms,
                private_mb());
}

void list_bare(const std::string& file)
{
    const Clock clock;
    zmr::LibraryFile library;
    if (library.open(file, zmr::LibraryAccess::Read).status != zmr::LibraryOpenStatus::Ok)
        std::exit(1);
    std::size_t entries = 0;
    std::size_t bytes = 0;
    for (const std::string& directory : library.directories({})) {
        zmr::LibraryPath path;
        static_cast<void>(path.append(directory));
        const zmr::LibraryEntryList list =
            library.list(path, ObjectDatabase::MediatorResourceType.view());
        for (std::size_t i = 0; i < list.size(); ++i)
            bytes += list[i].bytes.size();
        entries += list.size();
    }
    std::printf("open + list bare: %zu entries, %zu bytes, %.2f ms, private %.1f MB\n", entries,
                bytes, clock.ms(), private_mb());
}

void list_mediators(const std::string& file)
{
    const double before_mb = private_mb();
    const Clock clock;
    ObjectDatabase database(file.c_str(), GIO::OpenRead);
    ODB_MediatorsArray contents;
    database.get_contents(GResourcePath(), contents, true);
    const double listed_ms = clock.ms();
    const double grown_mb = private_mb() - before_mb;
    std::printf(
        "open + get_contents: %ld mediators, %.1f ms (%.2f us each), private %.1f MB, "
        "%.0f bytes for each\n",
        contents.count, listed_ms, listed_ms * 1000.0 / static_cast<double>(contents.count),
        grown_mb, grown_mb * 1048576.0 / static_cast<double>(contents.count));
    const Clock closing;
    database.close();
    std::printf("close: %.1f ms\n", closing.ms());
}

double median(std::vector<double>& times_ms)
{
    std::sort(times_ms.begin(), times_ms.end());
    return times_ms[times_ms.size() / 2];
}

/// copy_to of a library of 10,000 entries, 200 MB, each time into a new file, beside cp of the
/// file with a sync and without one.
void copy_library(const TemporaryFolder& folder)
{
    constexpr int kCopied = 10'000;
    constexpr std::size_t kBytes = 20'000;
    constexpr int kRuns = 5;
    const std::string file = folder.file("source.odb");
    {
        ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
        std::mt19937_64 random(1);
        BenchMesh mesh;
        mesh.bytes.resize(kBytes);
        for (int i = 0; i < kCopied; ++i) {
            for (std::size_t at = 0; at + 8 <= kBytes; at += 8) {
                const std::uint64_t number = random();
                std::memcpy(mesh.bytes.data() + at, &number, 8);
            }
            database.append_object(&mesh, directory_of(i),
                                   GString(("mesh" + std::to_string(i)).c_str()), nullptr);
        }
    }
    std::vector<double> ours;
    std::vector<double> synced;
    std::vector<double> unsynced;
    for (int run = 0; run < kRuns; ++run) {
        const std::string copied = folder.file("copied.odb");
        const std::string plain = folder.file("plain.odb");
        {
            const Clock clock;
            ObjectDatabase source(file.c_str(), GIO::OpenRead);
            ObjectDatabase target(copied.c_str(), GIO::OpenReadWrite);
            source.copy_to(target);
            target.close();
            ours.push_back(clock.ms());
        }
        const std::string copy = "cp '" + file + "' '" + plain + "'";
        for (const bool with_sync : {true, false}) {
            std::filesystem::remove(plain);
            const Clock clock;
            if (std::system((with_sync ? copy + " && sync '" + plain + "'" : copy).c_str()) != 0)
                std::exit(1);
            (with_sync ? synced : unsynced).push_back(clock.ms());
        }
        std::filesystem::remove(copied);
        std::filesystem::remove(plain);
    }
    const double ours_ms = median(ours);
    const double synced_ms = median(synced);
    const double unsynced_ms = median(unsynced);
    std::printf(
        "copy_to of 10,000 entries, 200 MB: %.0f ms; cp and sync: %.0f ms, ratio %.2f; "
        "cp: %.0f ms, ratio %.2f\n",
        ours_ms, synced_ms, ours_ms / synced_ms, unsynced_ms, ours_ms / unsynced_ms);
}

/// Renames the directory that holds all, with `loaded` of its entries in memory.
void rename_directory(const std::string& file, int entries, int loaded)
{
    ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
    GResourcePath names[2];
    names[0] += GString("all");
    names[1] += GString("others");
    if (entries > 0) {
        BenchModel model;
        for (int i = 0; i < entries; ++i) {
            const GResourceFullName name(names[0], GString(("model" + std::to_string(i)).c_str()),
                                         ObjectDatabase::MediatorResourceType);
            database.append_object(&model, name, nullptr);
            database.unload(name);
        }
        return;
    }
    for (int i = 0; i < loaded; ++i)
        static_cast<void>(
            database.get_mediator(names[0], GString(("model" + std::to_string(i)).c_str())));
    constexpr int kRenames = 20;
    const Clock clock;
    for (int i = 0; i < kRenames; ++i)
        database.rename(GResourceFullName(names[i % 2], GString(), GString()),
                        GResourceFullName(names[1 - i % 2], GString(), GString()));
    std::printf("rename a directory of 100,000, %d in memory: %.3f ms\n", loaded,
                clock.ms() / kRenames);
}

}  // namespace

int main(int count, char** arguments)
{
    const int entries = count > 1 ? std::atoi(arguments[1]) : 100'000;
    const TemporaryFolder folder;
    const std::string file = folder.file("library.odb");
    in_process_of_its_own([&] { fill(file, entries); });
    in_process_of_its_own([&] { list_bare(file); });
    in_process_of_its_own([&] { list_mediators(file); });
    in_process_of_its_own([&] { copy_library(folder); });
    const std::string wide = folder.file("wide.odb");
    in_process_of_its_own([&] { rename_directory(wide, 100'000, 0); });
    for (const int loaded : {0, 1'000, 10'000, 100'000})
        in_process_of_its_own([&] { rename_directory(wide, 0, loaded); });
    return 0;
}
