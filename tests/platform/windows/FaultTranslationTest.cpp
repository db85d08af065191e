#include "platform/AfxState.h"
#include "platform/CWinThread.h"
#include "platform/CWnd.h"
#include "platform/FaultGuard.h"
#include "platform/FaultTranslation.h"
#include "platform/Handles.h"
#include "tests/platform/windows/Faults.h"
#include "tests/platform/windows/TestApplication.h"
#include "tests/support/ResourceLedger.h"

#include <gtest/gtest.h>

#include <atomic>
#include <exception>
#include <functional>
#include <iostream>
#include <optional>
#include <thread>
#include <vector>

namespace {

constexpr UINT kFault = WM_APP + 3;
constexpr int kTimes = 1'000;

struct Fault {
    unsigned code;
};

void throw_fault(unsigned code, EXCEPTION_POINTERS* pointers)
{
    EXPECT_EQ(pointers->ExceptionRecord->ExceptionCode, code);
    throw Fault{code};
}

/// Faults of this thread are translated as long as this lives.
class Translating {
public:
    Translating() : former_(AfxSetFaultTranslator(&throw_fault)) {}
    ~Translating() { AfxSetFaultTranslator(former_); }
    Translating(const Translating&) = delete;
    Translating& operator=(const Translating&) = delete;

private:
    FaultTranslator former_;
};

/// The code of the fault that comes out of `body`; none when none does.
std::optional<unsigned> fault_of(const std::function<void()>& body)
{
    try {
        body();
    } catch (const Fault& fault) {
        return fault.code;
    }
    return std::nullopt;
}

struct Kind {
    const char* name;
    void (*run)();
    unsigned code;
};

const std::vector<Kind>& thrown_kinds()
{
    static const std::vector<Kind> kinds = {
        {"read", &faults::read_null, EXCEPTION_ACCESS_VIOLATION},
        {"write", &faults::write_null, EXCEPTION_ACCESS_VIOLATION},
        {"division", &faults::divide_by_zero, EXCEPTION_INT_DIVIDE_BY_ZERO},
        {"call", &faults::call_null, EXCEPTION_ACCESS_VIOLATION},
        {"virtual call", &faults::call_virtual_of_null, EXCEPTION_ACCESS_VIOLATION},
        {"instruction", &faults::run_illegal_instruction, EXCEPTION_ILLEGAL_INSTRUCTION},
    };
    return kinds;
}

/// These need a guard.
const std::vector<Kind>& guarded_kinds()
{
    static const std::vector<Kind> kinds = {
        {"strlen", &faults::measure_no_text, EXCEPTION_ACCESS_VIOLATION},
        {"strlen, object", &faults::measure_no_text_with_an_object, EXCEPTION_ACCESS_VIOLATION},
        {"noexcept", [] { faults::read_in_noexcept(); }, EXCEPTION_ACCESS_VIOLATION},
        {"destructor", &faults::read_in_destructor, EXCEPTION_ACCESS_VIOLATION},
    };
    return kinds;
}

std::vector<Kind> all_kinds()
{
    std::vector<Kind> kinds = thrown_kinds();
    kinds.insert(kinds.end(), guarded_kinds().begin(), guarded_kinds().end());
    return kinds;
}

struct Counted {
    explicit Counted(int& destroyed) : destroyed_(destroyed) {}
    ~Counted() { ++destroyed_; }
    int& destroyed_;
};

class FaultingWindow : public CWnd {
public:
    [[nodiscard]] bool open()
    {
        return CreateEx(0, nullptr, "faults", WS_OVERLAPPED, 0, 0, 100, 100, nullptr, nullptr) != 0;
    }

    void (*fault)() = &faults::read_null;
    bool in_create = false;

protected:
    DECLARE_MESSAGE_MAP()

    LRESULT OnFault(WPARAM, LPARAM)
    {
        fault();
        return 5;
    }
    int OnCreate(LPCREATESTRUCT creation)
    {
        if (in_create)
            fault();
        return CWnd::OnCreate(creation);
    }
    void OnTimer(UINT_PTR id)
    {
        KillTimer(id);
        fault();
    }
};

BEGIN_MESSAGE_MAP(FaultingWindow, CWnd)
    ON_MESSAGE(kFault, &FaultingWindow::OnFault)
    ON_WM_CREATE()
    ON_WM_TIMER()
END_MESSAGE_MAP()

class FaultTranslation : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(window_.open()); }
    void TearDown() override
    {
        EXPECT_EQ(std::uncaught_exceptions(), 0);
        EXPECT_EQ(std::current_exception(), nullptr);
        window_.DestroyWindow();
        the_application().pump_all();
    }

    const Translating translating_;
    FaultingWindow window_;
};

}  // namespace

TEST_F(FaultTranslation, EachKind_IsThrownFromTheFaultingPlaceAThousandTimes)
{
    for (const Kind& kind : thrown_kinds()) {
        int seen = 0;
        int destroyed = 0;
        for (int i = 0; i < kTimes; ++i)
            seen += fault_of([&] {
                        const Counted counted(destroyed);
                        kind.run();
                    }) == kind.code;
        EXPECT_EQ(seen, kTimes) << kind.name;
        EXPECT_EQ(destroyed, kTimes) << kind.name;
    }
}

TEST_F(FaultTranslation, WhatCannotBeUnwound_ComesOutOfTheGuardAThousandTimes)
{
    for (const Kind& kind : guarded_kinds()) {
        int seen = 0;
        for (int i = 0; i < kTimes; ++i)
            seen += fault_of([&] { zmr::guarded(kind.run); }) == kind.code;
        EXPECT_EQ(seen, kTimes) << kind.name;
        EXPECT_EQ(std::uncaught_exceptions(), 0) << kind.name;
        EXPECT_EQ(std::current_exception(), nullptr) << kind.name;
    }
}

TEST_F(FaultTranslation, Guard_GivesTheResultAndLetsNormalExceptionsThrough)
{
    EXPECT_EQ(zmr::guarded([] { return 7; }), 7);
    EXPECT_THROW(zmr::guarded([]() -> int { throw std::string("plain"); }), std::string);
    EXPECT_EQ(fault_of([] { zmr::guarded(&faults::read_null); }), EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(FaultTranslation, NestedGuards_TheInnerOneTakesTheFault)
{
    bool inner = false;
    bool behind = false;
    zmr::guarded([&] {
        inner = fault_of([] { zmr::guarded([] { faults::read_in_noexcept(); }); }).has_value();
        behind = true;
    });

    EXPECT_TRUE(inner);
    EXPECT_TRUE(behind);
    EXPECT_TRUE(fault_of([] { zmr::guarded([] { faults::read_in_noexcept(); }); }).has_value());
}

TEST_F(FaultTranslation, InsideAHandlerOfAnotherException_BothEndWell)
{
    for (const Kind& kind : all_kinds()) {
        const std::optional<unsigned> code = fault_of([&] {
            zmr::guarded([&] {
                try {
                    throw 5;
                } catch (int) {
                    kind.run();
                }
            });
        });
        EXPECT_EQ(code, kind.code) << kind.name;
        EXPECT_EQ(std::current_exception(), nullptr) << kind.name;
    }
}

TEST_F(FaultTranslation, SentMessage_ComesOutOfSendMessageAThousandTimes)
{
    for (const Kind& kind : all_kinds()) {
        window_.fault = kind.run;
        int seen = 0;
        for (int i = 0; i < kTimes; ++i)
            seen += fault_of([&] { window_.SendMessage(kFault); }) == kind.code;
        EXPECT_EQ(seen, kTimes) << kind.name;
    }
}

TEST_F(FaultTranslation, PostedMessage_ComesOutOfThePumpAThousandTimes)
{
    for (const Kind& kind : all_kinds()) {
        window_.fault = kind.run;
        int seen = 0;
        for (int i = 0; i < kTimes; ++i) {
            window_.PostMessage(kFault);
            seen += fault_of([] { the_application().pump_all(); }) == kind.code;
        }
        EXPECT_EQ(seen, kTimes) << kind.name;
    }
}

TEST_F(FaultTranslation, CreationOfAWindow_ComesOutOfCreateAndLeavesNoWindow)
{
    constexpr int kWindows = kTimes / 10;  // one takes milliseconds
    for (const Kind& kind : all_kinds()) {
        int seen = 0;
        int windows = 0;
        for (int i = 0; i < kWindows; ++i) {
            FaultingWindow made;
            made.in_create = true;
            made.fault = kind.run;
            seen += fault_of([&] { static_cast<void>(made.open()); }) == kind.code;
            windows += made.m_hWnd != nullptr;
        }
        EXPECT_EQ(seen, kWindows) << kind.name;
        EXPECT_EQ(windows, 0) << kind.name;
    }
}

TEST_F(FaultTranslation, Timer_ComesOutOfThePump)
{
    for (const Kind& kind : all_kinds()) {
        window_.fault = kind.run;
        window_.SetTimer(1, USER_TIMER_MINIMUM);
        EXPECT_EQ(
            fault_of([] { static_cast<void>(the_application().pump_until([] { return false; })); }),
            kind.code)
            << kind.name;
    }
}

TEST_F(FaultTranslation, MessageSentByAnotherThread_SenderGoesOnAndThePumpThrows)
{
    for (const Kind& kind : all_kinds()) {
        window_.fault = kind.run;
        std::atomic<bool> answered = false;
        const HWND window = window_.m_hWnd;
        std::thread sender([&] {
            answered = ::SendMessage(window, kFault, 0, 0) == 0;
            ::PostMessage(window, WM_NULL, 0, 0);
        });
        const std::optional<unsigned> code =
            fault_of([] { static_cast<void>(the_application().pump_until([] { return false; })); });
        sender.join();
        the_application().pump_all();
        EXPECT_EQ(code, kind.code) << kind.name;
        EXPECT_TRUE(answered) << kind.name;
    }
}

TEST_F(FaultTranslation, Callback_TheCallerOfTheSystemThrowsItOn)
{
    for (const Kind& kind : all_kinds()) {
        const int answer = zmr::behind_barrier(
            [&] {
                kind.run();
                return 1;
            },
            9);
        EXPECT_EQ(answer, 9) << kind.name;
        EXPECT_EQ(fault_of([] { zmr::rethrow_pending(); }), kind.code) << kind.name;
    }
}

TEST_F(FaultTranslation, OtherThread_IsTranslatedOnceItAsksForIt)
{
    for (const Kind& kind : all_kinds()) {
        int seen = 0;
        std::thread([&] {
            EXPECT_FALSE(zmr::translates_faults());
            const Translating here;
            for (int i = 0; i < kTimes; ++i)
                seen += fault_of([&] { zmr::guarded(kind.run); }) == kind.code;
        }).join();
        EXPECT_EQ(seen, kTimes) << kind.name;
    }
}

TEST_F(FaultTranslation, Module_FaultsInItComeOutInTheProgram)
{
    const zmr::OwnedModule module(::LoadLibraryA(ZMR_FAULT_MODULE));
    ASSERT_TRUE(module);
    using Function = void (*)(int);
    const auto function = reinterpret_cast<Function>(
        reinterpret_cast<void*>(::GetProcAddress(module.get(), "fault_in_module")));
    ASSERT_NE(function, nullptr);

    for (int how = 0; how < 4; ++how)
        for (int i = 0; i < kTimes; ++i)
            ASSERT_EQ(fault_of([&] { zmr::guarded([&] { function(how); }); }),
                      how == 1 ? EXCEPTION_INT_DIVIDE_BY_ZERO : EXCEPTION_ACCESS_VIOLATION)
                << how;
}

TEST_F(FaultTranslation, CodeOfTheSystem_KeepsTheFaultsThatItProbesMemoryBy)
{
    int length = -1;
    const std::optional<unsigned> code =
        fault_of([&] { length = ::lstrlenA(reinterpret_cast<LPCSTR>(INT_PTR{8})); });

    EXPECT_EQ(code, std::nullopt);
    EXPECT_EQ(length, 0);
    EXPECT_TRUE(::IsBadReadPtr(reinterpret_cast<void*>(INT_PTR{8}), 4));
}

TEST_F(FaultTranslation, CodeOfTheSystemThatDoesNotDealWithIt_IsTranslatedToo)
{
    const auto nowhere = reinterpret_cast<LONG*>(INT_PTR{8});
    EXPECT_EQ(fault_of([&] {
                  zmr::guarded([&] { ::OffsetRect(reinterpret_cast<RECT*>(nowhere), 1, 1); });
              }),
              EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(FaultTranslation, LastError_OfOtherExceptionsStays)
{
    ::SetLastError(77);
    EXPECT_FALSE(zmr::is_processor_fault(EXCEPTION_STACK_OVERFLOW));
    EXPECT_FALSE(zmr::is_processor_fault(EXCEPTION_BREAKPOINT));
    EXPECT_TRUE(zmr::translates_faults());
    EXPECT_EQ(::GetLastError(), 77u);
}

TEST_F(FaultTranslation, ManyFaults_KeepNothing)
{
    for (const Kind& kind : all_kinds()) {
        window_.fault = kind.run;
        EXPECT_EQ(
            what_leaks([&] { static_cast<void>(fault_of([&] { window_.SendMessage(kFault); })); }),
            "")
            << kind.name;
        EXPECT_EQ(what_leaks([&] {
                      static_cast<void>(fault_of([&] {
                          zmr::guarded([&] {
                              try {
                                  throw 5;
                              } catch (int) {
                                  kind.run();
                              }
                          });
                      }));
                  }),
                  "")
            << kind.name;
    }
}

TEST(FaultTranslator, Set_GivesTheFormerOneAndNullEndsIt)
{
    EXPECT_EQ(AfxSetFaultTranslator(&throw_fault), nullptr);
    EXPECT_TRUE(zmr::translates_faults());
    EXPECT_EQ(AfxSetFaultTranslator(nullptr), &throw_fault);
    EXPECT_FALSE(zmr::translates_faults());
}

TEST(FaultTranslator, CostOfTheGuard_IsSmallBesideAMessage)
{
    const Translating here;
    constexpr int kRounds = 1'000'000;
    LARGE_INTEGER begin{};
    LARGE_INTEGER end{};
    LARGE_INTEGER second{};
    ::QueryPerformanceFrequency(&second);
    volatile int sum = 0;
    ::QueryPerformanceCounter(&begin);
    for (int i = 0; i < kRounds; ++i)
        sum = sum + zmr::guarded([&] { return i; });
    ::QueryPerformanceCounter(&end);
    const double nanoseconds = 1e9 * static_cast<double>(end.QuadPart - begin.QuadPart) /
                               static_cast<double>(second.QuadPart) / kRounds;
    std::cout << "A guarded call takes " << nanoseconds << " ns.\n";

    EXPECT_LT(nanoseconds, 1'000);
}
