#include "tests/TemporaryFolder.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

// What the application does not survive: a program in a process of its own ends at once, by the
// system's or the compiler's own way, and neither hangs nor goes on.

namespace {

constexpr int kStackOverflow = static_cast<int>(0xC00000FDu);  // the system's code of the exception
constexpr const char* kReport = "The stack of a thread is full: the program ends.";
constexpr int kAbort = 3;  // what std::abort ends with

struct Ended {
    std::vector<std::string> lines;
    std::string errors;
    int code = 0;
};

Ended run_child(const char* word)
{
    Ended ended;
    std::string reason;
    const TemporaryFolder folder;
    ChildStart start;
    start.err_file = folder.file("errors");
    start.program = ZMR_APP_CHILD;
    start.words = {word};
    const std::unique_ptr<ChildProcess> child = ChildProcess::Start(start, reason);
    if (child == nullptr) {
        ADD_FAILURE() << reason;
        return ended;
    }
    for (std::string line; child->read_line(line);)
        ended.lines.push_back(line);
    ended.code = child->wait().code;
    std::ifstream errors(start.err_file);
    std::getline(errors, ended.errors);
    return ended;
}

using Lines = std::vector<std::string>;

}  // namespace

TEST(GWinAppEnd, NothingBad_RunsToItsEnd)
{
    const Ended ended = run_child("nothing");

    EXPECT_EQ(ended.lines, (Lines{"begin", "survived"}));
    EXPECT_EQ(ended.code, 0);
}

TEST(GWinAppEnd, OverflowOfTheStackInAHandler_EndsTheProgramWithAReport)
{
    const Ended ended = run_child("overflow");

    EXPECT_EQ(ended.lines, Lines{"begin"});
    EXPECT_EQ(ended.errors, kReport);
    EXPECT_EQ(ended.code, kStackOverflow);
}

TEST(GWinAppEnd, OverflowOfTheStackOfAWorker_EndsTheProgramWithAReport)
{
    const Ended ended = run_child("overflow-worker");

    EXPECT_EQ(ended.lines, Lines{"begin"});
    EXPECT_EQ(ended.errors, kReport);
    EXPECT_EQ(ended.code, kStackOverflow);
}

class ForeignExceptionOfAWorker : public testing::TestWithParam<const char*> {};

TEST_P(ForeignExceptionOfAWorker, EndsTheProgramByTerminate)
{
    const Ended ended = run_child(GetParam());

    EXPECT_EQ(ended.lines, Lines{"begin"});
    EXPECT_EQ(ended.code, kAbort);
}

INSTANTIATE_TEST_SUITE_P(GWinAppEnd, ForeignExceptionOfAWorker,
                         testing::Values("int", "exception", "foreign"),
                         [](const auto& word) { return std::string(word.param); });
