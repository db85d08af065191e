// A limit of the file's size makes the real file system refuse as a full disk does.
#include "LibraryModel.h"
#include "store/LibraryFile.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>

namespace zmr {
namespace {

constexpr LibraryTuning kSmall{8000, 100'000, 100'000};

bool put(LibraryFile& file, const std::string& name, const std::string& bytes)
{
    return file.put({}, name, "t", ContentKind::Raw, "", as_span(bytes));
}

TEST(LibraryFullDisk, FileLimit_IsAStickyErrorAndLeavesTheLastCommit)
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

}  // namespace
}  // namespace zmr
