#include "app/GAccelerators.h"

#include "app/AcceleratorTable.h"
#include "tests/app/windows/TestHost.h"

#include <array>
#include <memory>
#include <random>

namespace {

class GAcceleratorsTest : public Hosted {
protected:
    void SetUp() override
    {
        Hosted::SetUp();
        frame_ = &host_.open_frame(SW_HIDE);
        frame_->watch = [this](UINT message, WPARAM wparam) {
            if (message == WM_COMMAND)
                commands_.push_back(LOWORD(wparam));
        };
    }
    void TearDown() override
    {
        frame_->watch = nullptr;
        std::array<BYTE, 256> keys{};
        ::SetKeyboardState(keys.data());
        Hosted::TearDown();
    }
    [[nodiscard]] MSG key(WPARAM code) const
    {
        return {frame_->m_hWnd, WM_KEYDOWN, code, 1, 0, {}};
    }

    HostFrame* frame_ = nullptr;
    std::vector<unsigned> commands_;
};

}  // namespace

TEST_F(GAcceleratorsTest, ObjectWithoutATableOrAWindow_TranslatesNothing)
{
    MSG message = key(VK_F5);
    GAccelerators no_table;
    no_table.assign_to(frame_->m_hWnd);
    EXPECT_EQ(no_table.translate(&message), 0);
    GAccelerators no_window;
    ASSERT_TRUE(no_window.load("KEYS"));
    EXPECT_EQ(no_window.translate(&message), 0);
    MSG thread_message{nullptr, WM_KEYDOWN, VK_F5, 1, 0, {}};
    EXPECT_EQ(no_window.translate(&thread_message), 0);
    EXPECT_FALSE(GAccelerators::Translate(&message));
    EXPECT_TRUE(commands_.empty());
}

TEST_F(GAcceleratorsTest, WindowThatHasGone_IsSkippedWithNoError)
{
    GAccelerators accelerators;
    ASSERT_TRUE(accelerators.load("KEYS"));
    HostFrame* const gone = new HostFrame;
    ASSERT_TRUE(gone->Create(nullptr, "", WS_OVERLAPPEDWINDOW, CRect(0, 0, 9, 9)));
    const HWND window = gone->m_hWnd;
    accelerators.assign_to(window);
    gone->DestroyWindow();
    MSG message{window, WM_KEYDOWN, VK_F5, 1, 0, {}};
    EXPECT_EQ(accelerators.translate(&message), 0);
    EXPECT_FALSE(GAccelerators::Translate(&message));
}

TEST_F(GAcceleratorsTest, MessageForAChild_IsNotTranslated)
{
    CWnd child;
    ASSERT_TRUE(child.Create(nullptr, "", WS_CHILD, CRect(0, 0, 5, 5), frame_, 1));
    GAccelerators accelerators;
    ASSERT_TRUE(accelerators.load("KEYS"));
    accelerators.assign_to(frame_->m_hWnd);
    MSG message = key(VK_F5);
    message.hwnd = child.m_hWnd;
    EXPECT_EQ(accelerators.translate(&message), 0);
    message.hwnd = frame_->m_hWnd;
    EXPECT_NE(accelerators.translate(&message), 0);
    EXPECT_EQ(commands_, std::vector<unsigned>{1});
}

TEST_F(GAcceleratorsTest, Load_FindsTablesByNameAndByNumberAlongTheChainAndInAModule)
{
    GAccelerators accelerators;
    EXPECT_TRUE(accelerators.load("KEYS"));
    EXPECT_TRUE(accelerators.load(42));
    EXPECT_TRUE(accelerators.load(::GetModuleHandleA(nullptr), 42));
    EXPECT_TRUE(accelerators.load(::GetModuleHandleA(nullptr), "KEYS"));
    EXPECT_FALSE(accelerators.load(::GetModuleHandleA("kernel32"), "KEYS"));
    EXPECT_FALSE(accelerators.load(43));
    EXPECT_FALSE(accelerators.load("ABSENT"));
    MSG message = key(VK_F5);
    accelerators.assign_to(frame_->m_hWnd);
    EXPECT_EQ(accelerators.translate(&message), 0);  // a failed load leaves none
}

TEST_F(GAcceleratorsTest, Translate_AsksAllLiveObjectsUntilOneTakesIt)
{
    std::vector<std::unique_ptr<GAccelerators>> all;
    for (int i = 0; i < 20; ++i) {
        all.push_back(std::make_unique<GAccelerators>());
        ASSERT_TRUE(all.back()->load(i == 7 ? "KEYS" : "PRECEDENCE"));
        all.back()->assign_to(i == 7 || i == 8 ? frame_->m_hWnd : nullptr);
    }
    MSG message = key(VK_F5);
    EXPECT_TRUE(GAccelerators::Translate(&message));
    EXPECT_EQ(commands_.size(), 1u);
    message = key(VK_DELETE);
    EXPECT_TRUE(GAccelerators::Translate(&message));
    EXPECT_EQ(commands_.back(), 10u);
    all.clear();
    EXPECT_FALSE(GAccelerators::Translate(&message));
}

TEST_F(GAcceleratorsTest, CommandThatEndsAllObjects_EndsTheWalkWell)
{
    auto first = std::make_unique<GAccelerators>();
    auto second = std::make_unique<GAccelerators>();
    for (GAccelerators* accelerators : {first.get(), second.get()}) {
        ASSERT_TRUE(accelerators->load("KEYS"));
        accelerators->assign_to(frame_->m_hWnd);
    }
    frame_->watch = [&](UINT message, WPARAM) {
        if (message == WM_COMMAND) {
            first.reset();
            second.reset();
        }
    };
    MSG message = key(VK_F5);
    EXPECT_TRUE(GAccelerators::Translate(&message));
    EXPECT_EQ(first, nullptr);
}

TEST_F(GAcceleratorsTest, TableOfOurs_FindsWhatTheSystemFinds)
{
    const HRSRC resource = ::FindResourceA(nullptr, "KEYS", MAKEINTRESOURCEA(9));
    ASSERT_NE(resource, nullptr);
    const auto* const bytes =
        static_cast<const std::byte*>(::LockResource(::LoadResource(nullptr, resource)));
    zmr::AcceleratorTable table;
    ASSERT_TRUE(table.read({bytes, ::SizeofResource(nullptr, resource)}));
    EXPECT_EQ(table.keys().size(), 10u);
    GAccelerators accelerators;
    ASSERT_TRUE(accelerators.load("KEYS"));
    accelerators.assign_to(frame_->m_hWnd);

    std::mt19937 random(3);
    const std::array<std::uint32_t, 8> codes = {VK_F5, 'S', 'x', 'X', 'y', 'A', VK_DELETE, 'Q'};
    int found = 0;
    for (int i = 0; i < 4'000; ++i) {
        const bool shift = random() % 2 != 0;
        const bool control = random() % 2 != 0;
        const bool alt = random() % 2 != 0;
        const bool character = random() % 2 != 0;
        const std::uint32_t code = codes[random() % codes.size()];
        std::array<BYTE, 256> keys{};
        keys[VK_SHIFT] = shift ? 0x80 : 0;
        keys[VK_CONTROL] = control ? 0x80 : 0;
        keys[VK_MENU] = alt ? 0x80 : 0;
        ::SetKeyboardState(keys.data());
        const UINT key_message = alt ? WM_SYSKEYDOWN : WM_KEYDOWN;
        const UINT character_message = alt ? WM_SYSCHAR : WM_CHAR;
        MSG message{frame_->m_hWnd, character ? character_message : key_message, code, 1, 0, {}};
        commands_.clear();
        const bool taken = accelerators.translate(&message) != 0;

        using Kind = zmr::KeyMessage::Kind;
        const Kind kind = character ? (alt ? Kind::system_character : Kind::character)
                                    : (alt ? Kind::system_key_down : Kind::key_down);
        const zmr::AcceleratorKey* const key = table.find({kind, code, shift, control, alt});
        ASSERT_EQ(taken, key != nullptr) << code << shift << control << alt << character;
        if (key != nullptr) {
            ++found;
            ASSERT_EQ(commands_, std::vector<unsigned>{key->command})
                << code << shift << control << alt << character;
        }
    }
    EXPECT_GT(found, 100);
}
