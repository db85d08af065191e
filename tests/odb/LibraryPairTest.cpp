// Two libraries that refer to each other, each written by a process of its own, at once; and two
// threads that load through the references of both.

#include "TestObjects.h"
#include "odb/ODB_MediatorsArray.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

std::unique_ptr<ChildProcess> start_writer(const std::string& own, const std::string& other)
{
    ChildStart start;
    start.program = ZMR_ODB_CHILD;
    start.words = {own, other};
    std::string reason;
    auto child = ChildProcess::Start(start, reason);
    if (child == nullptr)
        ADD_FAILURE() << reason;
    return child;
}

}  // namespace

TEST(LibraryPair, TwoProcessesAtOnce_EachWritesItsOwnAndReadsTheOther)
{
    constexpr int kRounds = 20;
    const TemporaryFolder folder;
    const std::string files[] = {folder.file("a.odb"), folder.file("b.odb")};
    const std::unique_ptr<ChildProcess> writers[] = {start_writer(files[0], files[1]),
                                                     start_writer(files[1], files[0])};
    ASSERT_TRUE(writers[0] != nullptr && writers[1] != nullptr);

    for (int round = 0; round < kRounds; ++round) {
        for (const auto& writer : writers)
            ASSERT_TRUE(writer->write_line("go on"));
        for (const auto& writer : writers) {
            std::string line;
            ASSERT_TRUE(writer->read_line(line));
            ASSERT_EQ(line, "round " + std::to_string(round));
        }
    }
    for (const auto& writer : writers) {
        ASSERT_TRUE(writer->write_line("end"));
        EXPECT_EQ(writer->wait().code, 0);
    }
    for (const std::string& file : files) {
        ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
        ASSERT_NE(database.server, nullptr) << database.open_error().text;
        ODB_MediatorsArray contents;
        database.get_contents(contents, true);
        EXPECT_EQ(contents.count, 2 * kRounds - 1);
        for (long i = 0; i < contents.count; ++i) {
            const std::unique_ptr<GStreamable> object(contents.at(i).get_object());
            EXPECT_NE(object, nullptr) << contents.at(i).get_DB_key().text;
        }
    }
}

TEST(LibraryPair, WriterKilled_ItsLibraryIsWholeAndTheOtherReadsIt)
{
    for (int turn = 0; turn < 5; ++turn) {
        SCOPED_TRACE(turn);
        const TemporaryFolder folder;
        const std::string files[] = {folder.file("a.odb"), folder.file("b.odb")};
        const auto first = start_writer(files[0], files[1]);
        const auto second = start_writer(files[1], files[0]);
        ASSERT_TRUE(first != nullptr && second != nullptr);
        std::string line;
        for (int round = 0; round <= turn; ++round) {
            ASSERT_TRUE(first->write_line("go on") && second->write_line("go on"));
            ASSERT_TRUE(first->read_line(line) && line.starts_with("round ")) << line;
            ASSERT_TRUE(second->read_line(line) && line.starts_with("round ")) << line;
        }
        ASSERT_TRUE(first->write_line("go on") && second->write_line("go on"));
        first->kill();
        ASSERT_TRUE(second->read_line(line) && line.starts_with("round ")) << line;
        ASSERT_TRUE(second->write_line("end"));
        EXPECT_EQ(second->wait().code, 0);

        ObjectDatabase database(files[0].c_str(), GIO::OpenReadWrite);
        ASSERT_NE(database.server, nullptr) << database.open_error().text;
        EXPECT_TRUE(database.verify(
            [](const ResourceFile::Damage& damage) { ADD_FAILURE() << damage.reason; }));
        ODB_MediatorsArray contents;
        database.get_contents(contents, true);
        for (long i = 0; i < contents.count; ++i) {
            const std::unique_ptr<GStreamable> object(contents.at(i).get_object());
            EXPECT_NE(object, nullptr) << contents.at(i).get_DB_key().text;
        }
    }
}

TEST(LibraryPair, TwoThreadsLoadInOppositeDirections_NeitherWaitsForTheOther)
{
    const TemporaryFolder folder;
    ChildStart start;
    start.program = ZMR_ODB_CHILD;
    start.words = {"across", folder.file("a.odb"), folder.file("b.odb")};
    std::string reason;
    const auto child = ChildProcess::Start(start, reason);
    ASSERT_NE(child, nullptr) << reason;

    std::string line;
    EXPECT_TRUE(child->read_line(line));
    EXPECT_EQ(line, "loaded");
    EXPECT_EQ(child->wait().code, 0);
}
