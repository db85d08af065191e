#include "platform/CDC.h"

#include "platform/BufferedPaint.h"
#include "platform/CBrush.h"
#include "platform/CClientDC.h"
#include "platform/CFont.h"
#include "platform/CPaintDC.h"
#include "platform/CPen.h"
#include "platform/CResourceException.h"
#include "platform/CRgn.h"
#include "platform/CWindowDC.h"
#include "platform/CWnd.h"
#include "platform/ThreadState.h"
#include "tests/platform/windows/DrawingCanvas.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

/// A window on the screen that is painted by a function.
class PaintedWindow : public CWnd {
public:
    ~PaintedWindow() override { DestroyWindow(); }

    [[nodiscard]] bool open(DWORD style = WS_POPUP)
    {
        return CreateEx(0, nullptr, "painted", style | WS_VISIBLE, CRect(20, 20, 120, 80), nullptr,
                        0) != 0;
    }
    void paint_now(LPCRECT rect = nullptr)
    {
        RedrawWindow(rect, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
    }

    std::function<void(CPaintDC&)> painter = [](CPaintDC&) {};
    int paintings = 0;

protected:
    DECLARE_MESSAGE_MAP()

    void OnPaint()
    {
        ++paintings;
        CPaintDC dc(this);
        painter(dc);
    }
};

BEGIN_MESSAGE_MAP(PaintedWindow, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

}  // namespace

TEST(CDC, EndOfScope_DeletesAContextThatWasMade)
{
    HDC handle = nullptr;
    {
        CDC dc;
        ASSERT_TRUE(dc.CreateCompatibleDC(nullptr));
        handle = dc.GetSafeHdc();
        EXPECT_FALSE(dc.CreateCompatibleDC(nullptr));
        EXPECT_EQ(dc.m_hDC, handle);
    }

    EXPECT_EQ(::GetObjectType(handle), 0u);
}

TEST(CDC, AttachAndDetach_CarryTheHandle)
{
    zmr::OwnedMemoryDC made(::CreateCompatibleDC(nullptr));
    CDC dc;

    EXPECT_TRUE(dc.Attach(made.get()));
    EXPECT_FALSE(dc.Attach(made.get()));
    EXPECT_EQ(CDC::FromHandle(made.get()), &dc);
    EXPECT_EQ(dc.Detach(), made.get());
    EXPECT_EQ(dc.m_hDC, nullptr);
    EXPECT_FALSE(dc.DeleteDC());
    EXPECT_FALSE(CDC().Attach(nullptr));
}

TEST(CDC, FromHandle_OfAForeignContext_IsATemporaryThatNeverDeletesIt)
{
    const zmr::OwnedMemoryDC made(::CreateCompatibleDC(nullptr));
    CDC* const dc = CDC::FromHandle(made.get());
    ASSERT_NE(dc, nullptr);
    EXPECT_EQ(CDC::FromHandle(made.get()), dc);
    zmr::ThreadState::current().drop_temporaries();

    EXPECT_NE(::GetObjectType(made.get()), 0u);
    EXPECT_EQ(CDC::FromHandle(nullptr), nullptr);
}

TEST(CDC, GetSafeHdc_OfANullObject_IsNull)
{
    const CDC* volatile none = nullptr;

    EXPECT_EQ(none->GetSafeHdc(), nullptr);
}

TEST(CDC, SelectObject_GivesTheFormerObjectOfEachKind)
{
    DrawingCanvas canvas(4, 4);
    CPen pen(PS_SOLID, 1, kRed);
    CBrush brush(kRed);
    CFont font;
    font.CreatePointFont(90, "Tahoma");
    CPen* const former_pen = canvas.dc.SelectObject(&pen);
    CBrush* const former_brush = canvas.dc.SelectObject(&brush);
    CFont* const former_font = canvas.dc.SelectObject(&font);
    EXPECT_EQ(canvas.dc.GetCurrentPen(), &pen);
    EXPECT_EQ(canvas.dc.GetCurrentBrush(), &brush);
    EXPECT_EQ(canvas.dc.GetCurrentFont(), &font);
    ASSERT_NE(former_pen, nullptr);
    ASSERT_NE(former_brush, nullptr);
    ASSERT_NE(former_font, nullptr);

    EXPECT_EQ(canvas.dc.SelectObject(former_pen), &pen);
    EXPECT_EQ(canvas.dc.SelectObject(former_brush), &brush);
    EXPECT_EQ(canvas.dc.SelectObject(former_font), &font);
    EXPECT_EQ(canvas.dc.SelectStockObject(WHITE_PEN), former_pen);
}

TEST(CDC, SelectObject_OfNullOrEmpty_ChangesNothing)
{
    DrawingCanvas canvas(4, 4);
    CPen* const pen = canvas.dc.GetCurrentPen();
    CPen empty;

    EXPECT_EQ(canvas.dc.SelectObject(static_cast<CPen*>(nullptr)), nullptr);
    EXPECT_EQ(canvas.dc.SelectObject(&empty), nullptr);
    EXPECT_EQ(canvas.dc.GetCurrentPen(), pen);
}

TEST(CDC, FillSolidRect_FillsAndKeepsTheBackgroundColour)
{
    DrawingCanvas canvas(10, 10);
    canvas.dc.SetBkColor(kBlue);
    canvas.dc.FillSolidRect(CRect(1, 2, 4, 4), kRed);
    canvas.dc.FillSolidRect(6, 6, 2, 1, kGreen);

    EXPECT_EQ(canvas.count(kRed), 6);
    EXPECT_EQ(canvas.pixel(1, 2), kRed);
    EXPECT_EQ(canvas.pixel(3, 3), kRed);
    EXPECT_EQ(canvas.count(kGreen), 2);
    EXPECT_EQ(canvas.pixel(7, 6), kGreen);
    EXPECT_EQ(canvas.dc.GetBkColor(), kBlue);
}

TEST(CDC, Draw3dRect_DrawsABorderOnePixelWideInside)
{
    DrawingCanvas canvas(10, 10);
    canvas.dc.Draw3dRect(CRect(2, 2, 8, 7), kRed, kGreen);

    EXPECT_EQ(canvas.pixel(2, 2), kRed);
    EXPECT_EQ(canvas.pixel(6, 2), kRed);
    EXPECT_EQ(canvas.pixel(2, 5), kRed);
    EXPECT_EQ(canvas.pixel(7, 2), kGreen);
    EXPECT_EQ(canvas.pixel(2, 6), kGreen);
    EXPECT_EQ(canvas.pixel(7, 6), kGreen);
    EXPECT_EQ(canvas.pixel(3, 3), kBlack);
    EXPECT_EQ(canvas.pixel(8, 7), kBlack);
    EXPECT_EQ(canvas.count(kRed) + canvas.count(kGreen), 18);
}

TEST(CDC, LinesAndRectangles_UsePenAndBrush)
{
    DrawingCanvas canvas(12, 12);
    CPen pen(PS_SOLID, 1, kRed);
    CBrush brush(kBlue);
    CPen* const former_pen = canvas.dc.SelectObject(&pen);
    CBrush* const former_brush = canvas.dc.SelectObject(&brush);
    EXPECT_EQ(canvas.dc.MoveTo(1, 1), CPoint(0, 0));
    EXPECT_TRUE(canvas.dc.LineTo(6, 1));
    EXPECT_EQ(canvas.dc.GetCurrentPosition(), CPoint(6, 1));
    EXPECT_EQ(canvas.count(kRed), 5);  // the end point is not drawn
    canvas.dc.Rectangle(CRect(2, 4, 10, 10));
    canvas.dc.SelectObject(former_pen);
    canvas.dc.SelectObject(former_brush);

    EXPECT_EQ(canvas.pixel(2, 4), kRed);
    EXPECT_EQ(canvas.pixel(9, 9), kRed);
    EXPECT_EQ(canvas.count(kBlue), 6 * 4);
}

TEST(CDC, Clipping_KeepsDrawingInside)
{
    DrawingCanvas canvas(10, 10);
    EXPECT_EQ(canvas.dc.IntersectClipRect(CRect(2, 2, 6, 6)), SIMPLEREGION);
    EXPECT_EQ(canvas.dc.ExcludeClipRect(2, 2, 4, 6), SIMPLEREGION);
    canvas.dc.FillSolidRect(CRect(0, 0, 10, 10), kRed);
    CRect box;
    canvas.dc.GetClipBox(&box);

    EXPECT_EQ(canvas.count(kRed), 8);
    EXPECT_EQ(box, CRect(4, 2, 6, 6));
    EXPECT_TRUE(canvas.dc.PtVisible(CPoint(4, 2)));
    EXPECT_FALSE(canvas.dc.RectVisible(CRect(0, 0, 2, 2)));
    CRgn region;
    region.CreateRectRgn(0, 0, 1, 1);
    EXPECT_EQ(canvas.dc.SelectObject(&region), SIMPLEREGION);
    EXPECT_NE(canvas.dc.SelectClipRgn(nullptr), ERROR);
    canvas.dc.FillSolidRect(CRect(0, 0, 10, 10), kGreen);
    EXPECT_EQ(canvas.count(kGreen), 100);
}

TEST(CDC, SavedState_IsRestored)
{
    DrawingCanvas canvas(4, 4);
    canvas.dc.SetTextColor(kRed);
    canvas.dc.SetBkMode(TRANSPARENT);
    ASSERT_NE(canvas.dc.SaveDC(), 0);
    canvas.dc.SetTextColor(kGreen);
    canvas.dc.SetBkMode(OPAQUE);
    ASSERT_TRUE(canvas.dc.RestoreDC(-1));

    EXPECT_EQ(canvas.dc.GetTextColor(), kRed);
    EXPECT_EQ(canvas.dc.GetBkMode(), TRANSPARENT);
    EXPECT_FALSE(canvas.dc.RestoreDC(5));
}

TEST(CDC, Origins_MoveDrawingAndGiveTheFormerOnes)
{
    DrawingCanvas canvas(10, 10);
    EXPECT_EQ(canvas.dc.SetViewportOrg(3, 4), CPoint(0, 0));
    EXPECT_EQ(canvas.dc.OffsetViewportOrg(1, 0), CPoint(3, 4));
    EXPECT_EQ(canvas.dc.SetWindowOrg(CPoint(1, 1)), CPoint(0, 0));
    canvas.dc.SetPixelV(1, 1, kRed);
    CPoint place(1, 1);
    canvas.dc.LPtoDP(&place);
    CRect rect(4, 4, 6, 6);
    canvas.dc.DPtoLP(&rect);
    EXPECT_EQ(canvas.dc.GetViewportOrg(), CPoint(4, 4));
    EXPECT_EQ(canvas.dc.GetWindowOrg(), CPoint(1, 1));
    canvas.dc.SetWindowOrg(0, 0);
    canvas.dc.SetViewportOrg(CPoint(0, 0));

    EXPECT_EQ(canvas.pixel(4, 4), kRed);
    EXPECT_EQ(place, CPoint(4, 4));
    EXPECT_EQ(rect, CRect(1, 1, 3, 3));
}

TEST(CDC, BitBltAndStretchBlt_CopyPixels)
{
    DrawingCanvas source(4, 4);
    source.dc.FillSolidRect(0, 0, 2, 4, kRed);
    source.dc.FillSolidRect(2, 0, 2, 4, kGreen);
    DrawingCanvas target(20, 20);

    EXPECT_TRUE(target.dc.BitBlt(1, 1, 2, 2, &source.dc, 1, 0, SRCCOPY));
    EXPECT_EQ(target.pixel(1, 1), kRed);
    EXPECT_EQ(target.pixel(2, 2), kGreen);
    EXPECT_EQ(target.count(kRed), 2);
    target.dc.SetStretchBltMode(COLORONCOLOR);
    EXPECT_TRUE(target.dc.StretchBlt(4, 4, 8, 8, &source.dc, 0, 0, 4, 4, SRCCOPY));
    EXPECT_EQ(target.count(kRed), 2 + 32);
    EXPECT_TRUE(target.dc.TransparentBlt(4, 14, 4, 4, &source.dc, 0, 0, 4, 4, kRed));
    EXPECT_EQ(target.count(kRed), 2 + 32);
    EXPECT_EQ(target.count(kGreen), 2 + 32 + 8);
    EXPECT_FALSE(target.dc.BitBlt(0, 0, 1, 1, nullptr, 0, 0, SRCCOPY));
    EXPECT_FALSE(target.dc.StretchBlt(0, 0, 1, 1, nullptr, 0, 0, 1, 1, SRCCOPY));
}

TEST(CDC, Text_IsMeasuredAndDrawnInItsColour)
{
    DrawingCanvas canvas(120, 40);
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(90, "Tahoma"));
    CFont* const former = canvas.dc.SelectObject(&font);
    TEXTMETRIC metrics{};
    ASSERT_TRUE(canvas.dc.GetTextMetrics(&metrics));
    const CString text = "Scene";
    const CSize size = canvas.dc.GetTextExtent(text);
    EXPECT_EQ(size.cy, metrics.tmHeight);
    EXPECT_GT(size.cx, 5);
    EXPECT_EQ(canvas.dc.GetTextExtent("ScenePlus", 5), size);
    EXPECT_GT(canvas.dc.GetTabbedTextExtent("a\tb", 3, 0, nullptr).cx,
              canvas.dc.GetTextExtent("ab", 2).cx);

    canvas.dc.SetTextColor(kGreen);
    canvas.dc.SetBkMode(TRANSPARENT);
    CRect measured(0, 0, 0, 0);
    canvas.dc.DrawText(text, &measured, DT_CALCRECT | DT_SINGLELINE);
    EXPECT_EQ(measured.Size(), size);
    EXPECT_TRUE(canvas.dc.TextOut(2, 2, text));
    const int drawn = canvas.count(kBlack);
    EXPECT_LT(drawn, 120 * 40);
    EXPECT_TRUE(canvas.dc.ExtTextOut(0, 20, ETO_OPAQUE, CRect(0, 20, 120, 40), text, nullptr));
    EXPECT_LT(canvas.count(kBlack), drawn);
    canvas.dc.SelectObject(former);
}

TEST(CDC, EdgesFramesFocusAndIcons_LeaveMarks)
{
    DrawingCanvas canvas(40, 40);
    const auto marks = [&] { return 40 * 40 - canvas.count(kBlue); };
    const auto clear = [&] { canvas.dc.FillSolidRect(0, 0, 40, 40, kBlue); };
    clear();
    ASSERT_EQ(marks(), 0);
    CRect rect(2, 2, 30, 30);

    EXPECT_TRUE(canvas.dc.DrawEdge(&rect, EDGE_SUNKEN, BF_RECT));
    EXPECT_EQ(marks(), 28 * 28 - 24 * 24);
    clear();
    EXPECT_TRUE(canvas.dc.DrawFrameControl(&rect, DFC_BUTTON, DFCS_BUTTONPUSH));
    EXPECT_EQ(marks(), 28 * 28);
    clear();
    canvas.dc.DrawFocusRect(&rect);
    EXPECT_GT(marks(), 20);
    canvas.dc.DrawFocusRect(&rect);  // takes it away again
    EXPECT_EQ(marks(), 0);
    EXPECT_TRUE(canvas.dc.DrawIcon(CPoint(2, 2), ::LoadIcon(nullptr, IDI_ERROR)));
    EXPECT_GT(marks(), 100);
    clear();
    CBrush brush(kRed);
    canvas.dc.FrameRect(&rect, &brush);
    EXPECT_EQ(marks(), 28 * 28 - 26 * 26);
    EXPECT_TRUE(canvas.dc.DrawState(CPoint(3, 3), CSize(32, 32), ::LoadIcon(nullptr, IDI_ERROR),
                                    DSS_NORMAL));
    EXPECT_GT(marks(), 200);
}

TEST(CDC, DeviceCaps_OfAContextInMemoryAreTheScreens)
{
    DrawingCanvas canvas(1, 1);
    const zmr::WindowDC screen(nullptr);

    EXPECT_EQ(canvas.dc.GetDeviceCaps(LOGPIXELSX), ::GetDeviceCaps(screen.get(), LOGPIXELSX));
    EXPECT_EQ(canvas.dc.GetWindow(), nullptr);
}

TEST(CClientDC, DrawsOnTheClientAreaAndIsGivenBack)
{
    PaintedWindow window;
    ASSERT_TRUE(window.open());
    {
        CClientDC dc(&window);
        EXPECT_EQ(dc.GetWindow(), &window);
        EXPECT_EQ(CDC::FromHandle(dc.m_hDC), &dc);
        dc.FillSolidRect(5, 5, 10, 10, kRed);
    }

    CClientDC dc(&window);
    EXPECT_EQ(dc.GetPixel(5, 5), kRed);
    EXPECT_EQ(dc.GetPixel(14, 14), kRed);
}

TEST(CClientDC, OfADestroyedWindow_ThrowsAResourceException)
{
    PaintedWindow window;
    ASSERT_TRUE(window.open());
    const HWND gone = window.m_hWnd;
    window.DestroyWindow();
    window.m_hWnd = gone;

    EXPECT_THROW(CClientDC dc(&window), CResourceException*);
    EXPECT_THROW(CPaintDC dc(&window), CResourceException*);
    window.m_hWnd = nullptr;
}

TEST(CWindowDC, StartsAtTheWindowsCorner)
{
    PaintedWindow window;
    ASSERT_TRUE(window.open(WS_POPUP | WS_BORDER));
    {
        CWindowDC dc(&window);
        dc.FillSolidRect(0, 0, 4, 4, kRed);
    }
    CRect frame;
    window.GetWindowRect(&frame);
    CPoint client(0, 0);
    window.ClientToScreen(&client);
    ASSERT_GT(client.x, frame.left);

    CWindowDC whole(&window);
    EXPECT_EQ(whole.GetPixel(0, 0), kRed);
    CClientDC inside(&window);
    const int border = static_cast<int>(client.x - frame.left);
    EXPECT_EQ(inside.GetPixel(3 - border, 3 - border), kRed);
}

TEST(CPaintDC, TellsAndPaintsTheInvalidPartAndValidatesIt)
{
    PaintedWindow window;
    ASSERT_TRUE(window.open());
    window.paint_now();
    CRect told;
    window.painter = [&](CPaintDC& dc) {
        told = dc.m_ps.rcPaint;
        EXPECT_EQ(dc.m_ps.hdc, dc.m_hDC);
        dc.FillSolidRect(0, 0, 100, 60, kGreen);
    };
    const int before = window.paintings;
    window.paint_now(CRect(10, 10, 30, 20));

    EXPECT_EQ(window.paintings, before + 1);
    EXPECT_EQ(told, CRect(10, 10, 30, 20));
    EXPECT_FALSE(::GetUpdateRect(window, nullptr, FALSE));
    CClientDC dc(&window);
    EXPECT_EQ(dc.GetPixel(10, 10), kGreen);
    EXPECT_EQ(dc.GetPixel(29, 19), kGreen);
    EXPECT_NE(dc.GetPixel(30, 10), kGreen);
}

TEST(BufferedPaint, CopiesTheClipBoxInTheTargetsCoordinates)
{
    DrawingCanvas canvas(20, 20);
    canvas.dc.FillSolidRect(0, 0, 20, 20, kBlue);
    canvas.dc.SetViewportOrg(2, 2);
    canvas.dc.IntersectClipRect(CRect(1, 1, 11, 9));
    {
        zmr::BufferedPaint buffer(canvas.dc);
        ASSERT_TRUE(buffer.buffered());
        EXPECT_EQ(buffer.clip_box(), CRect(1, 1, 11, 9));
        buffer.dc().FillSolidRect(buffer.clip_box(), kGreen);
        buffer.dc().SetPixelV(1, 1, kRed);
        buffer.dc().SetViewportOrg(0, 0);  // what a painter leaves behind does not matter
        EXPECT_EQ(canvas.pixel(3, 3), kBlue) << "nothing reaches the target before the end";
    }
    canvas.dc.SelectClipRgn(nullptr);
    canvas.dc.SetViewportOrg(0, 0);

    EXPECT_EQ(canvas.pixel(3, 3), kRed);
    EXPECT_EQ(canvas.count(kGreen), 10 * 8 - 1);
    EXPECT_EQ(canvas.pixel(4, 3), kGreen);
    EXPECT_EQ(canvas.pixel(12, 10), kGreen);
}

TEST(BufferedPaint, NothingToPaint_DrawsOnTheTargetItself)
{
    DrawingCanvas canvas(4, 4);
    canvas.dc.IntersectClipRect(CRect(0, 0, 0, 0));
    zmr::BufferedPaint buffer(canvas.dc);

    EXPECT_FALSE(buffer.buffered());
    EXPECT_EQ(&buffer.dc(), &canvas.dc);
}

TEST(CDC, ManyPaintings_LeaveNothingBehind)
{
    PaintedWindow window;
    ASSERT_TRUE(window.open());
    window.painter = [](CPaintDC& dc) {
        zmr::BufferedPaint buffer(dc);
        buffer.dc().FillSolidRect(buffer.clip_box(), kRed);
    };
    const auto paint_and_give_back = [&] {
        window.paint_now();
        const CClientDC client(&window);
        const CWindowDC whole(&window);
        CDC* const taken = window.GetDC();
        EXPECT_EQ(window.ReleaseDC(taken), 1);
        zmr::ThreadState::current().drop_temporaries();
    };

    EXPECT_EQ(what_leaks(paint_and_give_back), "");
}
