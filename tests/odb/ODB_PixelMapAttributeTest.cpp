#include "odb/ODB_PixelMapAttribute.h"

#include "TestObjects.h"
#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "store/GResourceIterators.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

PixelMap map_of(int width)
{
    return PixelMap(width, 3, AbstractImage::MapFormat(6), nullptr);
}

/// A database with entries that have the attribute.
class PicturesTest : public OdbTest {
public:
    ODB_PixelMapAttribute& pictures_of(const char* name)
    {
        if (!database.object_exists(GString(name)))
            add(name, "x");
        auto attribute = std::make_unique<ODB_PixelMapAttribute>();
        database.get_mediator(GString(name))->set_attribute(attribute.get(), false);
        attributes_.push_back(std::move(attribute));
        return *attributes_.back();
    }
    static std::vector<std::string> names_of(const ODB_PixelMapAttribute& attribute)
    {
        GStringCollection names;
        names.v_insert(gnewstr("stale"));
        attribute.get_names(names);
        EXPECT_NE(names.owns_items, 0);
        std::vector<std::string> result;
        for (long i = 0; i < names.count; ++i)
            result.emplace_back(names.at(i));
        return result;
    }
    static int width_of(const ODB_PixelMapAttribute& attribute, const char* name)
    {
        const std::unique_ptr<PixelMap> map(attribute.get_map(name));
        return map == nullptr ? 0 : map->get_width();
    }

private:
    std::vector<std::unique_ptr<ODB_PixelMapAttribute>> attributes_;
};

using Names = std::vector<std::string>;

}  // namespace

TEST(ODB_PixelMapAttribute, Names_AreOnlyThoseOfThisEntry)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    ODB_PixelMapAttribute& chair = test.pictures_of("chair");
    PixelMap map = map_of(4);
    lamp.add_map("front", &map);
    lamp.add_map("back", &map);
    chair.add_map("front", &map);
    chair.add_map("side", &map);

    EXPECT_EQ(PicturesTest::names_of(lamp), (Names{"back", "front"}));
    EXPECT_EQ(PicturesTest::names_of(chair), (Names{"front", "side"}));
    EXPECT_EQ(PicturesTest::names_of(test.pictures_of("table")), Names{});
}

TEST(ODB_PixelMapAttribute, Names_OfTheSameEntryNameInAnotherDirectory_StayApart)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap map = map_of(4);
    lamp.add_map("front", &map);
    TestNote note("x");
    const GResourcePath path = path_of({"deep"});
    test.database.append_object(&note, path, GString("lamp"), nullptr);
    ODB_PixelMapAttribute deep;
    test.database.get_mediator(path, GString("lamp"))->set_attribute(&deep, false);
    deep.add_map("below", &map);

    EXPECT_EQ(PicturesTest::names_of(lamp), Names{"front"});
    EXPECT_EQ(PicturesTest::names_of(deep), Names{"below"});
}

TEST(ODB_PixelMapAttribute, AddMap_UnderAnExistingName_ReplacesThatPicture)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap first = map_of(4);
    PixelMap second = map_of(9);
    lamp.add_map("front", &first);

    lamp.add_map("front", &second);

    EXPECT_EQ(PicturesTest::width_of(lamp, "front"), 9);
    EXPECT_EQ(PicturesTest::names_of(lamp), Names{"front"});
}

TEST(ODB_PixelMapAttribute, AddMap_WithNothing_DoesNothing)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap map = map_of(4);

    lamp.add_map(nullptr, &map);
    lamp.add_map("front", static_cast<PixelMap*>(nullptr));
    lamp.add_map("front", test.folder.file("missing.png").c_str());
    lamp.remove_map("front");

    EXPECT_EQ(PicturesTest::names_of(lamp), Names{});
}

TEST(ODB_PixelMapAttribute, AddMap_OfAFile_StoresThePicture)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    const PixelMap map = map_of(11);
    const std::string file = test.folder.file("front.bmp");
    ASSERT_TRUE(PixelMapTools::SaveToFile(&map, file.c_str(), true));

    lamp.add_map("front", file.c_str());

    EXPECT_EQ(PicturesTest::width_of(lamp, "front"), 11);
}

TEST(ODB_PixelMapAttribute, GetMap_MakesANewOneForEachCaller)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap map = map_of(4);
    lamp.add_map("front", &map);

    const std::unique_ptr<PixelMap> first(lamp.get_map("front"));
    const std::unique_ptr<PixelMap> second(lamp.get_map("front"));

    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(lamp.get_map("back"), nullptr);
}

TEST(ODB_PixelMapAttribute, GetMap_OfAnotherClass_IsNull)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    const int alive = TestNote::alive;
    TestNote note("no picture");
    test.database.put(
        &note,
        GResourceFullName(GResourcePath(), GString("lamp"), GString("ODB_PixelMapAttribute.front")),
        false);

    EXPECT_EQ(lamp.get_map("front"), nullptr);
    EXPECT_EQ(TestNote::alive, alive + 1);
}

TEST(ODB_PixelMapAttribute, RemoveMap_TakesThatPictureOnly)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap map = map_of(4);
    lamp.add_map("front", &map);
    lamp.add_map("back", &map);

    lamp.remove_map("front");

    EXPECT_EQ(PicturesTest::names_of(lamp), Names{"back"});
    EXPECT_EQ(PicturesTest::width_of(lamp, "front"), 0);
}

TEST(ODB_PixelMapAttribute, NameWithADot_Survives)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap map = map_of(4);

    lamp.add_map("front.small.png", &map);
    lamp.add_map("", &map);
    lamp.add_map("ODB_PixelMapAttribute.", &map);

    EXPECT_EQ(PicturesTest::names_of(lamp),
              (Names{"", "ODB_PixelMapAttribute.", "front.small.png"}));
    EXPECT_EQ(PicturesTest::width_of(lamp, "front.small.png"), 4);
}

TEST(ODB_PixelMapAttribute, RemovingTheEntry_RemovesItsPictures)
{
    PicturesTest test;
    PixelMap map = map_of(4);
    test.pictures_of("lamp").add_map("front", &map);

    test.database.remove_object(GString("lamp"));

    GResourceTypeIterator types(test.database);
    EXPECT_EQ(types.index, -1);
}

TEST(ODB_PixelMapAttribute, RenamingTheEntry_MovesItsPictures)
{
    PicturesTest test;
    PixelMap map = map_of(4);
    test.pictures_of("lamp").add_map("front", &map);

    test.database.rename_object(GString("lamp"), GString("light"));

    EXPECT_EQ(PicturesTest::names_of(test.pictures_of("light")), Names{"front"});
    EXPECT_EQ(PicturesTest::names_of(test.pictures_of("lamp")), Names{});
}

TEST(ODB_PixelMapAttribute, Stream_IsTwoBytesWithoutTheNames)
{
    PicturesTest test;
    ODB_PixelMapAttribute& lamp = test.pictures_of("lamp");
    PixelMap map = map_of(4);
    lamp.add_map("front", &map);

    ompstream out;
    lamp.write(out);

    EXPECT_TRUE(std::ranges::equal(out.bytes(), std::vector<unsigned char>{0, 0}));
    impstream in(out.bytes());
    ODB_PixelMapAttribute back;
    back.read(in);
    EXPECT_EQ(in.remaining(), 0);
    impstream cut(out.bytes().first(1));
    EXPECT_THROW(back.read(cut), GStreamException);
}
