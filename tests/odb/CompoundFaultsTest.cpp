// A process that is stopped in the middle of a change, and a next one that can't read, can't write
// or runs out of memory while it opens what was left. The third finds the state before the change
// or the one after it.

#include "../store/FaultyFileSystem.h"
#include "AllocationFaults.h"
#include "OperationWorld.h"
#include "PausedFileSystem.h"
#include "SeenLibrary.h"
#include "foundation/GException.h"
#include "store/StoreFiles.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

namespace {

/// The changes that are stopped; each changes "main.odb" in one commit.
constexpr const char* kStopped[] = {"AppendNew", "AppendLarge", "RemoveInternal", "RenameInternal",
                                    "CopyInternal"};
/// Cases tried, over all changes; ZMR_COMPOUND_FAULTS sets another number.
constexpr std::uint64_t kCases = 500;

enum class Second { Read, AllReads, Write, DiskFull, Memory, LastingMemory };
constexpr Second kSeconds[] = {Second::Read,     Second::AllReads, Second::Write,
                               Second::DiskFull, Second::Memory,   Second::LastingMemory};

const WorldOperation& operation_of(std::string_view name)
{
    for (const WorldOperation& one : world_operations())
        if (name == one.name)
            return one;
    throw std::logic_error("no such operation");
}

SeenLibrary see()
{
    return see_library(OperationWorld::File("main.odb"));
}

/// The entries of `seen` that are not in `expected`, and those that are missing.
std::string difference(const SeenLibrary& seen, const SeenLibrary& expected)
{
    std::string text;
    for (const auto& [entry, value] : seen)
        if (!expected.contains(entry) || expected.at(entry) != value)
            text += entry + ": " + value.substr(0, 200) + "\n";
    for (const auto& [entry, value] : expected)
        if (!seen.contains(entry))
            text += entry + " is missing\n";
    return text;
}

void run(const WorldOperation& operation)
{
    OperationWorld world;
    world.open();
    operation.run(world);
    world.close();
}

/// Opens to write, reads and adds nothing, with the fault at `number`.
void open_with(zmr::FaultyFileSystem& files, Second fault, std::uint64_t number)
{
    if (fault == Second::Read)
        files.fail_read(number);
    else if (fault == Second::AllReads)
        files.fail_reads_from(number);
    else if (fault == Second::Write || fault == Second::DiskFull)
        files.fail_at(
            files.operations() + number,
            fault == Second::Write ? zmr::FileErrorKind::Other : zmr::FileErrorKind::DiskFull,
            fault == Second::DiskFull);
    else
        AllocationFaults::Arm(number, fault == Second::Memory ? AllocationFaults::Kind::Once
                                                              : AllocationFaults::Kind::Lasting);
    try {
        ObjectDatabase database(OperationWorld::File("main.odb").c_str(), GIO::OpenReadWrite);
        static_cast<void>(database.get_mediator(GString("lamp")));
        AllocationFaults::Disarm();
    } catch (const std::bad_alloc&) {
    }
    AllocationFaults::Disarm();
    files.heal();
}

}  // namespace

TEST(CompoundFaults, FaultWhileOpeningAfterAStop_NextOpenFindsOldOrNew)
{
    const char* const wanted = std::getenv("ZMR_COMPOUND_FAULTS");
    const std::uint64_t cases = wanted == nullptr ? kCases : std::strtoull(wanted, nullptr, 10);
    zmr::FaultyFileSystem start;
    PausedFileSystem paused_start(start);
    SeenLibrary before;
    {
        const zmr::StoreFilesInPlace in_place(paused_start);
        OperationWorld::Prepare();
        before = see();
    }
    ASSERT_EQ(before.size(), 6U);

    std::uint64_t done = 0;
    for (const char* const name : kStopped) {
        SCOPED_TRACE(name);
        const WorldOperation& operation = operation_of(name);
        std::uint64_t operations = 0;
        SeenLibrary after;
        {
            zmr::FaultyFileSystem whole = start.copy();
            PausedFileSystem paused(whole);
            const zmr::StoreFilesInPlace in_place(paused);
            run(operation);
            operations = whole.operations();
            after = see();
        }
        ASSERT_NE(after, before);
        zmr::Random random(7);
        for (std::uint64_t i = 0; i < cases / std::size(kStopped); ++i, ++done) {
            const std::uint64_t stop = 1 + i % (operations + 1);
            const Second fault = kSeconds[(i / (operations + 1) + i) % std::size(kSeconds)];
            const auto seed = static_cast<std::uint32_t>(i + 1);
            const std::uint64_t number = 1 + random() % (i % 2 == 0 ? 8 : 40);
            zmr::FaultyFileSystem files = start.copy();
            PausedFileSystem paused(files);
            const zmr::StoreFilesInPlace in_place(paused);
            files.stop_at(stop, seed);
            run(operation);
            files.lose_power(seed);
            open_with(files, fault, number);

            SeenLibrary seen = see();
            // A slot that the stop has torn is there until the next root is written; the other one
            // serves.
            if (const auto damage = seen.find("damaged");
                damage != seen.end() && (damage->second == "the first root is damaged; verify" ||
                                         damage->second == "the second root is damaged; verify"))
                seen.erase(damage);
            ASSERT_TRUE(seen == before || seen == after)
                << "stopped at " << stop << " of " << operations << ", fault "
                << static_cast<int>(fault) << " at " << number << ", seed " << seed << "\n"
                << difference(seen, before);
        }
    }
    EXPECT_EQ(done, cases / std::size(kStopped) * std::size(kStopped));
}
