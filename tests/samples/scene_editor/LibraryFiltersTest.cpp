#include "scene_editor/core/LibraryFilters.h"

#include "SampleLibrary.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_ContentsFilter.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_RegularExpressionFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace editor;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(LibraryFilters, MadeFilter_TellsWhatItWasMadeOf)
{
    const EntryFilter all{"PixelMap", true, "root .*"};
    const auto filter = make_filter(all);

    EXPECT_EQ(filter_of(*filter), all);
    EXPECT_EQ(filter_of(*make_filter({})), EntryFilter{});
    const zmr::OwnedObject<ODB_ContentsFilter> other(new ODB_RegularExpressionFilter("x"));
    EXPECT_EQ(filter_of(*other), std::nullopt);
}

TEST(LibraryFilters, MadeFilter_WantsTheClassAndTheName)
{
    const SampleLibrary library;
    ObjectDatabase database(library.file().c_str(), GIO::OpenRead);
    const ODB_Mediator* const entry = database.get_mediator("root a");
    ASSERT_NE(entry, nullptr);

    EXPECT_NE(make_filter({"PixelMap", false, "root .*"})->accept(*entry), 0);
    EXPECT_EQ(make_filter({"PixelMap", false, "root"})->accept(*entry), 0);
    EXPECT_EQ(make_filter({"GStreamable", false, {}})->accept(*entry), 0);
    EXPECT_NE(make_filter({})->accept(*entry), 0);
}

TEST(LibraryFilters, WithBases_TakesBasesOfTheClassAndNoDerivedOnes)
{
    const SampleLibrary library;
    ObjectDatabase database(library.file().c_str(), GIO::OpenRead);
    const ODB_Mediator* const picture = database.get_mediator("root a");
    ASSERT_NE(picture, nullptr);

    EXPECT_NE(make_filter({"PixelMap", true, {}})->accept(*picture), 0);
    EXPECT_EQ(make_filter({"GStreamable", true, {}})->accept(*picture), 0);
}

TEST(LibraryFilters, SavedOnes_StayInTheLibraryUntilTheyAreRemoved)
{
    const SampleLibrary library;
    const SavedFilter pictures{"all pictures", {"PixelMap", false, {}}};
    const SavedFilter rings{"Rings", {{}, false, ".*ring.*"}};
    {
        ObjectDatabase database(library.file().c_str(), GIO::OpenReadWrite);
        save_filter(database, rings);
        save_filter(database, {"all pictures", {"PixelMap", true, "x"}});
        save_filter(database, pictures);
    }
    {
        ObjectDatabase database(library.file().c_str(), GIO::OpenReadWrite);
        EXPECT_THAT(saved_filters(database), ElementsAre(pictures, rings));
        remove_filter(database, "Rings");
    }
    ObjectDatabase database(library.file().c_str(), GIO::OpenRead);
    EXPECT_THAT(saved_filters(database), ElementsAre(pictures));
    GStringCollection names;
    database.get_names(names, true);
    EXPECT_EQ(names.count, 6);  // a filter is no entry
}

TEST(LibraryFilters, ResourceThatIsNoFilter_IsLeftOut)
{
    const SampleLibrary library;
    ObjectDatabase database(library.file().c_str(), GIO::OpenReadWrite);
    save_filter(database, {"good", {"PixelMap", false, {}}});
    PixelMap picture(2, 2, AbstractImage::Format24, nullptr);
    database.put(&picture, {GResourcePath(), "bad", "scene editor's filter"}, false);
    const zmr::OwnedObject<ODB_ContentsFilter> lone(new ODB_ClassFilter("PixelMap", 0));
    database.put(lone.get(), {GResourcePath(), "lone", "scene editor's filter"}, false);

    EXPECT_THAT(saved_filters(database), testing::SizeIs(1));
}

TEST(LibraryFilters, Line_WithASlashInFrontIsAnExpression)
{
    EXPECT_EQ(parse_filter_line("ring"), (FilterLine{"ring", "", true}));
    EXPECT_EQ(parse_filter_line("/ring.*"), (FilterLine{"", "ring.*", true}));
    EXPECT_EQ(parse_filter_line("/ring.*/"), (FilterLine{"", "ring.*", true}));
    EXPECT_EQ(parse_filter_line("/(ring"), (FilterLine{"", "(ring", false}));
    EXPECT_EQ(parse_filter_line("/"), (FilterLine{"", "", true}));
    EXPECT_EQ(parse_filter_line(""), (FilterLine{"", "", true}));
    EXPECT_EQ(parse_filter_line(filter_line("a/b")).expression, "a/b");
    EXPECT_EQ(filter_line(""), "");
}

TEST(LibraryFilters, ExpressionForAText_MatchesNamesWithItInEitherCase)
{
    const RegularExpression ring(expression_for("ring.o").c_str());

    EXPECT_TRUE(ring == "My Ring.OBJ");
    EXPECT_TRUE(ring == "ring.o");
    EXPECT_FALSE(ring == "ringxo");
    for (int code = 33; code < 127; ++code) {
        const std::string text = std::string("a") + static_cast<char>(code);
        const RegularExpression expression(expression_for(text).c_str());
        EXPECT_TRUE(expression == ("x" + text + "y").c_str()) << text;
        EXPECT_FALSE(expression == "x") << text;
    }
}

TEST(LibraryFilters, Choices_AreAllThenClassesThenSavedOnes)
{
    const SavedFilter saved{"rings", {{}, false, "ring"}};
    const std::vector<FilterChoice> choices =
        filter_choices({"SceneMesh", "", "PixelMap"}, {saved});

    EXPECT_THAT(choices,
                ElementsAre(FilterChoice{"All entries", {}, false},
                            FilterChoice{"PixelMap", {"PixelMap", false, {}}, false},
                            FilterChoice{"PixelMap and its bases", {"PixelMap", true, {}}, false},
                            FilterChoice{"SceneMesh", {"SceneMesh", false, {}}, false},
                            FilterChoice{"SceneMesh and its bases", {"SceneMesh", true, {}}, false},
                            FilterChoice{"Filter: rings", saved.filter, true}));
}
