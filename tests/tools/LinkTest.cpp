#include "tests/tools/ToolTest.h"

#include "odb/ODB_Mediator.h"
#include "odb/ODB_Options.h"
#include "odb/ObjectDatabase.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>

using testing::ElementsAre;
using testing::HasSubstr;

class OdbLink : public ToolTest {};
class OdbCheck : public ToolTest {};
class OdbExternal : public ToolTest {};

TEST_F(OdbLink, WithinALibrary_ShowsTheObjectOfTheOtherEntry)
{
    make_library();

    EXPECT_EQ(run_json(0, {"link", library(), "signs/first", "badge.png"})["class"], "PixelMap");

    const nlohmann::json shown = run_json(0, {"show", library(), "signs/first"});
    EXPECT_EQ(shown["mediator"], "ODB_ReferenceToObject");
    EXPECT_EQ(shown["readable"], true);
    EXPECT_EQ(shown["icon_size"], run_json(0, {"show", library(), "badge.png"})["icon_size"]);
}

TEST_F(OdbLink, ToAnotherLibrary_ShowsItsObject)
{
    make_library();
    run(0, {"create", file("second.odb")});

    run(0, {"link", file("second.odb"), "sign", "badge.png#" + library()});

    EXPECT_EQ(run_json(0, {"show", file("second.odb"), "sign"})["readable"], true);
    EXPECT_EQ(run_json(0, {"info", file("second.odb")})["classes"]["PixelMap"], 1);
}

TEST_F(OdbLink, TakenNamesAndMissingTargets_AreRefusedAndNothingChanges)
{
    make_library();
    const auto before = paths();

    EXPECT_THAT(run(1, {"link", library(), "badge.png", "a/b/dot.bmp"}).err, HasSubstr("already"));
    run(1, {"link", library(), "models", "badge.png"});
    EXPECT_THAT(run(1, {"link", library(), "sign", "none.png"}).err, HasSubstr("none.png"));
    run(1, {"link", library(), "sign", "badge.png#" + file("none.odb")});
    run(1, {"link", library(), "/", "badge.png"});
    run(1, {"link", file("none.odb"), "sign", "badge.png"});

    EXPECT_EQ(paths(), before);
    EXPECT_FALSE(exists("none.odb"));
}

TEST_F(OdbCheck, WholeLibrary_HasNothingAmiss)
{
    make_library();
    run(0, {"link", library(), "sign", "badge.png"});

    EXPECT_EQ(run(0, {"check", library()}).out, "nothing amiss\n");
    const nlohmann::json result = run_json(0, {"check", library()});
    EXPECT_EQ(result["found"].size(), 0u);
    EXPECT_EQ(result["complete"], true);
}

TEST_F(OdbCheck, ReferenceWithoutATarget_IsFoundAndKept)
{
    make_library();
    run(0, {"link", library(), "sign", "badge.png"});
    run(0, {"link", library(), "second", "sign"});
    run(0, {"remove", library(), "badge.png"});

    const nlohmann::json result = run_json(1, {"check", library(), "--fix"});

    ASSERT_EQ(result["found"].size(), 2u);
    EXPECT_EQ(result["found"][0]["kind"], "reference");
    EXPECT_EQ(result["fixed"], 0);
    EXPECT_THAT(paths(), testing::Contains("sign"));
}

TEST_F(OdbCheck, ReferenceIntoAMissingLibrary_IsFound)
{
    make_library();
    run(0, {"create", file("second.odb")});
    run(0, {"link", file("second.odb"), "sign", "badge.png#" + library()});
    std::filesystem::remove(folder_.path() / "library.odb");

    const nlohmann::json result = run_json(1, {"check", file("second.odb")});

    ASSERT_EQ(result["found"].size(), 1u);
    EXPECT_EQ(result["found"][0]["path"], "sign");
    EXPECT_THAT(result["found"][0]["reason"].get<std::string>(), HasSubstr("can't be opened"));
}

TEST_F(OdbCheck, MissingFileOfAnExternalObject_IsFound)
{
    run(0, {"add", library(), sample("badge.png"), "--external"});
    std::filesystem::remove_all(folder_.path() / "LOBJS");

    const nlohmann::json result = run_json(1, {"check", library()});

    ASSERT_EQ(result["found"].size(), 1u);
    EXPECT_EQ(result["found"][0]["kind"], "file");
    EXPECT_EQ(result["found"][0]["path"], "badge.png");
}

TEST_F(OdbCheck, IconOfNoObject_IsFoundAndRemovedWhenAsked)
{
    make_library();
    {
        ObjectDatabase database(library().c_str(), GIO::OpenReadWrite);
        database.remove_object(GString("badge.png"));  // leaves the icon
    }
    ASSERT_EQ(run_json(1, {"check", library()})["found"][0]["kind"], "icon");

    const nlohmann::json fixed = run_json(0, {"check", library(), "--fix"});

    EXPECT_EQ(fixed["fixed"], 1);
    EXPECT_EQ(run(0, {"check", library()}).out, "nothing amiss\n");
}

TEST_F(OdbCheck, ContentOfNoEntry_GetsOneWhenAskedAndKeepsItsIcon)
{
    make_library();
    const auto before = paths();
    {
        ObjectDatabase database(library().c_str(), GIO::OpenReadWrite);
        database.remove(GResourceFullName(GResourcePath(), GString("badge.png"),
                                          ObjectDatabase::MediatorResourceType));
    }
    ASSERT_NE(paths(), before);
    const nlohmann::json found = run_json(1, {"check", library()});
    ASSERT_EQ(found["found"].size(), 2u);  // its icon has no object either
    EXPECT_EQ(found["found"][0]["kind"], "entry");

    const nlohmann::json fixed = run_json(0, {"check", library(), "--fix"});

    EXPECT_EQ(fixed["fixed"], 1);
    EXPECT_EQ(paths(), before);
    ObjectDatabase database(library().c_str(), GIO::OpenRead);
    ODB_Mediator* const mediator = database.get_mediator(GString("badge.png"));
    ASSERT_NE(mediator, nullptr);
    EXPECT_EQ(mediator->get_object_class_name(), "PixelMap");
    EXPECT_TRUE(mediator->has_icon());
    const std::unique_ptr<GStreamable> object(mediator->get_object());
    EXPECT_NE(object, nullptr);
}

TEST_F(OdbCheck, EntryThatTellsAnotherClass_TakesThatOfItsObjectWhenAsked)
{
    make_library();
    {
        ObjectDatabase database(library().c_str(), GIO::OpenReadWrite);
        ODB_Options other;
        database.put(&other, GString("badge.png"), GString(".ODB default object's resource type"),
                     false);
    }
    const nlohmann::json found = run_json(1, {"check", library()});
    ASSERT_EQ(found["found"].size(), 1u);
    EXPECT_EQ(found["found"][0]["kind"], "class");
    EXPECT_EQ(found["found"][0]["reason"], "it holds ODB_Options, not PixelMap");

    EXPECT_EQ(run_json(0, {"check", library(), "--fix"})["fixed"], 1);

    EXPECT_EQ(run(0, {"check", library()}).out, "nothing amiss\n");
    ObjectDatabase database(library().c_str(), GIO::OpenRead);
    EXPECT_EQ(database.get_mediator(GString("badge.png"))->get_object_class_name(), "ODB_Options");
    EXPECT_TRUE(database.get_mediator(GString("badge.png"))->has_icon());
}

TEST_F(OdbCheck, MissingContent_IsFound)
{
    make_library();
    {
        ObjectDatabase database(library().c_str(), GIO::OpenReadWrite);
        database.remove(GResourceFullName(GResourcePath(), GString("badge.png"),
                                          GString(".ODB default object's resource type")));
    }

    const nlohmann::json result = run_json(1, {"check", library()});

    ASSERT_EQ(result["found"].size(), 1u);
    EXPECT_EQ(result["found"][0]["kind"], "object");
}

TEST_F(OdbCheck, NoLibrary_IsRefused)
{
    write("library.odb", "a letter");

    run(1, {"check", library()});
    run(1, {"check", file("none.odb"), "--fix"});
    EXPECT_EQ(read("library.odb"), "a letter");
    EXPECT_FALSE(exists("none.odb"));
}

TEST_F(OdbExternal, Objects_LieInFilesBesideTheLibraryAndMoveWithIt)
{
    run(0, {"import", library(), sample("badge.png"), "--external"});
    EXPECT_EQ(run_json(0, {"show", library(), "badge.png"})["mediator"], "ODB_ExternalObject");
    EXPECT_TRUE(exists("LOBJS"));

    make_folder("moved");
    std::filesystem::rename(folder_.path() / "library.odb", folder_.path() / "moved/library.odb");
    std::filesystem::rename(folder_.path() / "LOBJS", folder_.path() / "moved/LOBJS");

    EXPECT_EQ(run_json(0, {"show", file("moved/library.odb"), "badge.png"})["readable"], true);
    EXPECT_EQ(run(0, {"check", file("moved/library.odb")}).out, "nothing amiss\n");
}

TEST_F(OdbExternal, RemovedObject_TakesItsFileAlong)
{
    run(0, {"add", library(), sample("badge.png"), "--external"});

    run(0, {"remove", library(), "badge.png"});

    EXPECT_TRUE(std::filesystem::is_empty(folder_.path() / "LOBJS"));
}
