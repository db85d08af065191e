#include "app/ThreadBody.h"

#include "foundation/GException.h"
#include "platform/CException.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Steps = std::vector<std::string>;

/// Notes what is asked of it, and where.
class NotedSurroundings : public zmr::ThreadSurroundings {
public:
    void translate_faults() override { steps.emplace_back("translate"); }
    void signal_start() override { steps.emplace_back("signal"); }
    void join_services() override { steps.emplace_back("join"); }
    void leave_services() override { steps.emplace_back("leave"); }
    void show(const GLibraryException& failure) override
    {
        steps.push_back("show " + std::string(failure.what()));
        if (show_fails)
            throw std::runtime_error("no box");
    }
    void report(CException&) override { steps.emplace_back("report"); }

    Steps steps;
    bool show_fails = false;
};

int alive = 0;

class CountedException : public CException {
public:
    CountedException() { ++alive; }
    ~CountedException() override { --alive; }
};

unsigned note_call(void* surroundings)
{
    static_cast<NotedSurroundings*>(surroundings)->steps.emplace_back("call");
    return 12;
}

}  // namespace

TEST(ThreadBody, Function_RunsOnceBehindAllPreparationsAndItsResultIsGiven)
{
    NotedSurroundings surroundings;
    EXPECT_EQ(zmr::run_thread_body(&note_call, &surroundings, surroundings), 12u);
    EXPECT_EQ(surroundings.steps, (Steps{"translate", "signal", "join", "call", "leave"}));
}

TEST(ThreadBody, LibraryException_IsShownAndTheResultIsMinusOne)
{
    NotedSurroundings surroundings;
    const auto fail = [](void*) -> unsigned { throw GLibraryException("no disk"); };
    EXPECT_EQ(zmr::run_thread_body(fail, nullptr, surroundings), zmr::kThreadFailed);
    EXPECT_EQ(surroundings.steps, (Steps{"translate", "signal", "join", "show no disk", "leave"}));
}

TEST(ThreadBody, OutOfMemory_IsALibraryException)
{
    NotedSurroundings surroundings;
    const auto fail = [](void*) -> unsigned { throw OutOfMemory_Exception(); };
    EXPECT_EQ(zmr::run_thread_body(fail, nullptr, surroundings), zmr::kThreadFailed);
    EXPECT_EQ(surroundings.steps.size(), 5u);
}

TEST(ThreadBody, PlatformException_IsReportedAndDeletedAndTheResultIsMinusOne)
{
    NotedSurroundings surroundings;
    const auto fail = [](void*) -> unsigned {
        throw static_cast<CException*>(new CountedException);
    };
    EXPECT_EQ(zmr::run_thread_body(fail, nullptr, surroundings), zmr::kThreadFailed);
    EXPECT_EQ(surroundings.steps, (Steps{"translate", "signal", "join", "report", "leave"}));
    EXPECT_EQ(alive, 0);
}

TEST(ThreadBody, OtherException_LeavesTheServicesAndIsThrownOn)
{
    NotedSurroundings surroundings;
    const auto fail = [](void*) -> unsigned { throw std::runtime_error("other"); };
    EXPECT_THROW(static_cast<void>(zmr::run_thread_body(fail, nullptr, surroundings)),
                 std::runtime_error);
    EXPECT_EQ(surroundings.steps, (Steps{"translate", "signal", "join", "leave"}));
}

TEST(ThreadBody, PlainLibraryRootException_IsNotShownButThrownOn)
{
    NotedSurroundings surroundings;
    const auto fail = [](void*) -> unsigned { throw GException(GString("inner")); };
    EXPECT_THROW(static_cast<void>(zmr::run_thread_body(fail, nullptr, surroundings)), GException);
    EXPECT_EQ(surroundings.steps.back(), "leave");
}

TEST(ThreadBody, BoxThatFails_LeavesTheServicesAllTheSame)
{
    NotedSurroundings surroundings;
    surroundings.show_fails = true;
    const auto fail = [](void*) -> unsigned { throw GLibraryException("no disk"); };
    EXPECT_THROW(static_cast<void>(zmr::run_thread_body(fail, nullptr, surroundings)),
                 std::runtime_error);
    EXPECT_EQ(surroundings.steps.back(), "leave");
}
