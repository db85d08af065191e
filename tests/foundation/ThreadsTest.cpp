#include "foundation/FileSystem.h"
#include "foundation/GClassDictionary.h"
#include "foundation/GMetaClass.h"
#include "foundation/GObject.h"
#include "foundation/SuspendedDestruction.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace {

void run_threads(const std::function<void()>& body)
{
    constexpr int kThreads = 4;
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number)
        threads.emplace_back(body);
    for (std::thread& thread : threads)
        thread.join();
}

std::atomic<int> g_counted = 0;

class CountedObject : public GObject {
public:
    CountedObject() { ++g_counted; }
    ~CountedObject() override { --g_counted; }
};

}  // namespace

TEST(Threads, Classes_AreFoundAndBuiltInAllThreads)
{
    const GMetaClass* const base = GMetaClass::FindByName("GCollection");
    ASSERT_NE(base, nullptr);
    std::atomic<int> wrong = 0;
    run_threads([&] {
        for (int i = 0; i < 200; ++i) {
            const GMetaClass* const derived = GMetaClass::FindByName("GStringCollection");
            GClassDictionary below;
            base->getDerivedClasses(below, true);
            const std::unique_ptr<GRTTIObject> built(derived == nullptr ? nullptr
                                                                        : derived->buildObject());
            const bool good = built != nullptr && derived->isKindOf(base) == base;
            wrong += good ? 0 : 1;
        }
    });

    EXPECT_EQ(wrong, 0);
}

TEST(Threads, SuspendedDestruction_TakesObjectsFromAllThreads)
{
    SuspendedDestruction::Enable(1);
    run_threads([] {
        for (int i = 0; i < 100; ++i)
            (new CountedObject)->condemn();
    });
    EXPECT_EQ(g_counted, 400);

    SuspendedDestruction::DestroyAll();
    SuspendedDestruction::Enable(0);
    EXPECT_EQ(g_counted, 0);
}

TEST(Threads, UniqueNames_DifferBetweenThreads)
{
    const TemporaryFolder folder;
    std::atomic<int> wrong = 0;
    run_threads([&] {
        for (int i = 0; i < 20; ++i) {
            GFile file(folder.file("name????????.tmp").c_str());
            const bool made =
                FileSystem::UniqueName(file, '?') && FileSystem::CreateDirectoryA(file);
            wrong += made ? 0 : 1;
        }
    });

    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 80);
}
