// A library in a folder that the user may only read, by the rights of the files themselves.

#include "RefusedChanges.h"
#include "TestObjects.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

/// Takes the right to write from a folder and all in it, and from the superuser his power over
/// rights, while it lives.
class WithoutWriting {
public:
    explicit WithoutWriting(const fs::path& folder) : folder_(folder), user_(geteuid())
    {
        for (const auto& entry : fs::recursive_directory_iterator(folder_))
            fs::permissions(entry.path(), entry.is_directory() ? kLooked : kRead);
        fs::permissions(folder_, kLooked);
        is_ready_ = user_ != 0 || seteuid(kNobody) == 0;
    }
    ~WithoutWriting()
    {
        is_ready_ = seteuid(user_) == 0;
        fs::permissions(folder_, fs::perms::owner_all);
    }
    WithoutWriting(const WithoutWriting&) = delete;
    WithoutWriting& operator=(const WithoutWriting&) = delete;
    [[nodiscard]] bool is_ready() const { return is_ready_; }

private:
    static constexpr uid_t kNobody = 65534;
    static constexpr fs::perms kRead =
        fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    static constexpr fs::perms kLooked =
        kRead | fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;

    fs::path folder_;
    uid_t user_;
    bool is_ready_ = false;
};

}  // namespace

TEST(ReadOnlyLibrary, RightsForbidWriting_NothingChanges)
{
    const TemporaryFolder folder;
    make_library_to_refuse(folder.file(""));
    const WithoutWriting locked(folder.path());
    ASSERT_TRUE(locked.is_ready());

    ObjectDatabase library(folder.file("library.odb").c_str(), GIO::OpenReadWrite);
    EXPECT_EQ(library.server, nullptr);
    EXPECT_EQ(library.open_failure(), ResourceFile::OpenFailure::Device);
    EXPECT_NE(std::string(library.open_error().text).find("access is denied"), std::string::npos)
        << library.open_error().text;
    EXPECT_EQ(what_changes(folder.file("")), "");
}
