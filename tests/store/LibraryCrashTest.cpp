#include "FaultyFileSystem.h"
#include "LibraryModel.h"
#include "Random.h"
#include "store/LibraryFile.h"

#include <gtest/gtest.h>

#include <functional>

namespace zmr {
namespace {

constexpr char kName[] = "lib";
/// So small that every fold, root and kind of commit comes up within a few changes.
constexpr LibraryTuning kSmall{6000, 60'000, 60'000, 700};

/// What a run has been told to be durable, and what it may have reached besides.
struct Oracle {
    LibraryModel acknowledged;
    LibraryModel running;  // of the commit that was under way when it stopped
};

/// A run of changes and commits that takes the same way each time, until the file system stops it.
using Script = std::function<void(LibraryFile&, Oracle&)>;

/// Ordinary work: some changes to a commit, a long list now and then so that the index is folded.
void ordinary(LibraryFile& file, Oracle& oracle, unsigned seed, int commits, bool packs)
{
    Random random(seed);
    LibraryModel model = oracle.acknowledged;
    for (int i = 0; i < commits && !file.error(); ++i) {
        file.begin_scope();
        if (i % 4 == 3)
            model.put_many(file, random, 12);
        for (unsigned changes = 1 + random() % 6; changes > 0; --changes)
            model.change(file, random);
        oracle.running = model;
        static_cast<void>(file.commit());  // done when the scope ends
        file.end_scope();
        if (file.error())
            return;
        oracle.acknowledged = model;
        if (packs && i % 5 == 4 && !file.pack())
            return;
    }
}

/// Runs the script with a stop at operation `stop`, then a power loss for each pattern; what opens
/// must be the acknowledged state or the running one, whole, and go on working.
void check_stop(const FaultyFileSystem& start, const Oracle& before, const Script& script,
                std::uint64_t stop, unsigned patterns)
{
    for (unsigned pattern = 0; pattern < patterns; ++pattern) {
        SCOPED_TRACE(testing::Message() << "stop " << stop << " pattern " << pattern);
        const auto seed = static_cast<std::uint32_t>(stop * 31 + pattern);
        FaultyFileSystem files = start.copy();
        Oracle oracle = before;
        {
            files.stop_at(stop, seed);
            LibraryFile file(files, kSmall);
            if (file.open(kName, LibraryAccess::Write, "tester").status == LibraryOpenStatus::Ok)
                script(file, oracle);
        }
        if (pattern == 0)
            files.end_process();
        else
            files.lose_power(seed);

        LibraryFile reader(files, kSmall);
        const LibraryOpenResult result = reader.open(kName, LibraryAccess::Read);
        if (result.status == LibraryOpenStatus::Missing ||
            result.status == LibraryOpenStatus::NotALibrary ||
            result.status == LibraryOpenStatus::Damaged) {
            // Never made, or made and nothing committed to it.
            ASSERT_TRUE(oracle.acknowledged.entries.empty()) << result.text;
        } else {
            ASSERT_EQ(result.status, LibraryOpenStatus::Ok) << result.text;
            const LibraryModel seen = LibraryModel::Of(reader);
            ASSERT_TRUE(seen == oracle.acknowledged || seen == oracle.running)
                << seen.entries.size() << " entries instead of "
                << oracle.acknowledged.entries.size() << " or " << oracle.running.entries.size();
        }
        reader.close();

        LibraryFile writer(files, kSmall);
        ASSERT_EQ(writer.open(kName, LibraryAccess::Write, "next").status, LibraryOpenStatus::Ok);
        Oracle next;
        next.acknowledged = LibraryModel::Of(writer);
        ASSERT_TRUE(next.acknowledged == oracle.acknowledged ||
                    next.acknowledged == oracle.running);
        ordinary(writer, next, seed, 2, false);
        ASSERT_EQ(LibraryModel::Of(writer), next.acknowledged);
        ASSERT_TRUE(writer.close());
        ASSERT_EQ(writer.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
        ASSERT_EQ(LibraryModel::Of(writer), next.acknowledged);
        ASSERT_TRUE(writer.verify({}));
    }
}

/// Stops the script at each of its operations, every `step`th.
void check_every_stop(const FaultyFileSystem& start, const Oracle& before, const Script& script,
                      std::uint64_t step, unsigned patterns)
{
    FaultyFileSystem whole = start.copy();
    const std::uint64_t first = whole.operations();
    {
        Oracle oracle = before;
        LibraryFile file(whole, kSmall);
        ASSERT_EQ(file.open(kName, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
        script(file, oracle);
    }
    const std::uint64_t count = whole.operations() - first;
    ASSERT_GT(count, 10u);
    for (std::uint64_t stop = 1; stop <= count && !testing::Test::HasFatalFailure(); stop += step)
        check_stop(start, before, script, stop, patterns);
}

/// A library with some history: folded, with free space in it, and a tail.
void prepare(FaultyFileSystem& files, Oracle& oracle, unsigned seed, int commits)
{
    LibraryFile file(files, kSmall);
    ASSERT_EQ(file.open(kName, LibraryAccess::Write, "tester").status, LibraryOpenStatus::Ok);
    ordinary(file, oracle, seed, commits, false);
}

TEST(LibraryCrash, StopAtEveryOperationOfANewLibrary_LeavesACommittedState)
{
    const FaultyFileSystem nothing;
    for (unsigned seed = 1; seed <= 3; ++seed)
        check_every_stop(
            nothing, {},
            [&](LibraryFile& file, Oracle& oracle) { ordinary(file, oracle, seed, 6, false); }, 1,
            4);
}

TEST(LibraryCrash, StopAtEveryOperationOfAnOldLibrary_LeavesACommittedState)
{
    for (unsigned seed = 11; seed <= 13; ++seed) {
        FaultyFileSystem files;
        Oracle oracle;
        prepare(files, oracle, seed, 40);
        check_every_stop(
            files, oracle,
            [&](LibraryFile& file, Oracle& o) { ordinary(file, o, seed + 50, 24, false); }, 1, 3);
    }
}

TEST(LibraryCrash, StopAtEveryOperationOfARunOfSmallCommits_LeavesACommittedState)
{
    // Most of them lie in a reserve that an earlier one wrote; the close cuts it.
    const Script small = [](LibraryFile& file, Oracle& oracle) {
        LibraryModel model = oracle.acknowledged;
        Random random(7);
        for (int i = 0; i < 16 && !file.error(); ++i) {
            file.begin_scope();
            model.change(file, random);
            oracle.running = model;
            static_cast<void>(file.commit());
            file.end_scope();
            if (!file.error())
                oracle.acknowledged = model;
        }
        file.close();
    };
    FaultyFileSystem files;
    Oracle oracle;
    prepare(files, oracle, 15, 10);
    check_every_stop(files, oracle, small, 1, 6);
}

TEST(LibraryCrash, StopAtEveryOperationOfPack_ChangesNothing)
{
    for (unsigned seed = 21; seed <= 23; ++seed) {
        FaultyFileSystem files;
        Oracle oracle;
        prepare(files, oracle, seed, 40);
        check_every_stop(
            files, oracle, [&](LibraryFile& file, Oracle&) { static_cast<void>(file.pack()); }, 1,
            4);
    }
}

TEST(LibraryCrash, StopsAmongPacksAndCommits_LeaveACommittedState)
{
    FaultyFileSystem files;
    Oracle oracle;
    prepare(files, oracle, 31, 20);
    check_every_stop(
        files, oracle, [&](LibraryFile& file, Oracle& o) { ordinary(file, o, 77, 20, true); }, 1,
        3);
}

TEST(LibraryCrash, StopDuringOneLargeScope_LeavesTheStateBefore)
{
    FaultyFileSystem files;
    Oracle oracle;
    prepare(files, oracle, 41, 10);
    const Script large = [](LibraryFile& file, Oracle& o) {
        LibraryModel model = o.acknowledged;
        Random random(5);
        file.begin_scope();
        for (int i = 0; i < 20; ++i)
            model.put_many(file, random, 60);  // folded before the commit, more than once
        static_cast<void>(file.commit());
        o.running = model;
        file.end_scope();
        if (!file.error())
            o.acknowledged = model;
    };
    check_every_stop(files, oracle, large, 7, 2);
}

TEST(LibraryCrash, PowerLossSoonAfterAKill_LeavesACommittedState)
{
    FaultyFileSystem start;
    Oracle before;
    prepare(start, before, 45, 14);
    for (std::uint64_t killed = 1; killed < 60; ++killed)
        for (std::uint64_t stop = 1; stop < 14; ++stop) {
            SCOPED_TRACE(testing::Message()
                         << "killed at " << killed << ", power lost at " << stop);
            const auto seed = static_cast<std::uint32_t>(killed * 100 + stop);
            FaultyFileSystem files = start.copy();
            Oracle first = before;
            {
                files.stop_at(killed, seed);
                LibraryFile file(files, kSmall);
                if (file.open(kName, LibraryAccess::Write, "first").status == LibraryOpenStatus::Ok)
                    ordinary(file, first, 46, 12, false);
            }
            files.end_process();
            // What the killed one left unsynced is seen by the next, who builds on it.
            Oracle second = first;
            {
                files.stop_at(stop, seed);
                LibraryFile file(files, kSmall);
                if (file.open(kName, LibraryAccess::Write, "next").status ==
                    LibraryOpenStatus::Ok) {
                    second.acknowledged = LibraryModel::Of(file);
                    second.running = second.acknowledged;
                    ordinary(file, second, seed, 4, false);
                }
            }
            files.lose_power(seed);

            LibraryFile file(files, kSmall);
            ASSERT_EQ(file.open(kName, LibraryAccess::Read).status, LibraryOpenStatus::Ok);
            const LibraryModel seen = LibraryModel::Of(file);
            ASSERT_TRUE(seen == second.acknowledged || seen == second.running);
            // A root may be torn; that is what the other one is for.
            file.verify([](const LibraryDamage& damage) {
                ASSERT_EQ(damage.part, LibraryDamage::Part::RootSlot) << damage.text;
            });
        }
}

TEST(LibraryCrash, EachFailedWriteOrSync_SticksAndLeavesTheLastCommit)
{
    for (const bool sticky : {false, true}) {
        FaultyFileSystem start;
        Oracle before;
        prepare(start, before, 51, 12);
        FaultyFileSystem whole = start.copy();
        const std::uint64_t first = whole.operations();
        {
            LibraryFile file(whole, kSmall);
            Oracle oracle = before;
            ASSERT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
            ordinary(file, oracle, 99, 12, true);
        }
        const std::uint64_t count = whole.operations() - first;
        for (std::uint64_t at = 1; at <= count; ++at) {
            SCOPED_TRACE(testing::Message() << "operation " << at << " sticky " << sticky);
            FaultyFileSystem files = start.copy();
            Oracle oracle = before;
            LibraryFile file(files, kSmall);
            files.fail_at(at, FileErrorKind::DiskFull, sticky);
            const LibraryOpenResult opened = file.open(kName, LibraryAccess::Write);
            if (opened.status != LibraryOpenStatus::Ok) {
                ASSERT_EQ(opened.status, LibraryOpenStatus::Failed);
                ASSERT_EQ(opened.error.kind, FileErrorKind::DiskFull);
                continue;
            }
            ordinary(file, oracle, 99, 12, true);
            if (file.error()) {
                ASSERT_EQ(file.error().kind, FileErrorKind::DiskFull);
                files.heal();
                // Sticky, though the disk has room again; what is seen is a committed state.
                ASSERT_FALSE(file.put({}, "n", "t", ContentKind::Raw, "", {}));
                ASSERT_FALSE(file.commit());
                const LibraryModel seen = LibraryModel::Of(file);
                ASSERT_TRUE(seen == oracle.acknowledged || seen == oracle.running);
                ASSERT_FALSE(file.close());
            } else {
                file.close();
            }
            files.heal();
            ASSERT_EQ(file.open(kName, LibraryAccess::Write).status, LibraryOpenStatus::Ok);
            const LibraryModel seen = LibraryModel::Of(file);
            ASSERT_TRUE(seen == oracle.acknowledged || seen == oracle.running);
        }
    }
}

TEST(LibraryCrash, EachFailedRead_IsAnErrorOfThatCallOnly)
{
    FaultyFileSystem files;
    Oracle oracle;
    prepare(files, oracle, 61, 12);
    for (std::uint64_t at = 1; at < 40; ++at) {
        SCOPED_TRACE(at);
        LibraryFile file(files, kSmall);
        files.fail_read(at);
        if (file.open(kName, LibraryAccess::Read).status != LibraryOpenStatus::Ok) {
            files.heal();
            continue;
        }
        int unreadable = 0;
        const LibraryModel seen = LibraryModel::Of(file, &unreadable);
        for (const auto& [key, entry] : seen.entries)
            ASSERT_EQ(oracle.acknowledged.entries.at(key), entry);
        files.heal();
        ASSERT_FALSE(file.error());
        if (file.last_damage().part != LibraryDamage::Part::RootSlot) {
            ASSERT_EQ(LibraryModel::Of(file), oracle.acknowledged);
        }
    }
}

}  // namespace
}  // namespace zmr
