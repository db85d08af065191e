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
#include <filesystem>
#include <fstream>

using testing::StartsWith;

namespace {

constexpr int kRowsOfRoot = 5;

/// The program on a library whose first entry has a movie.
class MovieOfAnEntry : public testing::Test {
protected:
    void show_movie(const std::string& bytes)
    {
        const std::string file = library_.beside("source.avi");
        std::ofstream(file, std::ios::binary) << bytes;
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
        ASSERT_TRUE(EditorDriver::wait_for(
            [] { return window() != nullptr && ::GetForegroundWindow() == window(); }));
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

/// That movie plays.
class PlayedMovie : public MovieOfAnEntry {
protected:
    void SetUp() override
    {
        ASSERT_NO_FATAL_FAILURE(show_movie(movie_.bytes()));
        ASSERT_TRUE(EditorDriver::wait_for([] { return !place().empty(); }));
    }
};

/// The movie in the form that only the decoder of this test reads.
std::string movie_for_the_faulty_decoder(std::string bytes)
{
    constexpr std::size_t kHandlerBehindType = 4;
    constexpr std::size_t kCompressionBehindId = 8 + 16;
    bytes.replace(bytes.find("vids") + kHandlerBehindType, 4, "zflt");
    bytes.replace(bytes.find("strf") + kCompressionBehindId, 4, "zflt");
    return bytes;
}

/// A decoder that the system knows while this lives.
class InstalledDecoder {
public:
    InstalledDecoder(const std::string& form, std::string file) : name_("vidc." + form)
    {
        std::replace(file.begin(), file.end(), '/', '\\');
        is_there_ = ::RegSetKeyValueA(HKEY_LOCAL_MACHINE, kKey, name_.c_str(), REG_SZ, file.c_str(),
                                      static_cast<DWORD>(file.size() + 1)) == ERROR_SUCCESS;
    }
    ~InstalledDecoder()
    {
        if (is_there_)
            ::RegDeleteKeyValueA(HKEY_LOCAL_MACHINE, kKey, name_.c_str());
    }
    InstalledDecoder(const InstalledDecoder&) = delete;
    InstalledDecoder& operator=(const InstalledDecoder&) = delete;

    [[nodiscard]] bool is_there() const { return is_there_; }

private:
    static constexpr const char* kKey =
        "Software\\Microsoft\\Windows NT\\CurrentVersion\\Drivers32";
    std::string name_;
    bool is_there_ = false;
};

/// Whether white text stands on black above the window's controls.
bool shows_reason(HWND window)
{
    constexpr std::uint32_t kWhite = 0xFFFFFF;
    const EditorDriver::Picture shown = EditorDriver::picture_of(window);
    for (int x = 0; x < shown.width; ++x) {
        for (int y = 0; y < shown.height / 2; ++y)
            if (shown.at(x, y) == kWhite)
                return true;
    }
    return false;
}

}  // namespace

TEST_F(MovieOfAnEntry, DecoderFaults_EndsTheMovieAndNotTheProgram)
{
    const InstalledDecoder decoder("zflt", ZMR_FAULTY_DECODER);
    ASSERT_TRUE(decoder.is_there()) << "installing one takes the rights of an administrator";
    const std::string calls = library_.beside("calls.txt");
    ::SetEnvironmentVariableA("ZMR_DECODER_CALLS", calls.c_str());
    ASSERT_NO_FATAL_FAILURE(show_movie(movie_for_the_faulty_decoder(movie_.bytes())));

    EXPECT_TRUE(EditorDriver::wait_for([&] { return std::filesystem::exists(calls); }));
    EXPECT_TRUE(EditorDriver::wait_for([] { return shows_reason(window()); }));
    EXPECT_TRUE(editor_->is_alive());
    EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(window(), IDC_MOVIE_PLAY)));
    editor_->key(VK_SPACE);
    editor_->key(VK_ESCAPE);
    EXPECT_TRUE(EditorDriver::wait_for([] { return window() == nullptr; }));
    EXPECT_TRUE(editor_->is_alive());
    EXPECT_EQ(editor_->message(), "");
    EXPECT_TRUE(close_program());
}

TEST_F(PlayedMovie, PlaysPausesAndGoesFrameByFrame)
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

TEST_F(PlayedMovie, PlaysOnWhileTheLibraryIsWritten)
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
