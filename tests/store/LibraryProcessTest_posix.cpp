#include "KillRun_posix.h"
#include "LibraryModel.h"
#include "store/LibraryFile.h"
#include "store/LibraryFormat.h"
#include "store/ProcessIdentity.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

namespace zmr {
namespace {

constexpr LibraryTuning kSmall{8000, 100'000, 100'000};

/// A process that runs `body` and then waits to be killed; `wait_ready` returns when body is done.
class Child {
public:
    explicit Child(const std::function<int()>& body)
    {
        EXPECT_EQ(::pipe(pipe_.data()), 0);
        process_ = ::fork();
        if (process_ != 0)
            return;
        const char result = static_cast<char>(body());
        static_cast<void>(!::write(pipe_[1], &result, 1));
        for (;;)
            ::pause();
    }
    ~Child()
    {
        end();
        ::close(pipe_[0]);
        ::close(pipe_[1]);
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    int wait_ready()
    {
        char result = -1;
        return ::read(pipe_[0], &result, 1) == 1 ? result : -1;
    }
    void end()
    {
        if (process_ <= 0)
            return;
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
        process_ = -1;
    }

private:
    std::array<int, 2> pipe_{};
    pid_t process_ = -1;
};

/// Has both roots name a place further on as the one where the next commit begins.
bool move_tail(FileDevice& device, std::uint64_t tail)
{
    for (const std::uint64_t position : kSlotPosition) {
        std::string sector(kSectorBytes, '\0');
        std::size_t done = 0;
        RootSlot slot;
        if (device.read_at(position, sector.data(), sector.size(), done) ||
            !decode_slot(sector, slot))
            return false;
        if (slot.number == 0)
            continue;
        slot.tail = tail;
        sector = encode_slot(slot);
        if (device.write_at(position, sector.data(), sector.size()))
            return false;
    }
    return !device.set_length(tail);
}

bool put(LibraryFile& file, const std::string& name, const std::string& bytes)
{
    return file.put({}, name, "t", ContentKind::Raw, "", as_span(bytes));
}

TEST(LibraryProcess, KilledWriter_LosesNothingThatItAcknowledged)
{
    const TemporaryFolder folder;
    const KillFigures figures = run_kills(folder.file("kill.lib"), 150, 1);

    EXPECT_EQ(figures.failure, "");
    EXPECT_EQ(figures.kills, 150);
    EXPECT_GE(figures.commits, 75u);
}

TEST(LibraryProcess, SecondWritingProcess_IsToldWhoWrites_AndGetsTheLockWhenThatIsKilled)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("lock.lib");
    for (int i = 0; i < 10; ++i) {
        LibraryFile held;
        Child child([&] {
            if (held.open(name, LibraryAccess::Write, process_identity()).status !=
                LibraryOpenStatus::Ok)
                return 1;
            return put(held, "n", "x") && held.commit() ? 0 : 2;
        });
        ASSERT_EQ(child.wait_ready(), 0);
        LibraryFile file;
        const auto start = std::chrono::steady_clock::now();
        const LibraryOpenResult result = file.open(name, LibraryAccess::Write, "me");
        const auto waited = std::chrono::steady_clock::now() - start;
        EXPECT_EQ(result.status, LibraryOpenStatus::Locked);
        EXPECT_NE(result.text.find("in use by "), std::string::npos) << result.text;
        EXPECT_NE(result.text.find(", process "), std::string::npos) << result.text;
        EXPECT_LT(waited, std::chrono::milliseconds(200));
        child.end();
        EXPECT_EQ(file.open(name, LibraryAccess::Write, "me").status, LibraryOpenStatus::Ok);
    }
}

TEST(LibraryProcess, ReadingProcess_KeepsItsSnapshotFromAWriterThatPacks)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("read.lib");
    LibraryFile writer(FileSystemDevice::Real(), kSmall);
    ASSERT_EQ(writer.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    for (unsigned i = 0; i < 50; ++i)
        ASSERT_TRUE(put(writer, std::to_string(i), noise_bytes(3000, i)));
    ASSERT_TRUE(writer.commit());
    std::array<int, 2> go{};
    ASSERT_EQ(::pipe(go.data()), 0);
    LibraryFile reader(FileSystemDevice::Real(), kSmall);
    Child child([&] {
        if (reader.open(name, LibraryAccess::Read).status != LibraryOpenStatus::Ok)
            return 1;
        char byte = 1;
        static_cast<void>(!::write(go[1], &byte, 1));
        ::usleep(300'000);  // while the writer works
        for (unsigned i = 0; i < 50; ++i) {
            std::string bytes;
            if (!reader.get({}, std::to_string(i), "t", bytes) || bytes != noise_bytes(3000, i))
                return 2;
        }
        return 0;
    });
    char byte = 0;
    ASSERT_EQ(::read(go[0], &byte, 1), 1);
    for (int round = 0; round < 30; ++round) {
        for (unsigned i = 0; i < 50; ++i)
            ASSERT_TRUE(put(writer, std::to_string(i), noise_bytes(3000, 1000 + i)));
        ASSERT_TRUE(writer.commit());
    }
    ASSERT_TRUE(writer.pack());

    EXPECT_EQ(child.wait_ready(), 0);
    ::close(go[0]);
    ::close(go[1]);
}

TEST(LibraryProcess, FullDisk_IsAStickyErrorAndLeavesTheLastCommit)
{
    const TemporaryFolder folder;
    for (rlim_t limit = 20'000; limit < 400'000; limit += 4096 * 3) {
        const std::string name = folder.file("full" + std::to_string(limit));
        std::array<int, 2> pipe{};
        ASSERT_EQ(::pipe(pipe.data()), 0);
        const pid_t child = ::fork();
        if (child == 0) {
            ::signal(SIGXFSZ, SIG_IGN);
            const rlimit size{limit, limit};
            ::setrlimit(RLIMIT_FSIZE, &size);
            LibraryFile file(FileSystemDevice::Real(), kSmall);
            if (file.open(name, LibraryAccess::Write, "w").status != LibraryOpenStatus::Ok)
                ::_exit(2);
            unsigned done = 0;
            while (put(file, std::to_string(done), noise_bytes(4000, done)) && file.commit())
                ++done;
            static_cast<void>(!::write(pipe[1], &done, sizeof done));
            const bool full = file.error().kind == FileErrorKind::DiskFull;
            std::string bytes;
            const bool readable =
                done == 0 || (file.get({}, std::to_string(done - 1), "t", bytes) &&
                              bytes == noise_bytes(4000, done - 1));
            ::_exit(full && readable && !file.close() ? 0 : 3);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        unsigned done = 0;
        ASSERT_EQ(::read(pipe[0], &done, sizeof done), static_cast<ssize_t>(sizeof done));
        ::close(pipe[0]);
        ::close(pipe[1]);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << limit;

        LibraryFile file(FileSystemDevice::Real(), kSmall);
        ASSERT_EQ(file.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
        const std::size_t count = file.list({}, "t").size();
        EXPECT_TRUE(count == done || count == done + 1) << limit;
        EXPECT_TRUE(file.verify({})) << limit;
    }
}

TEST(LibraryProcess, ContentsBeyondFourGibibytes_ArePutReadAndListed)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("large.lib");
    LibraryFile file;
    ASSERT_EQ(file.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    ASSERT_TRUE(put(file, "before", "b"));
    ASSERT_TRUE(file.close());
    {
        // What lies behind the root is unused: a jump of the tail makes a file of that size.
        FileError error;
        auto device = FileSystemDevice::Real().open(
            name, FileAccess::ReadWrite, FileCreate::OpenExisting, FileShare::ReadWrite, error);
        ASSERT_NE(device, nullptr);
        ASSERT_TRUE(move_tail(*device, (std::uint64_t{1} << 32) - 1000));
    }
    ASSERT_EQ(file.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    const std::string movie = noise_bytes(300'000, 3);
    ASSERT_TRUE(put(file, "movie", movie));
    ASSERT_TRUE(file.commit());
    ASSERT_TRUE(put(file, "after", noise_bytes(5000, 4)));
    ASSERT_TRUE(file.close());

    ASSERT_EQ(file.open(name, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
    EXPECT_GT(file.extent(), std::uint64_t{1} << 32);
    EXPECT_EQ(file.list({}, "t").size(), 3u);
    LibraryContent content;
    ASSERT_TRUE(file.pin({}, "movie", "t", content));
    EXPECT_GT(content.position + content.stored, std::uint64_t{1} << 32);
    std::string bytes(1000, '\0');
    EXPECT_EQ(file.read_at(content, 250'000, bytes.data(), bytes.size()), bytes.size());
    EXPECT_EQ(bytes, movie.substr(250'000, 1000));
    EXPECT_TRUE(file.verify({}));
}

TEST(LibraryProcess, OneWriterAndReadingThreads_EachSeesWholeCommits)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("threads.lib");
    LibraryFile writer(FileSystemDevice::Real(), kSmall);
    ASSERT_EQ(writer.open(name, LibraryAccess::Write, "w").status, LibraryOpenStatus::Ok);
    const auto write = [&](unsigned number) {
        LibraryCommitScope scope(writer);
        for (unsigned i = 0; i < 8; ++i)
            if (!put(writer, std::to_string(i), noise_bytes(700, number)))
                return false;
        return writer.commit();
    };
    ASSERT_TRUE(write(0));
    std::atomic<bool> stop = false;
    std::atomic<int> torn = 0;
    std::atomic<int> snapshots = 0;
    std::vector<std::thread> readers;
    for (int i = 0; i < 4; ++i)
        readers.emplace_back([&] {
            while (!stop) {
                LibraryFile reader(FileSystemDevice::Real(), kSmall);
                if (reader.open(name, LibraryAccess::Read).status != LibraryOpenStatus::Ok) {
                    ++torn;
                    return;
                }
                std::string first;
                bool whole = reader.get({}, "0", "t", first);
                for (int k = 1; k < 8; ++k) {
                    std::string other;
                    whole =
                        whole && reader.get({}, std::to_string(k), "t", other) && other == first;
                }
                torn += whole ? 0 : 1;
                ++snapshots;
            }
        });
    for (unsigned number = 1; number < 400; ++number) {
        EXPECT_TRUE(write(number));
        if (number % 100 == 0) {
            EXPECT_TRUE(writer.pack());
        }
    }
    stop = true;
    for (std::thread& reader : readers)
        reader.join();

    EXPECT_EQ(torn, 0);
    EXPECT_GT(snapshots, 20);
}

}  // namespace
}  // namespace zmr
