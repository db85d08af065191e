// Files and folders that the user has no right to write or to read.
#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

#include <linux/securebits.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::HasSubstr;
using testing::Not;

class OdbWithoutRights : public ToolTest {
protected:
    // Programs that the superuser starts keep to the rights of files too.
    void SetUp() override
    {
        if (geteuid() == 0) {
            ASSERT_EQ(prctl(PR_SET_SECUREBITS, SECBIT_NOROOT), 0);
        }
    }
    void TearDown() override
    {
        if (geteuid() == 0) {
            EXPECT_EQ(prctl(PR_SET_SECUREBITS, 0), 0);
        }
    }
    void set_rights(const std::string& name, mode_t rights) const
    {
        ASSERT_EQ(chmod(file(name).c_str(), rights), 0);
    }
};

TEST_F(OdbWithoutRights, ReadOnlyLibrary_IsRead)
{
    make_library();
    set_rights("library.odb", 0444);

    EXPECT_EQ(paths().size(), 3u);
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
    run(0, {"show", library(), "badge.png"});
    run(0, {"extract", library(), "badge.png", "--to", file("out")});
    run(0, {"copy", library(), "/", "--to", file("other.odb")});
    EXPECT_TRUE(exists("out/badge.png"));
}

TEST_F(OdbWithoutRights, ReadOnlyLibrary_IsNotWrittenAndTheRefusalSaysWhy)
{
    make_library();
    set_rights("library.odb", 0444);
    const std::string before = read("library.odb");
    const std::vector<std::vector<std::string>> commands{
        {"add", library(), sample("tiles.bmp")},
        {"rename", library(), "badge.png", "other.png"},
        {"remove", library(), "badge.png"},
        {"pack", library()},
        {"copy", library(), "badge.png", "--to", library(), "--into", "there"}};
    for (const auto& command : commands) {
        const ToolResult result = run(1, command);

        EXPECT_THAT(result.err, HasSubstr("library.odb")) << command.front();
        EXPECT_THAT(result.err, HasSubstr("access is denied")) << command.front();
    }
    EXPECT_EQ(read("library.odb"), before);
}

TEST_F(OdbWithoutRights, UnreadableLibrary_IsRefused)
{
    make_library();
    set_rights("library.odb", 0);

    const ToolResult result = run(1, {"list", library()});

    EXPECT_THAT(result.err, HasSubstr("access is denied"));
}

TEST_F(OdbWithoutRights, ReadOnlyFolder_TakesNoNewLibraryAndNoExtractedFile)
{
    make_library();
    make_folder("locked");
    set_rights("locked", 0555);

    const std::string created = run(1, {"create", file("locked/new.odb")}).err;
    EXPECT_THAT(created, HasSubstr("access is denied"));
    EXPECT_THAT(created, Not(HasSubstr("committed before"))) << "there is no library";
    EXPECT_THAT(run(1, {"extract", library(), "badge.png", "--to", file("locked/new")}).err,
                HasSubstr("ermission denied"));
    EXPECT_THAT(run(1, {"add", file("locked/new.odb"), sample("tiles.bmp")}).err,
                HasSubstr("access is denied"));
    EXPECT_THAT(run(1, {"extract", library(), "badge.png", "--to", file("locked")}).err,
                HasSubstr("can't be written"));
    EXPECT_TRUE(std::filesystem::is_empty(file("locked")));
}

TEST_F(OdbWithoutRights, LibraryInAReadOnlyFolder_IsReadAndWritten)
{
    make_folder("locked");
    run(0, {"add", file("locked/library.odb"), sample("badge.png")});
    set_rights("locked", 0555);

    run(0, {"add", file("locked/library.odb"), sample("tiles.bmp")});

    EXPECT_EQ(run_json(0, {"info", file("locked/library.odb")})["objects"], 2);
}

TEST_F(OdbWithoutRights, UnreadableSource_IsSkippedAndNamed)
{
    write_picture("dot.bmp");
    set_rights("dot.bmp", 0);

    const auto added = run_json(1, {"add", library(), file("dot.bmp"), sample("badge.png")});

    EXPECT_EQ(added["added"], 1);
    ASSERT_EQ(added["skipped"].size(), 1u);
    EXPECT_THAT(std::string(added["skipped"][0]["reason"]), HasSubstr("access is denied"));
}
