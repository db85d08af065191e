#include "LibraryModel.h"
#include "StoredText.h"
#include "store/LibraryFile.h"
#include "store/ProcessIdentity.h"
#include "store/ResourceFile.h"
#include "store/ResourceFileServer.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace zmr {
namespace {

constexpr int kThreads = 4;

/// Runs `body` in threads of the numbers from 0 and waits for all.
void run_threads(const std::function<void(int)>& body)
{
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number)
        threads.emplace_back(body, number);
    for (std::thread& thread : threads)
        thread.join();
}

GResourceFullName name_of(const std::string& name)
{
    return {GResourcePath(), GString(name.c_str()), GString("t")};
}

std::string text_of(ResourceFile& file, const GResourceFullName& name)
{
    const std::unique_ptr<GStreamable> object(file.get(name, false));
    const auto* const text = class_cast<StoredText>(object.get());
    return text == nullptr ? "" : std::string(text->text.view());
}

TEST(LibraryThreads, OneLibrary_TakesTheChangesOfAllThreads)
{
    const TemporaryFolder folder;
    LibraryFile file(FileSystemDevice::Real(), LibraryTuning{8000, 100'000, 100'000});
    ASSERT_EQ(file.open(folder.file("one.lib"), LibraryAccess::Write, "w").status,
              LibraryOpenStatus::Ok);
    std::atomic<int> wrong = 0;
    constexpr unsigned kRounds = 120;
    run_threads([&](int thread) {
        const std::string type = std::to_string(thread);
        for (unsigned i = 0; i < kRounds; ++i) {
            const std::string bytes = noise_bytes(100 + i * 13, i);
            const std::string name = std::to_string(i % 10);
            std::string read;
            const bool good = file.put({}, name, type, ContentKind::Raw, "", as_span(bytes)) &&
                              file.get({}, name, type, read) && read == bytes;
            wrong += good ? 0 : 1;
            if (i % 30 == 29)
                wrong += file.commit() && file.verify({}) ? 0 : 1;
            if (i % 60 == 59)
                file.pack();  // refused while another thread is in a scope; harmless
            static_cast<void>(file.statistics());
            static_cast<void>(file.list({}, type).size());
        }
    });

    EXPECT_EQ(wrong, 0);
    for (int thread = 0; thread < kThreads; ++thread)
        EXPECT_EQ(file.list({}, std::to_string(thread)).size(), 10u);
    EXPECT_TRUE(file.close());
}

TEST(LibraryThreads, ClientsOfOneFile_ComeAndGoInAllThreads)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("clients.zrf");
    {
        ResourceFile file(name.c_str(), GIO::OpenReadWrite);
        ASSERT_NE(file.server, nullptr);
        StoredText text("text");
        file.put(&text, name_of("n"), false);
    }
    std::atomic<int> wrong = 0;
    run_threads([&](int thread) {
        for (int i = 0; i < 60; ++i) {
            ResourceFile client(name.c_str(), thread == 0 ? GIO::OpenReadWrite : GIO::OpenRead);
            if (client.server == nullptr || text_of(client, name_of("n")) != "text")
                ++wrong;
            if (thread != 0 || client.server == nullptr)
                continue;
            StoredText text(std::to_string(i));
            client.put(&text, name_of("written"), false);
            wrong += text_of(client, name_of("written")) == std::to_string(i) ? 0 : 1;
        }
    });

    EXPECT_EQ(wrong, 0);
    ResourceFile file(name.c_str(), GIO::OpenRead);
    EXPECT_EQ(text_of(file, name_of("written")), "59");
}

TEST(LibraryThreads, FilesOfTheirOwn_AreServedBesideEachOther)
{
    const TemporaryFolder folder;
    std::atomic<int> wrong = 0;
    run_threads([&](int thread) {
        const std::string name = folder.file(std::to_string(thread) + ".zrf");
        for (int i = 0; i < 20; ++i) {
            ResourceFile file(name.c_str(), GIO::OpenReadWrite);
            StoredText text(std::to_string(i));
            file.put(&text, name_of("n"), false);
            wrong += text_of(file, name_of("n")) == std::to_string(i) ? 0 : 1;
        }
    });

    EXPECT_EQ(wrong, 0);
}

TEST(LibraryThreads, ProcessIdentity_IsTheSameProcessInAllThreads)
{
    const std::string here = process_identity();
    const std::string process = here.substr(0, here.find(", since"));
    std::atomic<int> other = 0;
    run_threads([&](int) {
        for (int i = 0; i < 100; ++i)
            other += process_identity().starts_with(process) ? 0 : 1;
    });

    EXPECT_EQ(other, 0);
}

}  // namespace
}  // namespace zmr
