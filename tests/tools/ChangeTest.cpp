#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

class OdbCreate : public ToolTest {};
class OdbRename : public ToolTest {};
class OdbRemove : public ToolTest {};
class OdbCopy : public ToolTest {};
class OdbExtract : public ToolTest {};
class OdbCare : public ToolTest {};

TEST_F(OdbCreate, NewName_MakesALibrary)
{
    run(0, {"create", library()});

    EXPECT_TRUE(exists("library.odb"));
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
    EXPECT_EQ(run_json(0, {"info", library()})["objects"], 0);
}

TEST_F(OdbCreate, ExistingFile_IsKept)
{
    write("library.odb", "a letter");

    EXPECT_THAT(run(1, {"create", library()}).err, HasSubstr("exists already"));
    EXPECT_EQ(read("library.odb"), "a letter");
}

TEST_F(OdbCreate, MissingFolder_IsRefused)
{
    EXPECT_THAT(run(1, {"create", file("none/library.odb")}).err, HasSubstr("none/library.odb"));
}

TEST_F(OdbRename, Object_MovesWithItsIcon)
{
    make_library();

    run(0, {"rename", library(), "badge.png", "signs/first.png"});

    EXPECT_THAT(paths(), ElementsAre("a/b/dot.bmp", "models/ring.obj", "signs/first.png"));
    EXPECT_EQ(run_json(0, {"show", library(), "signs/first.png"})["icon"], true);
}

TEST_F(OdbRename, Directory_MovesWithAllBelow)
{
    make_library();

    run(0, {"rename", library(), "a", "c"});

    EXPECT_THAT(paths(), ElementsAre("badge.png", "c/b/dot.bmp", "models/ring.obj"));
}

TEST_F(OdbRename, TakenOrMissingNames_AreRefusedAndNothingChanges)
{
    make_library();
    run(0, {"copy", library(), "badge.png", "--to", library(), "--into", "models"});
    const auto before = paths();

    EXPECT_THAT(run(1, {"rename", library(), "models/badge.png", "models/ring.obj"}).err,
                HasSubstr("already"));
    run(1, {"rename", library(), "a", "models"});
    run(1, {"rename", library(), "none", "other"});
    run(1, {"rename", library(), "a", "a/b/c"});
    run(1, {"rename", library(), "badge.png", "/"});

    EXPECT_EQ(paths(), before);
}

TEST_F(OdbRemove, ObjectsAndDirectories_AreGoneForGood)
{
    make_library();

    EXPECT_EQ(run_json(0, {"remove", library(), "badge.png", "a"})["removed"], 2);

    EXPECT_THAT(paths(), ElementsAre("models/ring.obj"));
    EXPECT_EQ(run_json(0, {"info", library()})["directories"], 1);
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
}

TEST_F(OdbRemove, MissingName_IsToldAndTheOthersGo)
{
    make_library();

    EXPECT_THAT(run(1, {"remove", library(), "none", "badge.png"}).err, HasSubstr("none"));

    EXPECT_THAT(paths(), ElementsAre("a/b/dot.bmp", "models/ring.obj"));
}

TEST_F(OdbRemove, ObjectPutAnew_DoesNotShowTheFormerIcon)
{
    make_library();
    const auto before = run_json(0, {"show", library(), "badge.png"});
    run(0, {"remove", library(), "badge.png"});
    run(0, {"rename", library(), "a/b/dot.bmp", "badge.png"});

    const auto after = run_json(0, {"show", library(), "badge.png"});
    EXPECT_EQ(before["icon_size"], nlohmann::json({96, 80}));
    EXPECT_EQ(after["icon_size"], nlohmann::json({2, 2}));
}

TEST_F(OdbCopy, ObjectsAndDirectories_GoToAnotherLibrary)
{
    make_library();
    const std::string other = file("other.odb");

    const auto copied =
        run_json(0, {"copy", library(), "badge.png", "a", "--to", other, "--into", "in"});

    EXPECT_EQ(copied["copied"], 2);
    std::vector<std::string> there;
    for (const auto& entry : run_json(0, {"list", other, "-r"})) {
        there.push_back(entry["path"]);
        EXPECT_EQ(entry["icon"], true);
    }
    EXPECT_THAT(there, UnorderedElementsAre("in/badge.png", "in/a/b/dot.bmp"));
    EXPECT_EQ(run_json(0, {"show", other, "in/badge.png"})["readable"], true);
    EXPECT_EQ(paths().size(), 3u);
}

TEST_F(OdbCopy, UnknownClass_IsCopiedWithoutItsModule)
{
    make_library();
    const std::string other = file("other.odb");

    run(0, {"copy", library(), "models", "--to", other});

    EXPECT_EQ(
        run_json(0, {"show", other, "models/ring.obj", "--module", ZMR_SCENE_MODULE})["readable"],
        true);
}

TEST_F(OdbCopy, OntoItselfOrFromNowhere_IsRefused)
{
    make_library();
    const auto before = paths();

    run(1, {"copy", library(), "badge.png", "--to", library()});
    run(1, {"copy", library(), "a", "--to", library(), "--into", "a/b"});
    run(1, {"copy", library(), "none", "--to", file("other.odb")});
    run(1, {"copy", file("missing.odb"), "x", "--to", file("other.odb")});

    EXPECT_EQ(paths(), before);
}

TEST_F(OdbExtract, PicturesModelsAndOthers_BecomeFilesThatCanBeAddedAgain)
{
    make_library();
    run(0, {"add", library(), sample("brass.mtl"), "--module", ZMR_SCENE_MODULE});

    run(0, {"extract", library(), "/", "--to", file("out"), "--module", ZMR_SCENE_MODULE});

    EXPECT_TRUE(exists("out/badge.png"));
    EXPECT_TRUE(exists("out/a/b/dot.bmp.png"));
    EXPECT_TRUE(exists("out/models/ring.obj"));
    EXPECT_TRUE(exists("out/brass.mtl.lob"));
    const auto again =
        run_json(0, {"add", file("again.odb"), file("out/badge.png"), file("out/a/b/dot.bmp.png"),
                     file("out/models/ring.obj"), "--module", ZMR_SCENE_MODULE});
    EXPECT_EQ(again["added"], 3);
}

TEST_F(OdbExtract, ExistingFile_IsKeptUnlessOverwriteIsAsked)
{
    make_library();
    make_folder("out");
    write("out/badge.png", "a letter");

    run(1, {"extract", library(), "badge.png", "--to", file("out")});
    EXPECT_EQ(read("out/badge.png"), "a letter");
    run(0, {"extract", library(), "badge.png", "--to", file("out"), "--overwrite"});
    EXPECT_NE(read("out/badge.png"), "a letter");
}

TEST_F(OdbExtract, MissingNameAndUnknownClass_AreRefused)
{
    make_library();

    EXPECT_THAT(run(1, {"extract", library(), "none", "--to", file("out")}).err, HasSubstr("none"));
    EXPECT_THAT(run(1, {"extract", library(), "models/ring.obj", "--to", file("out")}).err,
                HasSubstr("--module"));
}

TEST_F(OdbCare, Pack_ShrinksTheFileAndKeepsAll)
{
    make_library();
    run(0, {"add", library(), sample("evening.jpg"), sample("tiles.bmp"), "--into", "old"});
    run(0, {"remove", library(), "old"});
    const auto before = paths();

    const auto packed = run_json(0, {"pack", library()});

    EXPECT_LT(packed["after"].get<std::uint64_t>(), packed["before"].get<std::uint64_t>());
    EXPECT_EQ(paths(), before);
    EXPECT_EQ(run_json(0, {"verify", library()})["ok"], true);
    EXPECT_EQ(run_json(0, {"info", library()})["bytes"], std::filesystem::file_size(library()));
}

TEST_F(OdbCare, Info_CountsWhatIsThere)
{
    make_library();

    const auto info = run_json(0, {"info", library()});

    EXPECT_EQ(info["objects"], 3);
    EXPECT_EQ(info["directories"], 3);
    EXPECT_EQ(info["icons"], 3);
    EXPECT_EQ(info["classes"]["PixelMap"], 2);
    EXPECT_EQ(info["bytes"], std::filesystem::file_size(library()));
}

TEST_F(OdbCare, Verify_NamesWhatIsDamagedAndTheRestStaysReadable)
{
    run(0, {"add", library(), sample("badge.png"), sample("evening.jpg"), sample("tiles.bmp")});
    std::string bytes = read("library.odb");
    // Somewhere in the middle lie the pixels of one of the pictures.
    for (std::size_t i = 0; i < 64; ++i)
        bytes[bytes.size() / 2 + i] = static_cast<char>(~bytes[bytes.size() / 2 + i]);
    write("library.odb", bytes);

    const auto verified = run_json(3, {"verify", library()});

    EXPECT_EQ(verified["ok"], false);
    ASSERT_FALSE(verified["damaged"].empty());
    const std::string damaged = verified["damaged"][0]["path"];
    EXPECT_FALSE(damaged.empty());
    run(3, {"show", library(), damaged});
    run(3, {"extract", library(), damaged, "--to", file("out")});
    for (const char* name : {"badge.png", "evening.jpg", "tiles.bmp"}) {
        if (name != damaged)
            run(0, {"extract", library(), name, "--to", file("out")});
    }
}
