#include "scene_editor/core/LibraryWorker.h"

#include "SampleLibrary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

using namespace editor;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

// All results, once the worker has nothing left to do.
std::vector<LibraryResult> results_of(LibraryWorker& worker)
{
    worker.wait_until_idle();
    std::vector<LibraryResult> results;
    while (std::optional<LibraryResult> result = worker.take_result())
        results.push_back(std::move(*result));
    return results;
}

template <class Kind>
std::vector<Kind> only(std::vector<LibraryResult> results)
{
    std::vector<Kind> found;
    for (LibraryResult& result : results) {
        if (Kind* const kind = std::get_if<Kind>(&result))
            found.push_back(std::move(*kind));
    }
    return found;
}

}  // namespace

TEST(LibraryWorker, Listing_ComesInBatchesWhoseFirstIsSmall)
{
    const SampleLibrary library(600, 0);
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.list(3, {});

    const auto batches = only<RowsListed>(results_of(worker));
    ASSERT_EQ(batches.size(), 2U);
    EXPECT_EQ(batches[0].rows.size(), LibraryWorker::kRowsOfFirstBatch);
    EXPECT_FALSE(batches[0].is_last);
    EXPECT_EQ(batches[1].rows.size(), 600 - LibraryWorker::kRowsOfFirstBatch);
    EXPECT_TRUE(batches[1].is_last);
    EXPECT_EQ(batches[1].listing, 3U);
}

TEST(LibraryWorker, NewListing_ReplacesTheOneBefore)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.list(1, {});
    worker.list(2, {"Plain"});

    const auto batches = only<RowsListed>(results_of(worker));
    ASSERT_FALSE(batches.empty());
    EXPECT_EQ(batches.back().listing, 2U);
    EXPECT_EQ(batches.back().rows.size(), 1U);
}

TEST(LibraryWorker, ChangesOfAnotherClient_AreToldWithoutBeingAskedFor)
{
    const SampleLibrary library;
    std::mutex mutex;
    std::condition_variable results_wait;
    bool do_wait = false;
    LibraryWorker worker([&] {
        const std::lock_guard lock(mutex);
        do_wait = true;
        results_wait.notify_all();
    });
    worker.open(library.file());
    worker.list(7, {});
    static_cast<void>(results_of(worker));
    {
        const std::lock_guard lock(mutex);
        do_wait = false;
    }
    ObjectDatabase other(library.file().c_str(), GIO::OpenReadWrite);
    other.remove_object("root b");

    std::unique_lock lock(mutex);
    ASSERT_TRUE(results_wait.wait_for(lock, std::chrono::seconds(20), [&] { return do_wait; }));
    lock.unlock();
    const auto changes = only<NamesChanged>(results_of(worker));
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes[0].listing, 7U);
    EXPECT_THAT(changes[0].gone, ElementsAre("root b"));
}

TEST(LibraryWorker, WantedEntry_ComesAsItIsWhereItIsThere)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.want_entry({"Plain"}, "three");
    worker.want_entry({}, "none");

    const auto entries = only<EntryChanged>(results_of(worker));
    ASSERT_EQ(entries.size(), 1U);
    EXPECT_EQ(entries[0].name, "three");
    EXPECT_EQ(entries[0].class_name, "PixelMap");
}

TEST(LibraryWorker, Icons_ComeInTheOrderInWhichTheyAreWanted)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    static_cast<void>(results_of(worker));
    worker.want_icons(1, {}, 16, {{7, "Root C"}, {5, "root b"}, {4, "root a"}});

    std::vector<EntryRows::Id> rows;
    for (const IconLoaded& icon : only<IconLoaded>(results_of(worker)))
        rows.push_back(icon.icon != nullptr ? icon.row : icon.row + 100);
    EXPECT_THAT(rows, ElementsAre(7, 105, 4));
}

TEST(LibraryWorker, RenameThenRemove_ReportTheRows)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.rename(1, {}, {4, "root a"}, "root z");
    worker.remove(1, {}, {{4, "root z"}, {5, "root b"}});

    auto results = results_of(worker);
    std::vector<LibraryResult> changes;
    for (LibraryResult& result : results) {
        if (std::holds_alternative<EntryRenamed>(result) ||
            std::holds_alternative<EntriesRemoved>(result))
            changes.push_back(std::move(result));
    }
    ASSERT_EQ(changes.size(), 2U);
    EXPECT_EQ(std::get<EntryRenamed>(changes[0]).name, "root z");
    EXPECT_THAT(std::get<EntriesRemoved>(changes[1]).rows, ElementsAre(4, 5));
}

TEST(LibraryWorker, RefusedChange_ReportsTheReason)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.rename(1, {}, {4, "root a"}, "root b");

    const auto refused = only<ChangeRefused>(results_of(worker));
    ASSERT_EQ(refused.size(), 1U);
    EXPECT_THAT(refused[0].reason, testing::HasSubstr("already"));
}

TEST(LibraryWorker, ResultsWait_IsToldWhenTheQueueWasEmpty)
{
    const SampleLibrary library;
    std::atomic<int> told{0};
    LibraryWorker worker([&told] { ++told; });
    worker.open(library.file());
    worker.list_directories({});
    worker.wait_until_idle();
    EXPECT_EQ(told, 1);

    static_cast<void>(results_of(worker));
    worker.list_directories({});
    worker.wait_until_idle();
    EXPECT_EQ(told, 2);
}

TEST(LibraryWorker, RequestsWithoutALibrary_AnswerWithNothing)
{
    LibraryWorker worker([] {});
    worker.list(1, {});
    worker.want_icons(1, {}, 16, {{0, "x"}});
    worker.want_preview({}, "x", 64);

    const auto results = results_of(worker);
    EXPECT_THAT(only<PreviewLoaded>(results_of(worker)), IsEmpty());
    EXPECT_EQ(results.size(), 3U);
}

TEST(LibraryWorker, EndedInTheMidst_ClosesTheLibrary)
{
    const SampleLibrary library(3000, 0);
    {
        LibraryWorker worker([] {});
        worker.open(library.file());
        worker.list(1, {});
    }
    const ObjectDatabase database(library.file().c_str(), GIO::OpenReadWrite);
    EXPECT_NE(database.server, nullptr);
}

TEST(LibraryWorker, Object_IsTheCallersOrTheReasonIsTold)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.want_object({"deep", "er"}, "one");
    worker.want_object({}, "nothing");

    const auto objects = only<ObjectLoaded>(results_of(worker));
    ASSERT_EQ(objects.size(), 2U);
    EXPECT_EQ(objects[0].name, "one");
    EXPECT_NE(dynamic_cast<const PixelMap*>(objects[0].object.get()), nullptr);
    EXPECT_EQ(objects[1].object, nullptr);
    EXPECT_EQ(objects[1].reason, "The entry \"nothing\" is not there any more.");
}

TEST(LibraryWorker, Teller_HearsOfOpeningAndOfRenaming)
{
    const SampleLibrary library;
    std::vector<std::string> told;  // by the worker's thread alone, until it is idle
    LibraryWorker worker([] {}, [&told](const std::string& text) { told.push_back(text); });
    worker.open(library.file());
    worker.rename(1, {}, {4, "root a"}, "painted");
    worker.open(library.beside("none.odb"));
    static_cast<void>(results_of(worker));

    EXPECT_THAT(told,
                ElementsAre("Opening sample.odb", "sample.odb is open", "root a is now painted",
                            "Opening none.odb", "none.odb could not be opened"));
}

TEST(LibraryWorker, LongWork_TellsItsLastProgressThenItsEnd)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    static_cast<void>(results_of(worker));
    worker.copy({}, {{0, "root a"}, {1, "root b"}}, library.beside("copy.odb"), {});

    const auto results = results_of(worker);
    ASSERT_EQ(results.size(), 3U);
    const auto& progress = std::get<WorkProgress>(results[0]);
    EXPECT_EQ(progress.text, "Copying");
    EXPECT_EQ(progress.done, 1U);
    EXPECT_EQ(progress.total, 2U);
    EXPECT_EQ(std::get<WorkDone>(results[1]).text, "2 entries copied.");
    EXPECT_EQ(std::get<WorkProgress>(results[2]).text, "");
}

TEST(LibraryWorker, Opened_TellsFiltersAndDeletionsThatCanBeTakenBack)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.remove(1, {}, {{4, "root a"}});
    worker.save_filter({"red", {"PixelMap", false, {}}});
    static_cast<void>(results_of(worker));
    worker.open(library.file());

    auto results = results_of(worker);
    const auto kept = only<DeletionsKept>(std::move(results));
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept[0].count, 1U);
    worker.restore();
    const auto restored = only<EntriesRestored>(results_of(worker));
    ASSERT_EQ(restored.size(), 1U);
    EXPECT_EQ(restored[0].name, "root a");
}

TEST(LibraryWorker, Description_ComesBackAsAChangedEntry)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.describe({"Plain"}, "three", "The third");

    const auto changed = only<EntryChanged>(results_of(worker));
    ASSERT_EQ(changed.size(), 1U);
    EXPECT_THAT(changed[0].path, ElementsAre("Plain"));
    EXPECT_EQ(changed[0].name, "three");
    EXPECT_EQ(changed[0].class_name, "PixelMap");
}

TEST(LibraryWorker, CopyIntoTheSameLibrary_ComesBackAsAChangedEntry)
{
    const SampleLibrary library;
    LibraryWorker worker([] {});
    worker.open(library.file());
    worker.copy({}, {{0, "root a"}}, library.file(), {"Plain"});

    const auto changed = only<EntryChanged>(results_of(worker));
    ASSERT_EQ(changed.size(), 1U);
    EXPECT_THAT(changed[0].path, ElementsAre("Plain"));
    EXPECT_EQ(changed[0].name, "root a");
}
