#include "app/WindowPlacement.h"

#include "app/WindowPlacementRecord.h"
#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "platform/CFrameWnd.h"

#include <gtest/gtest.h>

namespace {

using zmr::WindowPlacementRecord;

/// A real top-level window.
class PlacedFrame : public CFrameWnd {
public:
    explicit PlacedFrame(DWORD style = WS_OVERLAPPEDWINDOW)
    {
        EXPECT_TRUE(Create(nullptr, "Placed", style, CRect(40, 50, 340, 250)));
    }

protected:
    void PostNcDestroy() override {}  // lies on the stack
};

WindowPlacementRecord saved(HWND window)
{
    ompstream out;
    GMfcSaveWindowPlacement(out, window);
    EXPECT_EQ(out.bytes().size(), 40u);
    impstream in(out.bytes());
    WindowPlacementRecord record;
    in >> record;
    return record;
}

void load(const WindowPlacementRecord& record, HWND window)
{
    ompstream out;
    out << record;
    impstream in(out.bytes());
    GMfcLoadWindowPlacement(in, window);
}

CRect normal_rect(HWND window)
{
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    EXPECT_TRUE(::GetWindowPlacement(window, &placement));
    return placement.rcNormalPosition;
}

WindowPlacementRecord record_at(const CRect& rect)
{
    WindowPlacementRecord record;
    record.left = rect.left;
    record.top = rect.top;
    record.right = rect.right;
    record.bottom = rect.bottom;
    return record;
}

}  // namespace

TEST(WindowPlacement, Streamed_TenValuesWhateverTheLengthHolds)
{
    for (const UINT length : {0u, 44u, 0xFFFFFFFFu}) {
        WINDOWPLACEMENT placement{};
        placement.length = length;
        placement.flags = 1;
        placement.showCmd = 2;
        placement.ptMinPosition = {3, 4};
        placement.ptMaxPosition = {5, 6};
        placement.rcNormalPosition = {7, 8, 9, -10};
        ompstream out;
        out << placement;
        ASSERT_EQ(out.bytes().size(), 40u);
        impstream numbers(out.bytes());
        for (unsigned long number = 1; number <= 9; ++number)
            EXPECT_EQ(numbers.readDWord(), number);
        EXPECT_EQ(numbers.readDWord(), 0xFFFFFFF6UL);

        impstream in(out.bytes());
        WINDOWPLACEMENT read{};
        read.length = 77;
        in >> read;
        EXPECT_EQ(read.length, 77u) << "the length is left alone";
        EXPECT_EQ(read.flags, 1u);
        EXPECT_EQ(read.showCmd, 2u);
        EXPECT_EQ(read.ptMaxPosition.y, 6);
        EXPECT_EQ(read.rcNormalPosition.bottom, -10);
    }
}

TEST(WindowPlacement, SavedAndLoaded_PutsTheWindowBack)
{
    PlacedFrame frame;
    frame.ShowWindow(SW_SHOWNA);
    const CRect before = normal_rect(frame.m_hWnd);
    ompstream out;
    GMfcSaveWindowPlacement(out, frame.m_hWnd);
    frame.MoveWindow(CRect(100, 120, 250, 260));
    ASSERT_NE(normal_rect(frame.m_hWnd), before);
    impstream in(out.bytes());
    GMfcLoadWindowPlacement(in, frame.m_hWnd);

    EXPECT_EQ(normal_rect(frame.m_hWnd), before);
    EXPECT_TRUE(frame.IsWindowVisible());
    frame.DestroyWindow();
}

TEST(WindowPlacement, HiddenMaximisedWindow_SavesWithShowCmd0AndBit2OfFlags)
{
    PlacedFrame frame(WS_OVERLAPPEDWINDOW | WS_MAXIMIZE);
    ASSERT_TRUE(::IsZoomed(frame.m_hWnd));
    ASSERT_FALSE(frame.IsWindowVisible());
    const WindowPlacementRecord record = saved(frame.m_hWnd);

    EXPECT_EQ(record.show, 0u);
    EXPECT_EQ(record.flags & 2, 2u);
    frame.DestroyWindow();
}

TEST(WindowPlacement, HiddenWindow_ComesBackHidden)
{
    PlacedFrame hidden;
    ompstream out;
    GMfcSaveWindowPlacement(out, hidden.m_hWnd);
    PlacedFrame shown;
    shown.ShowWindow(SW_SHOWNA);
    impstream in(out.bytes());
    GMfcLoadWindowPlacement(in, shown.m_hWnd);

    EXPECT_FALSE(shown.IsWindowVisible());
    shown.DestroyWindow();
    hidden.DestroyWindow();
}

TEST(WindowPlacement, MaximisedWindow_ComesBackMaximised)
{
    PlacedFrame frame;
    frame.ShowWindow(SW_SHOWMAXIMIZED);
    const WindowPlacementRecord record = saved(frame.m_hWnd);
    EXPECT_EQ(record.show, static_cast<std::uint32_t>(SW_SHOWMAXIMIZED));
    frame.ShowWindow(SW_RESTORE);
    load(record, frame.m_hWnd);

    EXPECT_TRUE(::IsZoomed(frame.m_hWnd));
    frame.DestroyWindow();
}

TEST(WindowPlacement, RectangleThatNoMonitorShows_IsMovedIntoTheWorkArea)
{
    PlacedFrame frame;
    frame.ShowWindow(SW_SHOWNA);
    for (const CRect& unseen :
         {CRect(30'000, 30'000, 30'300, 30'200), CRect(-30'000, 10, -29'700, 210),
          CRect(-2'000'000'000, -2'000'000'000, -1'999'999'000, -1'999'999'000)}) {
        load(record_at(unseen), frame.m_hWnd);
        CRect rect;
        frame.GetWindowRect(&rect);
        EXPECT_NE(::MonitorFromRect(&rect, MONITOR_DEFAULTTONULL), nullptr) << unseen.left;
        EXPECT_TRUE(frame.IsWindowVisible());
    }
    frame.DestroyWindow();
}

TEST(WindowPlacement, RectangleWithoutASize_GetsOne)
{
    PlacedFrame frame;
    frame.ShowWindow(SW_SHOWNA);
    load(record_at(CRect(500, 500, 400, 400)), frame.m_hWnd);
    const CRect rect = normal_rect(frame.m_hWnd);

    EXPECT_GT(rect.Width(), 300);
    EXPECT_GT(rect.Height(), 200);
    frame.DestroyWindow();
}

TEST(WindowPlacement, UnknownWayToShow_BecomesTheNormalOne)
{
    PlacedFrame frame;
    WindowPlacementRecord record = record_at(CRect(60, 70, 260, 270));
    record.show = 0xFFFFFFFF;
    record.flags = 0xFFFFFFF8;
    load(record, frame.m_hWnd);

    EXPECT_EQ(normal_rect(frame.m_hWnd), CRect(60, 70, 260, 270));
    EXPECT_TRUE(frame.IsWindowVisible());
    frame.DestroyWindow();
}

TEST(WindowPlacement, ChildWithoutASize_StaysAsTheRecordSays)
{
    PlacedFrame frame;
    frame.ShowWindow(SW_SHOWNA);
    const HWND child = ::CreateWindowA("STATIC", "", WS_CHILD | WS_VISIBLE, 0, 0, 10, 10,
                                       frame.m_hWnd, nullptr, nullptr, nullptr);
    ASSERT_NE(child, nullptr);
    load(record_at(CRect(5, 6, 5, 6)), child);

    EXPECT_EQ(normal_rect(child), CRect(5, 6, 5, 6));
    frame.DestroyWindow();
}

TEST(WindowPlacement, StreamCutAtEachLength_ThrowsAndMovesNothing)
{
    PlacedFrame frame;
    const CRect before = normal_rect(frame.m_hWnd);
    ompstream out;
    out << record_at(CRect(60, 70, 260, 270));
    for (std::size_t length = 0; length < 40; ++length) {
        impstream in(out.bytes().first(length));
        EXPECT_THROW(GMfcLoadWindowPlacement(in, frame.m_hWnd), GStreamException);
    }
    EXPECT_EQ(normal_rect(frame.m_hWnd), before);
    frame.DestroyWindow();
}

TEST(WindowPlacement, WindowThatIsGone_WritesAHiddenRecordAndReadsWithoutHarm)
{
    const WindowPlacementRecord record = saved(nullptr);
    EXPECT_EQ(record.show, 0u);
    load(record, nullptr);
}
