#include "platform/RecentFileText.h"

#include <gtest/gtest.h>

#include <string>

using zmr::LastName;

namespace {

constexpr const char* kPath = "C:\\MODELS\\CARS\\C\\WHEEL.OBJ";  // 26 letters

std::string shortened(const char* path, int most_letters)
{
    return zmr::shortened_path(path, most_letters, LastName::Always);
}

}  // namespace

TEST(RecentFileText, PathThatFits_IsWhole)
{
    EXPECT_EQ(shortened(kPath, 26), kPath);
    EXPECT_EQ(shortened("", 0), "");
    EXPECT_EQ(shortened("name.obj", 8), "name.obj");
}

TEST(RecentFileText, LongPath_KeepsItsRootAndAsManyLastNamesAsFit)
{
    EXPECT_EQ(shortened(kPath, 25), "C:\\...\\CARS\\C\\WHEEL.OBJ");
    EXPECT_EQ(shortened(kPath, 23), "C:\\...\\CARS\\C\\WHEEL.OBJ");
    EXPECT_EQ(shortened(kPath, 22), "C:\\...\\C\\WHEEL.OBJ");
    EXPECT_EQ(shortened(kPath, 18), "C:\\...\\C\\WHEEL.OBJ");
    EXPECT_EQ(shortened(kPath, 17), "C:\\...\\WHEEL.OBJ");
    EXPECT_EQ(shortened(kPath, 16), "C:\\...\\WHEEL.OBJ");
}

TEST(RecentFileText, NoRoomForTheRoot_IsTheLastName)
{
    EXPECT_EQ(shortened(kPath, 15), "WHEEL.OBJ");
    EXPECT_EQ(shortened(kPath, 9), "WHEEL.OBJ");
}

TEST(RecentFileText, NoRoomForTheLastName_IsThatOrNothing)
{
    EXPECT_EQ(shortened(kPath, 8), "WHEEL.OBJ");
    EXPECT_EQ(zmr::shortened_path(kPath, 8, LastName::MayBeLeftOut), "");
    EXPECT_EQ(zmr::shortened_path(kPath, 9, LastName::MayBeLeftOut), "WHEEL.OBJ");
}

TEST(RecentFileText, ServersAndPlainRoots_AreKeptWhole)
{
    EXPECT_EQ(shortened("\\\\server\\share\\one\\two\\x.obj", 26), "\\\\server\\share\\...\\x.obj");
    EXPECT_EQ(shortened("/home/someone/models/x.obj", 20), "/.../models/x.obj");
    EXPECT_EQ(shortened("models/of/cars/x.obj", 15), ".../cars/x.obj");
}

TEST(RecentFileText, Letters_AreCharactersNotBytes)
{
    const std::string path = "/\xC3\xA4\xC3\xA4\xC3\xA4/\xE4\xB8\xAD.obj";  // 10 characters

    EXPECT_EQ(zmr::shortened_path(path, 10, LastName::Always), path);
    EXPECT_EQ(zmr::shortened_path(path, 9, LastName::Always), "\xE4\xB8\xAD.obj");
}

TEST(RecentFileText, FileOfTheCurrentFolder_IsItsName)
{
    for (const char* const folder : {"C:\\Models\\Cars\\C", "c:\\models/cars\\c\\"})
        EXPECT_EQ(zmr::recent_file_text(kPath, folder, 10, LastName::Always), "WHEEL.OBJ");
    EXPECT_EQ(zmr::recent_file_text("C:\\x.obj", "C:\\", 30, LastName::Always), "x.obj");
}

TEST(RecentFileText, FileOfAnotherFolder_IsShortened)
{
    for (const char* const folder : {"C:\\MODELS\\CARS", "C:\\MODELS\\CARS\\CC", "D:\\", ""})
        EXPECT_EQ(zmr::recent_file_text(kPath, folder, 16, LastName::Always), "C:\\...\\WHEEL.OBJ");
    EXPECT_EQ(zmr::recent_file_text(kPath, "D:\\", -1, LastName::Always), kPath);
}

TEST(RecentFileText, Items_AreNumberedAndShowAmpersands)
{
    EXPECT_EQ(zmr::recent_file_item(1, "R&D.odb"), "&1 R&&D.odb");
    EXPECT_EQ(zmr::recent_file_item(9, "x"), "&9 x");
    EXPECT_EQ(zmr::recent_file_item(10, "x"), "1&0 x");
    EXPECT_EQ(zmr::recent_file_item(11, "x"), "11 x");
}

TEST(RecentFileText, EveryLength_IsKeptToOrTheLastNameAlone)
{
    for (const char* const path :
         {kPath, "\\\\s\\h\\a\\b\\c.d", "/a/b/c", "a", "C:x\\y", "\\\\", "C:\\"})
        for (int most = 0; most < 40; ++most) {
            const std::string text = zmr::shortened_path(path, most, LastName::MayBeLeftOut);
            EXPECT_LE(text.size(), static_cast<std::size_t>(most)) << path;
        }
}
