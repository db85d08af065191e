// What only a POSIX system can bring about from outside.
#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::HasSubstr;

class OdbOnPosix : public ToolTest {
protected:
    // As on a full disk: no file that the tool writes grows beyond that.
    static ToolResult run_with_limit(std::uint64_t bytes, const std::vector<std::string>& words)
    {
        rlimit former = {};
        EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &former), 0);
        const rlimit limit{bytes, former.rlim_max};  // programs are started with the same
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
        const ToolResult result = run_tool(words);
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &former), 0);
        return result;
    }

    // `count` names of one picture.
    void make_pictures(int count) const
    {
        write_picture("dot.bmp");
        make_folder("pictures");
        for (int i = 0; i < count; ++i)
            std::filesystem::create_symlink(file("dot.bmp"),
                                            file("pictures/" + std::to_string(i) + ".bmp"));
    }
};

TEST_F(OdbOnPosix, FullDisk_KeepsWhatWasThereAndSaysSo)
{
    make_library();
    const auto before = paths();

    const ToolResult result = run_with_limit(std::filesystem::file_size(library()) + 4096,
                                             {"add", library(), sample("vase.stl"),
                                              sample("evening.jpg"), "--module", ZMR_SCENE_MODULE});

    EXPECT_EQ(result.code, 1) << result.err;
    EXPECT_THAT(result.err, HasSubstr("library.odb"));
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
    for (const std::string& path : before)
        run(path == "models/ring.obj" ? 1 : 0, {"show", library(), path});
}

TEST_F(OdbOnPosix, FullDiskForANewLibrary_IsAnError)
{
    const ToolResult result = run_with_limit(512, {"create", library()});

    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.err, HasSubstr("library.odb"));
}

TEST_F(OdbOnPosix, FullDiskOnAdding_ClaimsNothingAdded)
{
    const ToolResult result =
        run_with_limit(512, {"add", library(), sample("badge.png"), "--json"});

    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(nlohmann::json::parse(result.out)["added"], nullptr);
}

TEST_F(OdbOnPosix, FullDiskOnExtraction_IsAnError)
{
    make_library();

    const ToolResult result =
        run_with_limit(512, {"extract", library(), "badge.png", "models", "--to", file("out"),
                             "--module", ZMR_SCENE_MODULE});

    EXPECT_EQ(result.code, 1);
    EXPECT_THAT(result.out, HasSubstr("0 written, 2 not"));
    EXPECT_FALSE(exists("out/badge.png"));
    EXPECT_FALSE(exists("out/models/ring.obj"));
}

TEST_F(OdbOnPosix, ManySources_StayBelowTheMemoryLimit)
{
    constexpr int kPictures = 4000;
    make_pictures(kPictures);
    const ToolResult few = run(0, {"add", file("few.odb"), file("dot.bmp")});

    const ToolResult many = run(0, {"add", library(), file("pictures")});

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    // The sanitizers' own memory counts too, and what was freed stays in a quarantine.
    constexpr std::uint64_t kLimit = 400u << 20;
    constexpr std::uint64_t kGrowth = 300u << 20;
#else
    constexpr std::uint64_t kLimit = 64u << 20;
    constexpr std::uint64_t kGrowth = 24u << 20;
#endif
    RecordProperty("peak_bytes", std::to_string(many.peak_bytes));
    EXPECT_LT(many.peak_bytes, kLimit);
    EXPECT_LT(many.peak_bytes - few.peak_bytes, kGrowth);
    EXPECT_EQ(run_json(0, {"info", library()})["objects"], kPictures);
}

TEST_F(OdbOnPosix, LinksAndCycles_AreFollowedOnceAndReported)
{
    make_folder("pictures/below");
    write_picture("dot.bmp");
    std::filesystem::create_symlink(file("dot.bmp"), file("pictures/link.bmp"));
    std::filesystem::create_symlink(file("pictures"), file("pictures/below/up"));
    std::filesystem::create_symlink(file("gone.bmp"), file("pictures/dead.bmp"));
    ASSERT_EQ(mkfifo(file("pictures/pipe.bmp").c_str(), 0600), 0);

    const auto added = run_json(1, {"add", library(), file("pictures"), "-r"});

    EXPECT_EQ(added["added"], 1);
    EXPECT_EQ(added["skipped"].size(), 3u);
    EXPECT_THAT(paths(), ElementsAre("link.bmp"));
}

TEST_F(OdbOnPosix, LinkInTheTargetDirectory_IsNotFollowedOut)
{
    make_library();
    make_folder("out");
    make_folder("elsewhere");
    std::filesystem::create_symlink(file("elsewhere"), file("out/a"));

    run(1, {"extract", library(), "a", "--to", file("out")});

    EXPECT_TRUE(std::filesystem::is_empty(file("elsewhere")));
}

TEST_F(OdbOnPosix, NamesThatAreNoUtf8_SurviveTheJson)
{
    const std::string name = "caf\xe9.bmp";
    write_picture(name);

    run(0, {"add", library(), file(name)});

    const auto listed = run_json(0, {"list", library()});
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0]["name"], "caf\xef\xbf\xbd.bmp");
    run(0, {"extract", library(), name, "--to", file("out")});
    EXPECT_TRUE(exists("out") && std::filesystem::exists(file("out/" + name + ".png")));
}

TEST_F(OdbOnPosix, OutputThatCantBeWritten_IsAnError)
{
    make_library();
    const std::string command =
        std::string("exec '") + ZMR_ODB_TOOL + "' list '" + library() + "' > /dev/full 2>&1";

    EXPECT_EQ(std::system(command.c_str()) >> 8, 1);
}
