#include "settings/StatusLines.h"

#include "platform/CWinApp.h"
#include "settings/LibraryIds.h"
#include "tests/settings/StatusWindows.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

// The status lines of MsgBox with real windows.

namespace {

constexpr MsgBox::InfoLineType kLines[] = {MsgBox::InfoPrompt, MsgBox::InfoGeneral,
                                           MsgBox::InfoX,      MsgBox::InfoY,
                                           MsgBox::InfoZ,      MsgBox::InfoGrid};
constexpr auto kBeyondTheLast = static_cast<MsgBox::InfoLineType>(6);
constexpr auto kGridFormat = static_cast<unsigned>(ZMR_IDS_GRID);

class Status : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(owner.open());
        for (const MsgBox::InfoLineType line : kLines) {
            ASSERT_TRUE(panes[line].open(&owner, static_cast<int>(line) * 22));
            MsgBox::SetInfoLine(line, &panes[line]);
        }
        owner.UpdateWindow();
        MsgBox::SetStatusBarOwner(&owner);
    }
    void TearDown() override
    {
        MsgBox::SetStatusBarOwner(nullptr);
        for (const MsgBox::InfoLineType line : kLines) {
            MsgBox::SetInfoLine(line, nullptr);
            MsgBox::PutInfoSpecial(line);
        }
        pump_all();
    }

    StatusOwner owner;
    StatusPane panes[6];
    StatusPane& general = panes[MsgBox::InfoGeneral];
};

/// Runs on a thread that has no object of its own.
void in_a_worker(const std::function<void()>& body)
{
    std::jthread worker(body);
}

}  // namespace

TEST_F(Status, PutOnTheOwnersThread_OnTheScreenAtOnce)
{
    pump_all();
    const int paints = general.paints;

    MsgBox::PutInfo("frame %d of %d", 3, 7);

    EXPECT_EQ(general.text(), "frame 3 of 7");
    EXPECT_EQ(general.paints, paints + 1) << "painted without a turn of the message loop";
    EXPECT_EQ(owner.told, std::vector<unsigned>{1});
}

TEST_F(Status, PutFromAWorker_ShownWhenTheOwnersThreadHandlesTheMessage)
{
    in_a_worker([] { MsgBox::PutInfo("from a worker"); });

    EXPECT_EQ(general.text(), "");
    EXPECT_STREQ(MsgBox::GetStatusInfo(MsgBox::InfoGeneral), "from a worker");
    MSG message{};
    ASSERT_TRUE(::PeekMessage(&message, owner.m_hWnd, MsgBox::kUpdateMessage,
                              MsgBox::kUpdateMessage, PM_NOREMOVE));
    EXPECT_EQ(message.wParam, 1u);
    EXPECT_EQ(message.lParam, 0);
    EXPECT_TRUE(pump_until([&] { return general.text() == "from a worker"; }));
}

TEST_F(Status, PutTenThousandTimesFromAWorker_OneMessageAndTheLastText)
{
    in_a_worker([] {
        for (int text = 1; text <= 10'000; ++text)
            MsgBox::PutInfo("%d", text);
    });

    pump_all();

    EXPECT_EQ(general.text(), "10000");
    EXPECT_EQ(owner.told, std::vector<unsigned>{1});
    in_a_worker([] { MsgBox::PutInfo("next"); });
    EXPECT_TRUE(pump_until([&] { return general.text() == "next"; }));
}

TEST_F(Status, OwnerThatTakesNoTexts_IsToldAgainAfterAWhile)
{
    owner.answers = false;
    const auto put = [] { in_a_worker([] { MsgBox::PutInfo("text"); }); };
    put();
    ASSERT_TRUE(pump_until([&] { return owner.told.size() == 1; }));

    EXPECT_TRUE(pump_until([&] {
        put();
        return owner.told.size() > 1;
    }));
}

TEST_F(Status, OwnerChangesBeforeItHeard_TheNewOneIsTold)
{
    StatusOwner next;
    ASSERT_TRUE(next.open());
    in_a_worker([] { MsgBox::PutInfo("first"); });
    MsgBox::SetStatusBarOwner(&next);

    in_a_worker([] { MsgBox::PutInfo("second"); });
    pump_all();

    EXPECT_EQ(next.told, std::vector<unsigned>{1});
    EXPECT_EQ(general.text(), "second");
}

TEST_F(Status, UnchangedText_NeitherSetNorPainted)
{
    MsgBox::PutInfo("the same");
    pump_all();
    const int paints = general.paints;

    MsgBox::PutInfo("the %s", "same");
    pump_all();

    EXPECT_EQ(general.texts, std::vector<std::string>{"the same"});
    EXPECT_EQ(general.paints, paints);
}

TEST_F(Status, UnchangedTextThatWasCut_NeitherSetNorPainted)
{
    const std::string text(5000, 'a');
    MsgBox::PutInfo("%s", text.c_str());
    MsgBox::PutInfo("%s", text.c_str());

    EXPECT_EQ(general.texts, std::vector<std::string>{std::string(1023, 'a')});
}

TEST_F(Status, Utf8Text_ShownOnceAndWhole)
{
    const char* text =
        "Gr\xC3\xB6\xC3\x9F"
        "e: 3 \xE2\x82\xAC";
    MsgBox::PutInfo("%s", text);
    MsgBox::PutInfo("%s", text);

    EXPECT_EQ(general.text(), text);
    EXPECT_EQ(general.texts.size(), 1u);
}

TEST_F(Status, Proseed_LineBeyondTheLastIs0)
{
    EXPECT_EQ(MsgBox::ProseedUpdateSBMessage(6), 0);
    EXPECT_EQ(MsgBox::ProseedUpdateSBMessage(0xFFFFFFFF), 0);
}

TEST_F(Status, Proseed_LineWithoutWindowOrHandleIs0)
{
    MsgBox::SetInfoLine(MsgBox::InfoX, nullptr);
    EXPECT_EQ(MsgBox::ProseedUpdateSBMessage(MsgBox::InfoX), 0);
    StatusPane closed;
    MsgBox::SetInfoLine(MsgBox::InfoX, &closed);
    EXPECT_EQ(MsgBox::ProseedUpdateSBMessage(MsgBox::InfoX), 0);
}

TEST_F(Status, Proseed_OnAnotherThreadIs0AndShowsNothing)
{
    MsgBox::SetStatusBarOwner(nullptr);
    MsgBox::PutInfo("text");
    long result = 1;

    in_a_worker([&] { result = MsgBox::ProseedUpdateSBMessage(MsgBox::InfoGeneral); });

    EXPECT_EQ(result, 0);
    EXPECT_EQ(general.text(), "");
}

TEST_F(Status, Proseed_ShownLineIs1ChangedOrNot)
{
    MsgBox::SetStatusBarOwner(nullptr);
    MsgBox::PutInfo("text");

    EXPECT_EQ(MsgBox::ProseedUpdateSBMessage(MsgBox::InfoGeneral), 1);
    EXPECT_EQ(MsgBox::ProseedUpdateSBMessage(MsgBox::InfoGeneral), 1);
    EXPECT_EQ(general.text(), "text");
}

TEST_F(Status, NoOwner_TextIsKeptUntilTheNextTelling)
{
    MsgBox::SetStatusBarOwner(nullptr);
    MsgBox::PutInfo("early");
    EXPECT_EQ(general.text(), "");
    EXPECT_STREQ(MsgBox::GetStatusInfo(MsgBox::InfoGeneral), "early");

    MsgBox::SetStatusBarOwner(&owner);
    owner.SendMessage(MsgBox::kUpdateMessage, MsgBox::InfoGeneral);

    EXPECT_EQ(general.text(), "early");
}

TEST_F(Status, OwnerWithoutWindow_TextIsKept)
{
    StatusOwner closed;
    MsgBox::SetStatusBarOwner(&closed);

    MsgBox::PutInfo("kept");

    EXPECT_TRUE(closed.told.empty());
    EXPECT_STREQ(MsgBox::GetStatusInfo(MsgBox::InfoGeneral), "kept");
}

TEST_F(Status, DefaultOwner_IsTheMainWindowOfTheThread)
{
    MsgBox::SetStatusBarOwner(nullptr);
    EXPECT_EQ(MsgBox::GetStatusBarOwner(), nullptr) << "the thread has no object";
    CWinApp application("Test");
    EXPECT_EQ(MsgBox::GetStatusBarOwner(), nullptr) << "it has no main window";
    application.m_pMainWnd = &owner;

    EXPECT_EQ(MsgBox::GetStatusBarOwner(), &owner);
    MsgBox::PutInfo("to the main window");

    EXPECT_EQ(general.text(), "to the main window");
}

TEST_F(Status, DefaultOwner_OfAThreadWithoutObjectIsNone)
{
    CWinApp application("Test");
    application.m_pMainWnd = &owner;
    MsgBox::SetStatusBarOwner(nullptr);
    CWnd* found = &owner;

    in_a_worker([&] {
        found = MsgBox::GetStatusBarOwner();
        MsgBox::PutInfo("kept");
    });
    pump_all();

    EXPECT_EQ(found, nullptr);
    EXPECT_TRUE(owner.told.empty());
    EXPECT_STREQ(MsgBox::GetStatusInfo(MsgBox::InfoGeneral), "kept");
}

TEST_F(Status, Windows_EachLineHasItsOwn)
{
    for (const MsgBox::InfoLineType line : kLines)
        EXPECT_EQ(MsgBox::GetInfoLine(line), &panes[line]) << line;
    MsgBox::SetInfoLine(kBeyondTheLast, &general);
    EXPECT_EQ(MsgBox::GetInfoLine(kBeyondTheLast), nullptr);
    EXPECT_EQ(MsgBox::GetStatusBarOwner(), &owner);
}

TEST_F(Status, Clear_LineIsEmptyAndTheOwnerIsTold)
{
    MsgBox::PutInfo("text");
    MsgBox::PutInfo();
    EXPECT_EQ(general.text(), "");
    EXPECT_EQ(owner.told, (std::vector<unsigned>{1, 1}));
    MsgBox::put_information("%d %%", 50);
    EXPECT_EQ(general.text(), "50 %");
    MsgBox::put_information();
    EXPECT_EQ(general.text(), "");
}

TEST_F(Status, Special_GoesToItsLine)
{
    for (const MsgBox::InfoLineType line : kLines)
        MsgBox::PutInfoSpecial(line, "line %u", static_cast<unsigned>(line));

    for (const MsgBox::InfoLineType line : kLines)
        EXPECT_EQ(panes[line].text(), "line " + std::to_string(line));
    MsgBox::PutInfoSpecial(MsgBox::InfoPrompt);
    EXPECT_EQ(panes[MsgBox::InfoPrompt].text(), "");
}

TEST_F(Status, SpecialBeyondTheLastLine_Ignored)
{
    MsgBox::PutInfoSpecial(kBeyondTheLast, "text");
    MsgBox::PutInfoSpecial(kBeyondTheLast, kGridFormat, 1.0);
    MsgBox::PutInfoSpecial(kBeyondTheLast);

    EXPECT_TRUE(owner.told.empty());
    EXPECT_STREQ(MsgBox::GetStatusInfo(kBeyondTheLast), "");
}

TEST_F(Status, StringId_IsTheFormat)
{
    MsgBox::PutInfo(kGridFormat, 2.5);
    MsgBox::PutInfoSpecial(MsgBox::InfoPrompt, kGridFormat, 3.5);

    EXPECT_EQ(general.text(), "Grid = 2.5");
    EXPECT_EQ(panes[MsgBox::InfoPrompt].text(), "Grid = 3.5");
}

TEST_F(Status, StringIdThatNobodyHas_GivesTheEmptyText)
{
    MsgBox::PutInfo("text");

    MsgBox::PutInfo(64999u);

    EXPECT_EQ(general.text(), "");
}

TEST_F(Status, Vector_ThreeLinesEachToldByItself)
{
    MsgBox::PutVectorInfo(Vector3D{1.0, -22.505, 123456.789});

    EXPECT_EQ(panes[MsgBox::InfoX].text(), "X:    1.00");
    EXPECT_EQ(panes[MsgBox::InfoY].text(), "Y:  -22.50");
    EXPECT_EQ(panes[MsgBox::InfoZ].text(), "Z: 123456.79");
    EXPECT_EQ(owner.told, (std::vector<unsigned>{2, 3, 4}));
    MsgBox::PutVectorInfo();
    for (const MsgBox::InfoLineType line : {MsgBox::InfoX, MsgBox::InfoY, MsgBox::InfoZ})
        EXPECT_EQ(panes[line].text(), "");
}

TEST_F(Status, Grid_ByTheLibrarysText)
{
    MsgBox::PutGridInfo(0.1);
    EXPECT_EQ(panes[MsgBox::InfoGrid].text(), "Grid = 0.1");
    MsgBox::PutGridInfo(1234567891.0);
    EXPECT_EQ(panes[MsgBox::InfoGrid].text(), "Grid = 1.23456789E+09");
    MsgBox::PutGridInfo();
    EXPECT_EQ(panes[MsgBox::InfoGrid].text(), "");
}

TEST_F(Status, LentText_StaysWhileOthersPut)
{
    MsgBox::PutInfo("first");
    const char* const lent = MsgBox::GetStatusInfo(MsgBox::InfoGeneral);

    in_a_worker([] { MsgBox::PutInfo("second"); });

    EXPECT_STREQ(lent, "first");
    EXPECT_STREQ(MsgBox::GetStatusInfo(MsgBox::InfoGeneral), "second");
}

TEST_F(Status, OwnerTakenOutWhileThreadsPut_NothingIsLostOrTouched)
{
    std::atomic<bool> over = false;
    std::atomic<int> puts = 0;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 8; ++thread)
        threads.emplace_back([&, thread] {
            for (int text = 0; !over; ++text) {
                MsgBox::PutInfoSpecial(kLines[text % 6], "%d %d", thread, text);
                ++puts;
            }
        });
    for (int round = 0; round < 8; ++round) {
        auto passing = std::make_unique<StatusOwner>();
        ASSERT_TRUE(passing->open());
        MsgBox::SetStatusBarOwner(passing.get());
        EXPECT_TRUE(pump_until([&] { return !passing->told.empty(); }));
        MsgBox::SetStatusBarOwner(nullptr);
        passing.reset();
    }
    over = true;
    threads.clear();
    EXPECT_GT(puts.load(), 8);

    MsgBox::SetStatusBarOwner(&owner);
    in_a_worker([] {
        for (const MsgBox::InfoLineType line : kLines)
            MsgBox::PutInfoSpecial(line, "last");
    });
    pump_all();

    for (const StatusPane& pane : panes)
        EXPECT_EQ(pane.text(), "last");
}

// How many texts each of the sixteen threads puts; ZMR_STATUS_TEXTS sets another number.
TEST_F(Status, SixteenThreads_LastTextsArriveInOrderAndNothingHangs)
{
    constexpr int kThreads = 16;
    const char* const wanted = std::getenv("ZMR_STATUS_TEXTS");
    const int texts = wanted != nullptr ? std::atoi(wanted) : 2000;
    std::atomic<long> puts = 0;
    std::atomic<int> running = kThreads;
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([&, thread] {
            for (int text = 1; text <= texts; ++text) {
                MsgBox::PutInfoSpecial(kLines[thread % 6], "%d %d", thread, text);
                ++puts;
            }
            --running;
        });

    // The owner's thread has a life of its own meanwhile: it puts and shows, too.
    long own_texts = 0;
    long last_puts = -1;
    ULONGLONG last_progress = ::GetTickCount64();
    while (running > 0) {
        pump_all();
        MsgBox::PutInfoSpecial(MsgBox::InfoPrompt, "16 %ld", ++own_texts);
        if (const long now = puts; now != last_puts) {
            last_puts = now;
            last_progress = ::GetTickCount64();
        }
        if (::GetTickCount64() - last_progress > 10'000) {
            std::fputs("No thread went on for ten seconds.\n", stderr);
            std::abort();
        }
    }
    threads.clear();
    pump_all();

    EXPECT_EQ(puts, long{kThreads} * texts);
    for (const MsgBox::InfoLineType line : kLines) {
        const StatusPane& pane = panes[line];
        EXPECT_EQ(pane.text(), MsgBox::GetStatusInfo(line)) << line;
        long seen[kThreads + 1] = {};
        for (const std::string& text : pane.texts) {
            int thread = 0;
            long number = 0;
            ASSERT_EQ(std::sscanf(text.c_str(), "%d %ld", &thread, &number), 2) << text;
            ASSERT_LE(thread, kThreads);
            ASSERT_GE(number, seen[thread]) << text;
            seen[thread] = number;
        }
    }
}
