// Libraries whose bytes are kept in data/: they open with all that they hold, and the same content
// is written with the same bytes in every lane.

#include "GoldenLibraries.h"
#include "SeenLibrary.h"
#include "TestObjects.h"
#include "store/StoreFiles.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

std::string bytes_of(const char* name)
{
    std::ifstream file(std::filesystem::path(ZMR_GOLDEN_LIBRARIES) / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What a user must find in each of them.
SeenLibrary expected_of(const std::string& library)
{
    const std::string note = "ODB_InternalObject TestNote ";
    const std::string outside = "ODB_ExternalObject TestNote ";
    const std::string reference = "ODB_ReferenceToObject TestNote ";
    if (library == "objects")
        return {{"chair", note + "four legs"},
                {"table", note},
                {"rooms/hall", note + "wide"},
                {"rooms/upper/attic", note + "dark"},
                {"rooms/upper/chair", note + "another of that name"}};
    if (library == "pictures")
        return {{"lamp", note + "with all icon 32 ODB_PixelMapAttribute back front"
                                " ODB_TextDescriptionAttribute A lamp of brass. TestRating 4"},
                {"plain", note + "with none"}};
    if (library == "references")
        return {{"originals/vase", note + "of clay icon 20"},
                {"first", reference + "of clay icon 20"},
                {"second", reference + "of clay icon 20"},
                {"to nothing", reference + "(none)"}};
    if (library == "externals")
        return {{"small", outside + "in a file"},
                {"long", outside + std::string(5000, 'l')},
                {"inside", note + "in the library"}};
    if (library == "contents")
        return {{"in the index", note + "short"},
                {"noise", note + test_noise(3000)},
                {"compressed", note + std::string(100000, 'c') + test_noise(700)}};
    return {{"one", note + "written anew"},
            {"copy", note + "written anew"},
            {"kept/third", note + test_noise(1500)},
            {"last", note + "behind the packing"}};
}

class GoldenLibraries : public testing::TestWithParam<GoldenLibrary> {};

}  // namespace

void PrintTo(const GoldenLibrary& library, std::ostream* out)
{
    *out << library.name;
}

TEST_P(GoldenLibraries, WrittenAnew_BytesAreThose)
{
    const std::vector<std::string> written = write_golden(GetParam());

    ASSERT_EQ(written.size(), GetParam().files.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
        const std::string kept = bytes_of(GetParam().files[i]);
        ASSERT_FALSE(kept.empty()) << GetParam().files[i];
        EXPECT_EQ(written[i].size(), kept.size()) << GetParam().files[i];
        EXPECT_TRUE(written[i] == kept) << GetParam().files[i];
    }
}

TEST_P(GoldenLibraries, Opened_HoldsAllThatWasPutIn)
{
    zmr::FaultyFileSystem files;
    for (const char* const name : GetParam().files)
        files.set_bytes(golden_file(name), bytes_of(name));
    const zmr::StoreFilesInPlace in_place(files);

    EXPECT_EQ(see_library(golden_file(GetParam().files.front())), expected_of(GetParam().name));
}

TEST_P(GoldenLibraries, OpenedAndChanged_KeepsTheRest)
{
    zmr::FaultyFileSystem files;
    for (const char* const name : GetParam().files)
        files.set_bytes(golden_file(name), bytes_of(name));
    const zmr::StoreFilesInPlace in_place(files);
    const std::string file = golden_file(GetParam().files.front());
    {
        ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
        ASSERT_NE(database.server, nullptr) << database.open_error().text;
        const TestNote note("added");
        database.append_object(&note, GString("added"), nullptr);
        database.pack();
    }

    SeenLibrary expected = expected_of(GetParam().name);
    expected["added"] = "ODB_InternalObject TestNote added";
    EXPECT_EQ(see_library(file), expected);
}

INSTANTIATE_TEST_SUITE_P(Libraries, GoldenLibraries,
                         testing::ValuesIn(golden_libraries().begin(), golden_libraries().end()),
                         [](const auto& one) { return std::string(one.param.name); });
