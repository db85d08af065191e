// A movie of an entry, played by the program where it lies in the library.
#include "EditorDriver.h"
#include "SampleLibrary.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MovieAttribute.h"
#include "scene_editor/resource.h"
#include "tests/odb/UncompressedMovie.h"
#include "tests/tools/ToolProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>

using testing::StartsWith;

namespace {

constexpr int kRowsOfRoot = 5;

/// The program on a library whose first entry has a movie, which plays.
class MovieOfAnEntry : public testing::Test {
protected:
    void SetUp() override
    {
        const std::string file = library_.beside("source.avi");
        std::ofstream(file, std::ios::binary) << movie_.bytes();
        {
            ObjectDatabase database(library_.file().c_str(), GIO::OpenReadWrite);
            ODB_MovieAttribute movie;
            database.get_mediator("root a")->set_attribute(&movie, false);
            movie.set_movie(file.c_str());
        }
        editor_ = std::make_unique<EditorDriver>(std::vector<std::string>{library_.file()});
        ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->rows() == kRowsOfRoot; }));
        ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->has_focus(IDC_ENTRIES); }));
        editor_->key(VK_HOME);
        editor_->key(VK_DOWN);
        editor_->key(VK_DOWN);
        ASSERT_TRUE(EditorDriver::wait_for([this] { return more() == "movie"; }));
        editor_->key('M', {VK_CONTROL});
        ASSERT_TRUE(EditorDriver::wait_for([this] {
            return window() != nullptr && ::GetForegroundWindow() == window() && !place().empty();
        }));
    }
    [[nodiscard]] static HWND window() { return ::FindWindowA(nullptr, "root a - Movie"); }
    [[nodiscard]] static std::string text_of(HWND control)
    {
        std::array<char, 256> text{};
        DWORD_PTR length = 0;
        ::SendMessageTimeout(control, WM_GETTEXT, text.size(),
                             reinterpret_cast<LPARAM>(text.data()), SMTO_ABORTIFHUNG,
                             EditorDriver::kLimitMs, &length);
        return text.data();
    }
    [[nodiscard]] std::string more() const
    {
        return text_of(::GetDlgItem(editor_->control(IDC_PREVIEW), 4));
    }
    [[nodiscard]] static std::string place()
    {
        return text_of(::GetDlgItem(window(), IDC_MOVIE_TEXT));
    }
    /// Frames go by.
    [[nodiscard]] static bool plays()
    {
        std::string last = place();
        for (int changes = 0; changes < 3; ++changes) {
            const bool has_changed = EditorDriver::wait_for([&last] { return place() != last; });
            if (!has_changed)
                return false;
            last = place();
        }
        return true;
    }
    [[nodiscard]] static bool shows_frame_text(int frame)
    {
        const std::string start = "Frame " + std::to_string(frame + 1) + " of ";
        return EditorDriver::wait_for([&] { return place().starts_with(start); });
    }
    /// Whether the window's picture is that frame, by the middles of some of its pixels.
    [[nodiscard]] bool shows_pixels_of(int frame) const
    {
        RECT slider{};
        ::GetWindowRect(::GetDlgItem(window(), IDC_MOVIE_SLIDER), &slider);
        POINT above{slider.left, slider.top};
        ::ScreenToClient(window(), &above);
        const EditorDriver::Picture shown = EditorDriver::picture_of(window());
        // The picture is in the middle of what is above the slider and a margin.
        const double scale = std::min(static_cast<double>(shown.width) / movie_.width,
                                      static_cast<double>(above.y) / movie_.height);
        const double left = (shown.width - scale * movie_.width) / 2;
        for (const int x : {2, 8, 13}) {
            for (const int row : {2, 6, 10}) {
                const double top_row = movie_.height - 1 - row;
                const double offset = (above.y - scale * movie_.height) / 2;
                const std::uint32_t pixel =
                    shown.at(static_cast<int>(left + (x + 0.5) * scale),
                             static_cast<int>(offset + (top_row + 0.5) * scale));
                const std::uint32_t expected =
                    static_cast<std::uint32_t>(movie_.value(frame, x, row, 2)) << 16 |
                    static_cast<std::uint32_t>(movie_.value(frame, x, row, 1)) << 8 |
                    movie_.value(frame, x, row, 0);
                if (pixel != expected)
                    return false;
            }
        }
        return true;
    }
    [[nodiscard]] bool wait_for_pixels_of(int frame) const
    {
        return EditorDriver::wait_for([&] { return shows_pixels_of(frame); });
    }
    [[nodiscard]] bool close_program()
    {
        ::PostMessage(::GetAncestor(editor_->control(IDC_ENTRIES), GA_ROOT), WM_CLOSE, 0, 0);
        return editor_->wait_for_end() == 0;
    }

    UncompressedMovie movie_;
    SampleLibrary library_;
    std::unique_ptr<EditorDriver> editor_;
};

}  // namespace

TEST_F(MovieOfAnEntry, PlaysPausesAndGoesFrameByFrame)
{
    ASSERT_TRUE(plays());
    editor_->key(VK_SPACE);
    editor_->key(VK_HOME);
    ASSERT_TRUE(shows_frame_text(0));
    EXPECT_TRUE(wait_for_pixels_of(0));
    editor_->key(VK_RIGHT);
    ASSERT_TRUE(shows_frame_text(1));
    editor_->key(VK_RIGHT);
    ASSERT_TRUE(shows_frame_text(2));
    EXPECT_TRUE(wait_for_pixels_of(2));
    editor_->key(VK_LEFT);
    ASSERT_TRUE(shows_frame_text(1));
    editor_->key(VK_END);
    ASSERT_TRUE(shows_frame_text(movie_.frames - 1));
    EXPECT_TRUE(wait_for_pixels_of(movie_.frames - 1));
    editor_->key(VK_RIGHT);
    EXPECT_TRUE(shows_frame_text(movie_.frames - 1));
    editor_->key(VK_SPACE);
    EXPECT_TRUE(plays());

    editor_->key(VK_ESCAPE);
    EXPECT_TRUE(EditorDriver::wait_for([] { return window() == nullptr; }));
    EXPECT_TRUE(editor_->is_alive());
    EXPECT_TRUE(close_program());
}

TEST_F(MovieOfAnEntry, PlaysOnWhileTheLibraryIsWritten)
{
    ASSERT_TRUE(plays());
    // The entry itself goes, and others are described, with the movie in view.
    const HWND list = editor_->control(IDC_ENTRIES);
    RECT area{};
    ::GetClientRect(list, &area);
    editor_->click(list, 60, area.bottom - 5);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->has_focus(IDC_ENTRIES); }));
    editor_->key(VK_HOME);
    editor_->key(VK_DOWN);
    editor_->key(VK_DOWN);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->previewed() == "root a"; }));
    editor_->key(VK_DELETE);
    ASSERT_TRUE(EditorDriver::wait_for([this] { return !editor_->message().empty(); }));
    editor_->type("y");
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->rows() == kRowsOfRoot - 1; }));
    EXPECT_TRUE(plays());
    ASSERT_TRUE(editor_->choose("lp", [this] { return !editor_->message().empty(); }));
    editor_->type("y");
    ASSERT_TRUE(EditorDriver::wait_for([this] { return editor_->message().empty(); }));
    EXPECT_TRUE(plays());

    EXPECT_TRUE(close_program());  // while it plays
    const ObjectDatabase database(library_.file().c_str(), GIO::OpenReadWrite);
    EXPECT_NE(database.server, nullptr);
    EXPECT_EQ(run_tool({"verify", library_.file()}).code, 0);
}
