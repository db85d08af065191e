#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;

class OdbAdd : public ToolTest {};
class OdbList : public ToolTest {};

TEST_F(OdbAdd, MissingLibrary_IsMadeWithPicturesAndIcons)
{
    const auto added = run_json(0, {"add", library(), sample("badge.png"), sample("evening.jpg"),
                                    sample("tiles.bmp"), sample("button.tga")});

    EXPECT_EQ(added["added"], 4);
    EXPECT_TRUE(added["skipped"].empty());
    EXPECT_THAT(paths(), ElementsAre("badge.png", "button.tga", "evening.jpg", "tiles.bmp"));
    for (const auto& entry : run_json(0, {"list", library()})) {
        EXPECT_EQ(entry["class"], "PixelMap");
        EXPECT_EQ(entry["mediator"], "ODB_InternalObject");
        EXPECT_EQ(entry["icon"], true);
        EXPECT_EQ(entry["name"], entry["path"]);
    }
}

TEST_F(OdbAdd, LargePicture_IconFitsInto96Pixels)
{
    run(0, {"add", library(), sample("evening.jpg")});

    const auto shown = run_json(0, {"show", library(), "evening.jpg"});

    EXPECT_EQ(shown["icon_size"], nlohmann::json({96, 60}));
    EXPECT_EQ(shown["readable"], true);
}

TEST_F(OdbAdd, Models_NeedTheirModule)
{
    const auto without = run_json(1, {"add", library(), sample("ring.obj")});
    ASSERT_EQ(without["skipped"].size(), 1u);
    EXPECT_EQ(without["skipped"][0]["reason"], "no registered format reads it");
    EXPECT_EQ(without["skipped"][0]["source"], sample("ring.obj"));

    const auto with =
        run_json(0, {"add", library(), sample("ring.obj"), sample("vase.stl"), sample("rock.stl"),
                     sample("brass.mtl"), "--module", ZMR_SCENE_MODULE});
    EXPECT_EQ(with["added"], 4);
    const auto shown = run_json(0, {"show", library(), "vase.stl", "--module", ZMR_SCENE_MODULE});
    EXPECT_EQ(shown["class"], "SceneMesh");
    EXPECT_EQ(shown["icon_size"], nlohmann::json({96, 96}));
    EXPECT_EQ(shown["readable"], true);
}

TEST_F(OdbAdd, ObjectOfUnknownClass_IsListedAndShownAsNotReadable)
{
    make_library();

    EXPECT_EQ(run_json(0, {"list", library(), "models"})[0]["class"], "SceneMesh");
    const ToolResult shown = run(1, {"show", library(), "models/ring.obj"});
    EXPECT_THAT(shown.err, HasSubstr("--module"));
}

TEST_F(OdbAdd, ModuleThatCantBeLoaded_IsNamed)
{
    const ToolResult result =
        run(1, {"add", library(), sample("badge.png"), "--module", file("no_module")});
    EXPECT_THAT(result.err, HasSubstr("no_module"));
    EXPECT_FALSE(exists("library.odb"));
}

TEST_F(OdbAdd, BadSources_AreNamedAndSkippedAndTheRestGoesIn)
{
    write("empty.png", "");
    write("text.txt", "nothing that a format reads");
    write("cut.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2\n");
    const std::vector<std::string> words{"add",
                                         library(),
                                         file("empty.png"),
                                         file("text.txt"),
                                         file("missing.png"),
                                         file("cut.obj"),
                                         sample("badge.png"),
                                         "--module",
                                         ZMR_SCENE_MODULE};

    const auto added = run_json(1, words);
    EXPECT_EQ(added["added"], 1);
    ASSERT_EQ(added["skipped"].size(), 4u);
    EXPECT_EQ(added["skipped"][0]["reason"], "it is empty");
    EXPECT_EQ(added["skipped"][1]["reason"], "no registered format reads it");
    EXPECT_EQ(added["skipped"][2]["reason"], "no such file");
    EXPECT_EQ(added["skipped"][3]["reason"], "line 4: a face has 2 corners, it needs 3 or more");
    EXPECT_EQ(added["skipped"][3]["source"], file("cut.obj"));
    EXPECT_THAT(paths(), ElementsAre("badge.png"));
    EXPECT_THAT(run(1, words).err, HasSubstr(file("cut.obj") + ": skipped: line 4"));
}

TEST_F(OdbAdd, DamagedPicture_IsSkippedWithAReason)
{
    write("cut.png", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0", 18));

    const auto added = run_json(1, {"add", library(), file("cut.png")});

    EXPECT_EQ(added["added"], 0);
    ASSERT_EQ(added["skipped"].size(), 1u);
    EXPECT_NE(added["skipped"][0]["reason"], "");
}

TEST_F(OdbAdd, DirectoryAlone_GivesItsFilesOnly)
{
    make_folder("pictures/below");
    write_picture("pictures/one.bmp");
    write_picture("pictures/below/two.bmp");

    run(0, {"add", library(), file("pictures")});

    EXPECT_THAT(paths(), ElementsAre("one.bmp"));
}

TEST_F(OdbAdd, Recursive_GivesDirectoriesBelowInto)
{
    make_folder("pictures/below/deep");
    write_picture("pictures/one.bmp");
    write_picture("pictures/below/two.bmp");
    write_picture("pictures/below/deep/three.bmp");

    run(0, {"add", library(), file("pictures"), "--into", "x/y", "--recursive"});

    EXPECT_THAT(paths(),
                ElementsAre("x/y/below/deep/three.bmp", "x/y/below/two.bmp", "x/y/one.bmp"));
}

TEST_F(OdbAdd, ExistingName_IsReplacedWithItsIcon)
{
    make_folder("first");
    write("first/picture", "");
    std::filesystem::copy_file(sample("badge.png"), file("picture"));
    run(0, {"add", library(), file("picture")});
    const auto before = run_json(0, {"show", library(), "picture"});
    std::filesystem::remove(file("picture"));
    std::filesystem::copy_file(sample("evening.jpg"), file("picture"));

    run(0, {"add", library(), file("picture")});

    const auto after = run_json(0, {"show", library(), "picture"});
    EXPECT_EQ(before["icon_size"], nlohmann::json({96, 80}));
    EXPECT_EQ(after["icon_size"], nlohmann::json({96, 60}));
    EXPECT_THAT(paths(), ElementsAre("picture"));
}

TEST_F(OdbAdd, NamesWithSpacesAndOtherLetters_StayAsTheyAre)
{
    const std::string name = "Zürich – 山 und Tal.bmp";
    write_picture(name);

    run(0, {"add", library(), file(name), "--into", "Fotos von früher"});

    EXPECT_THAT(paths(), ElementsAre("Fotos von früher/" + name));
    EXPECT_EQ(run_json(0, {"show", library(), "Fotos von früher/" + name})["name"], name);
    run(0, {"extract", library(), "Fotos von früher", "--to", file("out")});
    EXPECT_TRUE(exists("out/Fotos von früher/" + name + ".png"));
}

TEST_F(OdbList, OneDirectory_ShowsItsObjectsAndForAPersonItsDirectories)
{
    make_library();

    EXPECT_EQ(run_json(0, {"list", library()}).size(), 1u);
    EXPECT_EQ(run_json(0, {"list", library(), "a/b"})[0]["path"], "a/b/dot.bmp");
    const ToolResult text = run(0, {"list", library()});
    EXPECT_THAT(text.out, HasSubstr("directory"));
    EXPECT_THAT(text.out, HasSubstr("models/\n"));
    EXPECT_THAT(text.out, HasSubstr("badge.png\n"));
    EXPECT_THAT(text.out, testing::Not(HasSubstr("ring.obj")));
}

TEST_F(OdbList, ClassAndPattern_SelectExactlyAndWholly)
{
    make_library();

    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--class", "SceneMesh"}).size(), 1u);
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--class", "Scene"}).size(), 0u);
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--class", "GStreamable"}).size(), 0u);
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--match", ".*\\.(png|bmp)"}).size(), 2u);
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--match", "badge"}).size(), 0u);
    EXPECT_EQ(run_json(0, {"list", library(), "-r", "--match", "a/b/.*"}).size(), 0u);
}

TEST_F(OdbList, RefusedPattern_IsWrongUsage)
{
    make_library();

    const ToolResult result = run(2, {"list", library(), "--match", "("});
    EXPECT_THAT(result.err, HasSubstr("--match"));
    run(2, {"list", library(), "--match", std::string(1001, 'a')});
}

TEST_F(OdbList, MissingDirectory_IsRefused)
{
    make_library();

    EXPECT_THAT(run(1, {"list", library(), "nowhere"}).err, HasSubstr("nowhere"));
}

TEST_F(OdbList, EmptyLibrary_GivesAnEmptyArray)
{
    run(0, {"create", library()});

    EXPECT_EQ(run_json(0, {"list", library()}), nlohmann::json::array());
}
