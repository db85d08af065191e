// What listing a library costs above the bare library file: time and private memory of
// get_contents, which makes a mediator of each entry. Each phase runs in a process of its own.
//   bench_odb [entries]      (100,000 unless given, in 100 directories)

#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ObjectDatabase.h"
#include "store/LibraryFile.h"
#include "tests/TemporaryFolder.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <string>

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

}  // namespace

int main(int count, char** arguments)
{
    const int entries = count > 1 ? std::atoi(arguments[1]) : 100'000;
    const TemporaryFolder folder;
    const std::string file = folder.file("library.odb");
    in_process_of_its_own([&] { fill(file, entries); });
    in_process_of_its_own([&] { list_bare(file); });
    in_process_of_its_own([&] { list_mediators(file); });
    return 0;
}
