#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;

class OdbAttr : public ToolTest {};
class OdbDescribe : public ToolTest {};
class OdbPicture : public ToolTest {};
class OdbMovie : public ToolTest {};
class OdbFilter : public ToolTest {};

TEST_F(OdbDescribe, Text_IsSetShownReplacedAndRemoved)
{
    make_library();

    run(0, {"describe", library(), "badge.png", "A badge of brass"});
    EXPECT_EQ(run(0, {"describe", library(), "badge.png"}).out, "A badge of brass\n");
    run(0, {"describe", library(), "/badge.png/", "Ein Schild, größer"});
    EXPECT_EQ(run_json(0, {"describe", library(), "badge.png"})["text"], "Ein Schild, größer");
    run(0, {"describe", library(), "badge.png", "--remove"});

    EXPECT_THAT(run(1, {"describe", library(), "badge.png"}).err, HasSubstr("no description"));
    run(1, {"describe", library(), "badge.png", "--remove"});
}

TEST_F(OdbDescribe, EmptyText_IsATextToo)
{
    make_library();

    run(0, {"describe", library(), "badge.png", ""});

    EXPECT_EQ(run_json(0, {"describe", library(), "badge.png"})["text"], "");
}

TEST_F(OdbDescribe, ControlCharacters_DoNotReachTheTerminal)
{
    make_library();

    run(0, {"describe", library(), "badge.png", "a\x1b[31mb"});

    EXPECT_EQ(run(0, {"describe", library(), "badge.png"}).out, "a\\x1b[31mb\n");
}

TEST_F(OdbDescribe, MissingObjectOrBothChoices_AreRefused)
{
    make_library();

    EXPECT_THAT(run(1, {"describe", library(), "none.png", "x"}).err,
                HasSubstr("\"none.png\": there is no object"));
    run(2, {"describe", library(), "badge.png", "x", "--remove"});
    run(1, {"describe", file("none.odb"), "badge.png"});
}

TEST_F(OdbDescribe, Description_FollowsRenameAndCopyAndGoesWithTheObject)
{
    make_library();
    run(0, {"describe", library(), "badge.png", "A badge"});

    run(0, {"rename", library(), "badge.png", "sign.png"});
    run(0, {"copy", library(), "sign.png", "--to", file("other.odb")});
    EXPECT_EQ(run_json(0, {"describe", file("other.odb"), "sign.png"})["text"], "A badge");
    run(0, {"remove", library(), "sign.png"});
    run(0, {"add", library(), sample("badge.png")});

    run(1, {"describe", library(), "badge.png"});
}

TEST_F(OdbAttr, Attributes_AreListedReadSetAndRemoved)
{
    make_library();
    EXPECT_EQ(run_json(0, {"attr", library(), "badge.png"}).size(), 0u);

    run(0, {"attr", library(), "badge.png", "set", "ODB_TextDescriptionAttribute", "A badge"});
    run(0, {"attr", library(), "badge.png", "set", "ODB_MovieAttribute"});

    const nlohmann::json all = run_json(0, {"attr", library(), "badge.png"});
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0]["class"], "ODB_MovieAttribute");
    EXPECT_EQ(all[0]["known"], true);
    EXPECT_EQ(all[1]["text"], "A badge");
    EXPECT_EQ(run(0, {"attr", library(), "badge.png", "get", "ODB_TextDescriptionAttribute"}).out,
              "A badge\n");
    EXPECT_THAT(run(0, {"attr", library(), "badge.png", "get", "ODB_MovieAttribute"}).out,
                HasSubstr("bytes"));
    run(0, {"attr", library(), "badge.png", "remove", "ODB_MovieAttribute"});
    run(1, {"attr", library(), "badge.png", "remove", "ODB_MovieAttribute"});
    EXPECT_EQ(run_json(0, {"attr", library(), "badge.png"}).size(), 1u);
}

TEST_F(OdbAttr, WhatIsNoAttribute_IsRefusedAndNothingChanges)
{
    make_library();

    EXPECT_THAT(run(1, {"attr", library(), "badge.png", "set", "PixelMap"}).err,
                HasSubstr("no class of attributes"));
    EXPECT_THAT(run(1, {"attr", library(), "badge.png", "set", "NobodysClass"}).err,
                HasSubstr("--module"));
    EXPECT_THAT(run(1, {"attr", library(), "badge.png", "set", "ODB_MovieAttribute", "x"}).err,
                HasSubstr("take no value"));
    run(1, {"attr", library(), "badge.png", "get", ".ODB icon"});
    run(1, {"attr", library(), "badge.png", "remove", ".ODB mediators"});

    EXPECT_EQ(run_json(0, {"attr", library(), "badge.png"}).size(), 0u);
    EXPECT_EQ(run_json(0, {"show", library(), "badge.png"})["icon"], true);
}

TEST_F(OdbAttr, WrongWords_AreWrongUsage)
{
    make_library();

    run(2, {"attr", library(), "badge.png", "get"});
    run(2, {"attr", library(), "badge.png", "steal", "ODB_MovieAttribute"});
    run(2, {"attr", library(), "badge.png", "get", "ODB_MovieAttribute", "value"});
}

TEST_F(OdbPicture, Pictures_AreAddedListedExtractedAndRemoved)
{
    make_library();
    write_noise_picture("noise.bmp", 40);

    run(0, {"picture", "add", library(), "badge.png", "front.v2", sample("badge.png")});
    const nlohmann::json added =
        run_json(0, {"picture", "add", library(), "badge.png", "back", file("noise.bmp")});
    EXPECT_EQ(added["size"], nlohmann::json({40, 40}));
    const nlohmann::json all = run_json(0, {"picture", "list", library(), "badge.png"});
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0]["name"], "back");
    EXPECT_EQ(all[1]["name"], "front.v2");
    run(0, {"picture", "extract", library(), "badge.png", "back", file("out.bmp")});
    EXPECT_TRUE(exists("out.bmp"));
    run(0, {"add", file("second.odb"), file("out.bmp")});
    run(0, {"picture", "remove", library(), "badge.png", "back"});

    EXPECT_EQ(run_json(0, {"picture", "list", library(), "badge.png"}).size(), 1u);
    EXPECT_EQ(run_json(0, {"picture", "list", library(), "a/b/dot.bmp"}).size(), 0u);
    run(1, {"picture", "remove", library(), "badge.png", "back"});
}

TEST_F(OdbPicture, SameNameAgain_Replaces)
{
    make_library();
    write_noise_picture("noise.bmp", 40);
    run(0, {"picture", "add", library(), "badge.png", "front", sample("badge.png")});

    run(0, {"picture", "add", library(), "badge.png", "front", file("noise.bmp")});

    const nlohmann::json all = run_json(0, {"picture", "list", library(), "badge.png"});
    ASSERT_EQ(all.size(), 1u);
    EXPECT_EQ(all[0]["size"][0], 40);
}

TEST_F(OdbPicture, WhatCantBe_IsRefusedWithTheReason)
{
    make_library();
    write("letter.png", "a letter");
    write("kept.png", "kept");
    run(0, {"picture", "add", library(), "badge.png", "front", sample("badge.png")});

    EXPECT_THAT(run(1, {"picture", "add", library(), "badge.png", "x", file("letter.png")}).err,
                HasSubstr("letter.png"));
    EXPECT_THAT(run(1, {"picture", "add", library(), "badge.png", "x", file("none.png")}).err,
                HasSubstr("none.png"));
    run(1, {"picture", "add", library(), "none", "x", sample("badge.png")});
    run(1, {"picture", "add", library(), "badge.png", std::string(2000, 'x'), sample("badge.png")});
    run(1, {"picture", "extract", library(), "badge.png", "none", file("out.png")});
    run(1, {"picture", "extract", library(), "badge.png", "front", file("out.unknown")});
    EXPECT_THAT(
        run(1, {"picture", "extract", library(), "badge.png", "front", file("kept.png")}).err,
        HasSubstr("--overwrite"));
    EXPECT_EQ(read("kept.png"), "kept");
    run(0,
        {"picture", "extract", library(), "badge.png", "front", file("kept.png"), "--overwrite"});
    EXPECT_NE(read("kept.png"), "kept");
    run(2, {"picture"});
    run(2, {"picture", "steal", library(), "badge.png"});
}

TEST_F(OdbMovie, Movie_IsStoredExtractedReplacedAndRemoved)
{
    make_library();
    const std::string bytes(100'000, 'm');
    write("film.avi", bytes);
    write("short.avi", "short");

    EXPECT_EQ(run_json(0, {"movie", "set", library(), "badge.png", file("film.avi")})["bytes"],
              bytes.size());
    EXPECT_EQ(run_json(0, {"movie", "extract", library(), "badge.png", file("out.avi")})["bytes"],
              bytes.size());
    EXPECT_EQ(read("out.avi"), bytes);
    run(0, {"movie", "set", library(), "badge.png", file("short.avi")});
    EXPECT_THAT(run(1, {"movie", "extract", library(), "badge.png", file("out.avi")}).err,
                HasSubstr("--overwrite"));
    EXPECT_EQ(read("out.avi"), bytes);
    run(0, {"movie", "extract", library(), "badge.png", file("out.avi"), "--overwrite"});
    EXPECT_EQ(read("out.avi"), "short");
    run(0, {"movie", "remove", library(), "badge.png"});

    run(1, {"movie", "remove", library(), "badge.png"});
    run(1, {"movie", "extract", library(), "badge.png", file("none.avi")});
    EXPECT_FALSE(exists("none.avi"));
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
}

TEST_F(OdbMovie, WhatCantBe_IsRefusedAndChangesNothing)
{
    make_library();
    write("film.avi", "film");
    run(0, {"movie", "set", library(), "badge.png", file("film.avi")});

    EXPECT_THAT(run(1, {"movie", "set", library(), "badge.png", file("none.avi")}).err,
                HasSubstr("none.avi"));
    run(1, {"movie", "set", library(), "none", file("film.avi")});
    run(1, {"movie", "extract", library(), "badge.png", file("none/out.avi")});
    run(1, {"movie", "extract", library(), "badge.png", library(), "--overwrite"});

    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
    run(0, {"movie", "extract", library(), "badge.png", file("out.avi")});
    EXPECT_EQ(read("out.avi"), "film");
}

TEST_F(OdbMovie, TheLibraryItself_IsNoMovie)
{
    make_library();

    EXPECT_THAT(run(1, {"movie", "set", library(), "badge.png", library()}).err,
                HasSubstr("can't be stored"));
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
}

TEST_F(OdbFilter, ByClassByNameAndBoth)
{
    make_library();
    const auto list = [this](std::vector<std::string> words) {
        words.insert(words.begin(), {"list", library(), "-r"});
        return run_json(0, std::move(words)).size();
    };

    EXPECT_EQ(list({"--filter", "class:PixelMap"}), 2u);
    EXPECT_EQ(list({"--filter", "class:SceneMesh"}), 1u);
    EXPECT_EQ(list({"--filter", "name:.*\\.(png|obj)"}), 2u);
    EXPECT_EQ(list({"--filter", "class:PixelMap", "--filter", "name:.*png"}), 1u);
    EXPECT_EQ(list({"--class", "PixelMap", "--filter", "name:dot.*"}), 1u);
    EXPECT_EQ(list({"--filter", "class:PixelMap", "--filter", "class:SceneMesh"}), 0u);
}

TEST_F(OdbFilter, Related_TakesTheClassAndItsBasesButNoDerivedOne)
{
    make_library();

    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--filter", "related:PixelMap"}).size(), 2u);
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--filter", "related:GStreamable"}).size(), 0u);
    // Not known without the module, so that names decide.
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--filter", "related:SceneMesh"}).size(), 1u);
}

TEST_F(OdbFilter, NoFilter_IsWrongUsage)
{
    make_library();

    EXPECT_THAT(run(2, {"list", library(), "--filter", "colour:red"}).err,
                HasSubstr("related:NAME"));
    EXPECT_THAT(run(2, {"list", library(), "--filter", "name:("}).err,
                HasSubstr("no regular expression"));
}
