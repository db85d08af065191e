#include "odb/ObjectFileNames.h"

#include "foundation/FileSystem.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ObjectDatabase.h"
#include "store/GObjectPlace.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

GFile native(const std::string& name)
{
    GFile file(name.c_str());
    file.expand();
    return file;
}

}  // namespace

TEST(ObjectFileNames, ResolveFilename_FullName_Stays)
{
    const TemporaryFolder folder;
    const GFile full = native(folder.file("x/a.lob"));

    EXPECT_EQ(zmr::resolve_filename(GFile("anything"), full), full);
}

TEST(ObjectFileNames, ResolveFilename_RelativeName_LiesBesideAFileAndInADirectory)
{
    const TemporaryFolder folder;
    const GFile library = native(folder.file("library.odb"));

    EXPECT_EQ(zmr::resolve_filename(library, GFile("a.lob")), native(folder.file("a.lob")));
    EXPECT_EQ(zmr::resolve_filename(native(folder.file("")), GFile("a.lob")),
              native(folder.file("a.lob")));
    EXPECT_EQ(zmr::resolve_filename(GFile(), GFile("a.lob")), GFile("a.lob"));
}

TEST(ObjectFileNames, IsUsableFile_EmptyMaskDirectoryAndInvalidAreNot)
{
    const TemporaryFolder folder;
    const std::string too_long(300, 'x');

    EXPECT_FALSE(zmr::is_usable_file(GFile()));
    EXPECT_FALSE(zmr::is_usable_file(native(folder.file("*.lob"))));
    EXPECT_FALSE(zmr::is_usable_file(native(folder.file("a?.lob"))));
    EXPECT_FALSE(zmr::is_usable_file(native(folder.file(""))));
    EXPECT_FALSE(zmr::is_usable_file(native(folder.file(too_long))));
    EXPECT_TRUE(zmr::is_usable_file(native(folder.file("none/a.lob"))));
}

TEST(ObjectFileNames, FilenameOfPlace_IsEmptyForOtherPlaces)
{
    GObjectPlace entry;
    entry = new ODB_ObjectPlacement("library.odb", GResourcePath(), GString("lamp"));

    EXPECT_TRUE(zmr::filename_of_place(entry).is_empty());
    EXPECT_TRUE(zmr::filename_of_place(GObjectPlace()).is_empty());
    EXPECT_EQ(zmr::filename_of_place(GObjectPlace("a.lob", false, nullptr)), "a.lob");
}

TEST(ObjectFileNames, UniqueFile_FreeName_IsKeptAndExpanded)
{
    const TemporaryFolder folder;

    EXPECT_EQ(zmr::unique_file(folder.file("sub/../a.lob").c_str(), nullptr),
              native(folder.file("a.lob")));
}

TEST(ObjectFileNames, UniqueFile_TakenName_IsMadeUpWithTheExtensionGiven)
{
    const TemporaryFolder folder;
    std::ofstream(folder.file("a.lob")) << "taken";

    const GFile plain = zmr::unique_file(folder.file("a.lob").c_str(), nullptr);
    const GFile extended = zmr::unique_file(folder.file("a.lob").c_str(), "obj");

    EXPECT_EQ(plain.get_directory(), native(folder.file("")));
    EXPECT_EQ(plain.get_name().view().size(), 8U);
    EXPECT_EQ(extended.get_name().view().size(), 12U);
    EXPECT_EQ(extended.get_extension(), "obj");
    EXPECT_FALSE(plain.exists());
    EXPECT_FALSE(plain.isMask());
}

TEST(ObjectFileNames, UniqueFile_MaskAndDirectory_AreFilled)
{
    const TemporaryFolder folder;

    const GFile starred = zmr::unique_file(folder.file("*.lob").c_str(), "obj");
    const GFile marked = zmr::unique_file(folder.file("a??.lob").c_str(), nullptr);
    const GFile inside = zmr::unique_file(folder.file("").c_str(), nullptr);

    EXPECT_EQ(starred.get_name().view().size(), 12U);
    EXPECT_EQ(starred.get_extension(), "lob");
    EXPECT_EQ(marked.get_name().view().size(), 7U);
    EXPECT_EQ(marked.get_name().text[0], 'a');
    EXPECT_EQ(inside.get_directory(), native(folder.file("")));
    EXPECT_EQ(inside.get_name().view().size(), 8U);
}
