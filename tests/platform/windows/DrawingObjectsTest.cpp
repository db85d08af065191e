#include "platform/CBitmap.h"
#include "platform/CBrush.h"
#include "platform/CFont.h"
#include "platform/CPen.h"
#include "platform/CResourceException.h"
#include "platform/CRgn.h"
#include "platform/HandlesGdi.h"
#include "platform/ThreadState.h"
#include "tests/platform/windows/DrawingCanvas.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

#include <array>

namespace {

HGDIOBJ dead_object()
{
    return reinterpret_cast<HGDIOBJ>(std::uintptr_t{0x12345});
}

}  // namespace

TEST(CGdiObject, EndOfScope_DeletesTheHandle)
{
    HGDIOBJ handle = nullptr;
    {
        CPen pen(PS_SOLID, 1, kRed);
        handle = pen.m_hObject;
        ASSERT_EQ(pen.GetObjectType(), static_cast<UINT>(OBJ_PEN));
    }

    EXPECT_EQ(::GetObjectType(handle), 0u);
}

TEST(CGdiObject, Detach_GivesTheHandleUpWhole)
{
    zmr::OwnedGdiObject kept;
    {
        CBrush brush(kRed);
        kept.reset(brush.Detach());
        EXPECT_EQ(brush.m_hObject, nullptr);
        EXPECT_EQ(brush.Detach(), nullptr);
    }

    EXPECT_EQ(::GetObjectType(kept.get()), static_cast<DWORD>(OBJ_BRUSH));
}

TEST(CGdiObject, Attach_OfNullOrToAnObjectWithAHandle_IsRefused)
{
    CBrush brush(kRed);
    const HGDIOBJ first = brush.m_hObject;
    zmr::OwnedBrush second(::CreateSolidBrush(kGreen));

    EXPECT_FALSE(brush.Attach(second.get()));
    EXPECT_FALSE(CBrush().Attach(nullptr));
    EXPECT_EQ(brush.m_hObject, first);
}

TEST(CGdiObject, SecondCreation_IsRefusedAndLeavesNothingBehind)
{
    CBrush brush(kRed);
    const HGDIOBJ first = brush.m_hObject;

    EXPECT_EQ(what_leaks([&] { EXPECT_FALSE(brush.CreateSolidBrush(kGreen)); }, 50), "");
    EXPECT_EQ(brush.m_hObject, first);
}

TEST(CGdiObject, DeleteObject_TwiceOrWithoutHandle_IsFalse)
{
    CBrush brush(kRed);

    EXPECT_TRUE(brush.DeleteObject());
    EXPECT_FALSE(brush.DeleteObject());
    EXPECT_FALSE(CBrush().DeleteObject());
}

TEST(CGdiObject, GetSafeHandle_OfANullObject_IsNull)
{
    const CBrush* volatile none = nullptr;
    const CBrush brush(kRed);

    EXPECT_EQ(none->GetSafeHandle(), nullptr);
    EXPECT_EQ(brush.GetSafeHandle(), brush.m_hObject);
}

TEST(CGdiObject, FromHandle_OfAnAttachedHandle_IsTheObjectItself)
{
    CBrush brush(kRed);

    EXPECT_EQ(CBrush::FromHandle(brush), &brush);
    EXPECT_EQ(CGdiObject::FromHandle(brush), &brush);
    const HBRUSH handle = brush;
    zmr::OwnedBrush kept(static_cast<HBRUSH>(brush.Detach()));
    EXPECT_NE(CBrush::FromHandle(handle), &brush);
}

TEST(CGdiObject, FromHandle_OfAForeignHandle_IsOneTemporaryOfItsKind)
{
    const zmr::OwnedPen pen(::CreatePen(PS_SOLID, 1, kRed));
    CGdiObject* const object = CGdiObject::FromHandle(pen.get());

    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->IsKindOf(RUNTIME_CLASS(CPen)));
    EXPECT_EQ(CPen::FromHandle(pen.get()), object);
    EXPECT_EQ(object->m_hObject, pen.get());
}

TEST(CGdiObject, FromHandle_OfNullOrOfAnotherKind_IsNull)
{
    const zmr::OwnedPen pen(::CreatePen(PS_SOLID, 1, kRed));

    EXPECT_EQ(CGdiObject::FromHandle(nullptr), nullptr);
    EXPECT_EQ(CBrush::FromHandle(reinterpret_cast<HBRUSH>(pen.get())), nullptr);
    EXPECT_EQ(CBrush::FromHandle(static_cast<HBRUSH>(dead_object())), nullptr);
}

TEST(CGdiObject, TemporariesDropped_HandlesLiveOn)
{
    const zmr::OwnedPen pen(::CreatePen(PS_SOLID, 1, kRed));
    zmr::ThreadState& state = zmr::ThreadState::current();
    state.drop_temporaries();
    static_cast<void>(CPen::FromHandle(pen.get()));
    ASSERT_EQ(state.drawing_objects.temporary_count(), 1u);
    state.drop_temporaries();

    EXPECT_EQ(state.drawing_objects.temporary_count(), 0u);
    EXPECT_EQ(::GetObjectType(pen.get()), static_cast<DWORD>(OBJ_PEN));
}

TEST(CGdiObject, StockObject_OutlivesItsObjects)
{
    for (int turn = 0; turn < 3; ++turn) {
        CFont font;
        ASSERT_TRUE(font.CreateStockObject(DEFAULT_GUI_FONT));
        LOGFONT description{};
        EXPECT_GT(font.GetLogFont(&description), 0);
    }
}

TEST(CPen, Creation_KeepsWhatWasAsked)
{
    CPen pen;
    ASSERT_TRUE(pen.CreatePen(PS_DASH, 1, kGreen));
    LOGPEN description{};
    ASSERT_GT(pen.GetLogPen(&description), 0);

    EXPECT_EQ(description.lopnStyle, static_cast<UINT>(PS_DASH));
    EXPECT_EQ(description.lopnColor, kGreen);
}

TEST(CPen, ExtendedPen_DrawsItsWidth)
{
    DrawingCanvas canvas(20, 20);
    const LOGBRUSH brush{BS_SOLID, kGreen, 0};
    CPen pen;
    ASSERT_TRUE(pen.CreatePen(PS_GEOMETRIC | PS_SOLID | PS_ENDCAP_FLAT, 4, &brush));
    CPen* const former = canvas.dc.SelectObject(&pen);
    canvas.dc.MoveTo(2, 10);
    canvas.dc.LineTo(12, 10);
    canvas.dc.SelectObject(former);

    EXPECT_EQ(canvas.count(kGreen), 40);
}

TEST(CBrush, SolidPatternAndSystemBrushes_FillWithTheirColours)
{
    DrawingCanvas canvas(8, 8);
    const RECT all{0, 0, 8, 8};
    CBrush solid;
    ASSERT_TRUE(solid.CreateSolidBrush(kRed));
    canvas.dc.FillRect(&all, &solid);
    EXPECT_EQ(canvas.count(kRed), 64);

    CBitmap stripes;
    const std::array<WORD, 2> rows = {0x00, 0xFF};
    ASSERT_TRUE(stripes.CreateBitmap(8, 2, 1, 1, rows.data()));
    CBrush pattern(&stripes);
    canvas.dc.SetTextColor(kGreen);
    canvas.dc.SetBkColor(kBlue);
    canvas.dc.FillRect(&all, &pattern);
    EXPECT_EQ(canvas.count(kGreen), 32);
    EXPECT_EQ(canvas.count(kBlue), 32);

    {
        CBrush face;
        ASSERT_TRUE(face.CreateSysColorBrush(COLOR_BTNFACE));
        canvas.dc.FillRect(&all, &face);
    }
    EXPECT_EQ(canvas.count(::GetSysColor(COLOR_BTNFACE)), 64);
    EXPECT_NE(::GetObjectType(::GetSysColorBrush(COLOR_BTNFACE)), 0u);  // still the system's
}

TEST(CBrush, HatchBrush_KeepsWhatWasAsked)
{
    CBrush hatch(HS_CROSS, kBlue);
    LOGBRUSH description{};
    ASSERT_GT(hatch.GetLogBrush(&description), 0);

    EXPECT_EQ(description.lbStyle, static_cast<UINT>(BS_HATCHED));
    EXPECT_EQ(description.lbColor, kBlue);
}

TEST(CBrush, ConstructorWithoutPattern_ThrowsAResourceException)
{
    try {
        const CBrush brush(static_cast<CBitmap*>(nullptr));
        FAIL() << "nothing was thrown";
    } catch (CException* failure) {
        EXPECT_TRUE(failure->IsKindOf(RUNTIME_CLASS(CResourceException)));
        std::array<char, 200> text{};
        EXPECT_TRUE(failure->GetErrorMessage(text.data(), static_cast<UINT>(text.size())));
        failure->Delete();
    }
}

TEST(CFont, PointFont_HasItsHeightOnTheScreen)
{
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(120, "Tahoma"));
    LOGFONT description{};
    ASSERT_GT(font.GetLogFont(&description), 0);
    const zmr::WindowDC screen(nullptr);

    EXPECT_EQ(description.lfHeight, -::MulDiv(::GetDeviceCaps(screen.get(), LOGPIXELSY), 12, 72));
    EXPECT_STREQ(description.lfFaceName, "Tahoma");
}

TEST(CFont, PointFont_FollowsTheMappingOfItsContext)
{
    DrawingCanvas canvas(8, 8);
    canvas.dc.SetMapMode(MM_ANISOTROPIC);
    canvas.dc.SetWindowExt(1, 10);  // ten logical units a pixel
    canvas.dc.SetViewportExt(1, 1);
    canvas.dc.SetViewportOrg(3, 40);
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(120, "Tahoma", &canvas.dc));
    LOGFONT description{};
    ASSERT_GT(font.GetLogFont(&description), 0);

    EXPECT_EQ(description.lfHeight, -10 * ::MulDiv(canvas.dc.GetDeviceCaps(LOGPIXELSY), 12, 72));
}

TEST(CFont, FaceThatIsTooLongOrMissing_IsCutOrDefault)
{
    CFont font;
    ASSERT_TRUE(font.CreatePointFont(90, "A name that is longer than thirty-one characters"));
    LOGFONT description{};
    ASSERT_GT(font.GetLogFont(&description), 0);
    CFont nameless;

    EXPECT_STREQ(description.lfFaceName, "A name that is longer than thir");
    EXPECT_TRUE(nameless.CreatePointFont(90, nullptr));
}

TEST(CBitmap, LoadBitmap_HasTheResourcesPixels)
{
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.LoadBitmap(201));
    EXPECT_EQ(bitmap.size(), CSize(4, 2));
    CDC memory;
    memory.CreateCompatibleDC(nullptr);
    CBitmap* const former = memory.SelectObject(&bitmap);

    EXPECT_EQ(memory.GetPixel(0, 0), kGreen);
    EXPECT_EQ(memory.GetPixel(3, 1), kBlue);
    memory.SelectObject(former);
}

TEST(CBitmap, LoadBitmap_OfAMissingResource_IsRefused)
{
    CBitmap bitmap;

    EXPECT_FALSE(bitmap.LoadBitmap(9999));
    EXPECT_FALSE(bitmap.LoadBitmap("NO_SUCH_BITMAP"));
    EXPECT_EQ(bitmap.m_hObject, nullptr);
    EXPECT_EQ(bitmap.size(), CSize(0, 0));
}

TEST(CBitmap, CompatibleBitmap_HasTheScreensColours)
{
    CDC screen;
    ASSERT_TRUE(screen.CreateCompatibleDC(nullptr));
    const zmr::WindowDC window(nullptr);
    CBitmap bitmap;
    ASSERT_TRUE(bitmap.CreateCompatibleBitmap(CDC::FromHandle(window.get()), 5, 7));
    BITMAP description{};
    ASSERT_GT(bitmap.GetBitmap(&description), 0);

    EXPECT_EQ(description.bmWidth, 5);
    EXPECT_EQ(description.bmHeight, 7);
    EXPECT_EQ(description.bmBitsPixel, ::GetDeviceCaps(window.get(), BITSPIXEL));
    EXPECT_FALSE(CBitmap().CreateCompatibleBitmap(nullptr, 5, 7));
}

TEST(CRgn, Operations_AnswerAsTheSystemsDo)
{
    CRgn left;
    CRgn right;
    ASSERT_TRUE(left.CreateRectRgn(0, 0, 10, 10));
    ASSERT_TRUE(right.CreateRectRgn(5, 0, 15, 10));
    CRgn both;
    ASSERT_TRUE(both.CreateRectRgn(0, 0, 0, 0));

    EXPECT_EQ(both.CombineRgn(&left, &right, RGN_AND), SIMPLEREGION);
    CRect box;
    both.GetRgnBox(&box);
    EXPECT_EQ(box, CRect(5, 0, 10, 10));
    EXPECT_EQ(both.CombineRgn(&left, &right, RGN_XOR), COMPLEXREGION);
    EXPECT_TRUE(both.PtInRegion(2, 2));
    EXPECT_FALSE(both.PtInRegion(CPoint(7, 2)));
    EXPECT_EQ(both.CopyRgn(&left), SIMPLEREGION);
    EXPECT_TRUE(both.EqualRgn(&left));
    EXPECT_EQ(both.OffsetRgn(1, 1), SIMPLEREGION);
    EXPECT_FALSE(both.EqualRgn(&left));
    EXPECT_EQ(CRgn::FromHandle(both), &both);
}

TEST(CGdiObject, ManyOfEachKind_LeaveNothingBehind)
{
    const auto open_and_close = [] {
        CPen pen(PS_SOLID, 2, kRed);
        CBrush brush(kRed);
        CFont font;
        font.CreatePointFont(90, "Tahoma");
        CBitmap bitmap;
        bitmap.LoadBitmap(201);
        CRgn region;
        region.CreateEllipticRgn(0, 0, 10, 10);
        CDC memory;
        memory.CreateCompatibleDC(nullptr);
        CBitmap* const former = memory.SelectObject(&bitmap);
        memory.SelectObject(former);
        static_cast<void>(CBrush::FromHandle(::GetSysColorBrush(COLOR_WINDOW)));
        zmr::ThreadState::current().drop_temporaries();
    };

    EXPECT_EQ(what_leaks(open_and_close), "");
    EXPECT_EQ(zmr::ThreadState::current().drawing_objects.permanent_count(), 0u);
}
