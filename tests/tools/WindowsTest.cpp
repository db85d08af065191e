// What only Windows can bring about from outside.
#include "platform/Handles.h"
#include "platform/WideText.h"
#include "tests/tools/ToolTest.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

class OdbOnWindows : public ToolTest {
protected:
    // Another program's handle on the library, which lets others do no more than `share` tells.
    [[nodiscard]] zmr::OwnedKernelHandle hold_library(DWORD share) const
    {
        std::wstring name;
        EXPECT_TRUE(zmr::to_wide(library(), name));
        const HANDLE handle =
            ::CreateFileW(name.c_str(), GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr);
        return zmr::OwnedKernelHandle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
    }
};

TEST_F(OdbOnWindows, LibraryHeldAgainstWriting_IsReadAndNotWritten)
{
    make_library();
    const auto held = hold_library(FILE_SHARE_READ);
    ASSERT_TRUE(held);

    EXPECT_EQ(paths().size(), 3u);
    const ToolResult result = run(1, {"add", library(), sample("tiles.bmp")});

    EXPECT_THAT(result.err, HasSubstr("library.odb"));
    EXPECT_THAT(result.err, HasSubstr("use"));
    EXPECT_EQ(paths().size(), 3u);
}

TEST_F(OdbOnWindows, LibraryHeldAgainstAll_IsRefused)
{
    make_library();
    const auto held = hold_library(0);
    ASSERT_TRUE(held);

    const ToolResult result = run(1, {"list", library()});

    EXPECT_THAT(result.err, HasSubstr("library.odb"));
    EXPECT_THAT(result.err, HasSubstr("use"));
}

TEST_F(OdbOnWindows, FolderInTheLibrarysPlace_IsRefused)
{
    make_folder("library.odb");

    EXPECT_THAT(run(1, {"add", library(), sample("tiles.bmp")}).err, HasSubstr("library.odb"));
    EXPECT_THAT(run(1, {"list", library()}).err, HasSubstr("library.odb"));
}
