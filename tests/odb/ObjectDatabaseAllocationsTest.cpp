// Libraries in a process that runs out of memory at every allocation: no crash, no leak, and what
// opens again is undamaged and holds each entry as it was before or as it is after.

#include "../store/FaultyFileSystem.h"
#include "AllocationFaults.h"
#include "OperationWorld.h"
#include "PausedFileSystem.h"
#include "SeenLibrary.h"
#include "foundation/GException.h"
#include "store/ResourceFileServer.h"
#include "store/StoreFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <new>
#include <string>

namespace {

/// Positions tried for each operation and kind; all of them when ZMR_ALL_ALLOCATIONS is set.
constexpr std::uint64_t kPositions = 40;

constexpr const char* kLibraries[] = {"main.odb", "other.odb", "made.odb"};

using Seen = std::map<std::string, SeenLibrary>;

Seen see_all()
{
    Seen seen;
    for (const char* name : kLibraries)
        seen[name] = see_library(OperationWorld::File(name));
    return seen;
}

/// Opens, does it and closes, with the allocation refused while it does it and closes; with 0 none.
/// The number of allocations.
std::uint64_t run(const WorldOperation& operation, std::uint64_t number,
                  AllocationFaults::Kind kind)
{
    OperationWorld world;
    world.open();
    AllocationFaults::Arm(number == 0 ? UINT64_MAX : number, kind);
    try {
        operation.run(world);
        if (world.main != nullptr)
            world.main->flush();
    } catch (const std::bad_alloc&) {
    } catch (const GException&) {
    }
    // Lasting want of memory ends before the libraries close, as the user closes something else.
    if (kind == AllocationFaults::Kind::Lasting)
        AllocationFaults::Disarm();
    world.close();
    AllocationFaults::Disarm();
    return AllocationFaults::Count();
}

bool is_old_or_new(const Seen& seen, const Seen& before, const Seen& after)
{
    const auto part = [](const Seen& all, const std::string& library, const std::string& entry) {
        const auto found = all.find(library);
        if (found == all.end())
            return std::string("(no entry)");
        const auto place = found->second.find(entry);
        return place == found->second.end() ? std::string("(no entry)") : place->second;
    };
    const auto fits = [&](const Seen& listed) {
        for (const auto& [library, entries] : listed)
            for (const auto& [entry, text] : entries) {
                const std::string now = part(seen, library, entry);
                if (now == part(before, library, entry) || now == part(after, library, entry))
                    continue;
                ADD_FAILURE() << library << " " << entry << ": " << now.substr(0, 300);
                return false;
            }
        return true;
    };
    return fits(seen) && fits(before) && fits(after);
}

class ObjectDatabaseAllocations : public testing::TestWithParam<WorldOperation> {};

}  // namespace

void PrintTo(const WorldOperation& operation, std::ostream* out)
{
    *out << operation.name;
}

TEST_P(ObjectDatabaseAllocations, RefusedAnywhere_NothingLeaksAndEachEntryIsAsBeforeOrAsAfter)
{
    zmr::FaultyFileSystem start;
    Seen before;
    Seen after;
    std::uint64_t count = 0;
    {
        PausedFileSystem paused(start);
        const zmr::StoreFilesInPlace in_place(paused);
        OperationWorld::Prepare();
        before = see_all();
    }
    ASSERT_EQ(before["main.odb"].size(), 6U);
    ASSERT_EQ(before["main.odb"].count("damaged"), 0U);
    {
        zmr::FaultyFileSystem files = start.copy();
        PausedFileSystem paused(files);
        const zmr::StoreFilesInPlace in_place(paused);
        count = run(GetParam(), 0, AllocationFaults::Kind::Once);
        after = see_all();
    }
    ASSERT_GT(count, 0U);

    // What the program keeps for the next time is the same after the same work.
    const auto settle = [&] {
        zmr::FaultyFileSystem files = start.copy();
        PausedFileSystem paused(files);
        const zmr::StoreFilesInPlace in_place(paused);
        static_cast<void>(see_all());
    };
    settle();
    settle();
    const std::int64_t alive = AllocationFaults::Alive();
    const bool all = std::getenv("ZMR_ALL_ALLOCATIONS") != nullptr;
    const std::uint64_t step = all ? 1 : std::max<std::uint64_t>(1, count / kPositions);
    std::uint64_t done = 0;
    for (const auto kind : {AllocationFaults::Kind::Once, AllocationFaults::Kind::Lasting})
        for (std::uint64_t number = 1 + (all ? 0 : count % step); number <= count; number += step) {
            ++done;
            {
                zmr::FaultyFileSystem files = start.copy();
                PausedFileSystem paused(files);
                const zmr::StoreFilesInPlace in_place(paused);
                static_cast<void>(run(GetParam(), number, kind));
                ASSERT_TRUE(is_old_or_new(see_all(), before, after))
                    << "allocation " << number << " of " << count << ", "
                    << (kind == AllocationFaults::Kind::Once ? "once" : "lasting");
            }
            if (AllocationFaults::Alive() != alive)
                settle();
            ASSERT_EQ(AllocationFaults::Alive(), alive)
                << "allocation " << number << " of " << count << ", "
                << (kind == AllocationFaults::Kind::Once ? "once" : "lasting");
        }
    RecordProperty("refused", std::to_string(done));
}

TEST(ObjectDatabaseMemory, RanOutInAChange_TheErrorSaysSo)
{
    zmr::FaultyFileSystem files;
    PausedFileSystem paused(files);
    const zmr::StoreFilesInPlace in_place(paused);
    OperationWorld::Prepare();
    OperationWorld world;
    world.open();
    const TestNote note("a new one");
    const GString name("new");

    // The first ones are refused before anything was changed.
    for (std::uint64_t number = 1; number < 100 && world.main->server->error() == 0; ++number) {
        AllocationFaults::Arm(number, AllocationFaults::Kind::Once);
        EXPECT_THROW(world.main->append_object(&note, name, nullptr), std::bad_alloc);
        AllocationFaults::Disarm();
    }

    EXPECT_EQ(world.main->server->error(), static_cast<int>(zmr::FileErrorKind::OutOfMemory));
    EXPECT_STREQ(world.main->server->error_text().text, "memory ran out");
}

INSTANTIATE_TEST_SUITE_P(Operations, ObjectDatabaseAllocations,
                         testing::ValuesIn(world_operations().begin(), world_operations().end()),
                         [](const auto& one) { return std::string(one.param.name); });
