#include "store/ObjectFile.h"

#include "FaultyFileSystem.h"
#include "StoredText.h"
#include "foundation/GFile.h"
#include "store/GObjectPlace.h"
#include "store/ResourceFile.h"
#include "store/ResourceFileServer.h"
#include "store/StoreFiles.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace zmr {
namespace {

std::string text_in(const GFile& file)
{
    const std::unique_ptr<GStreamable> object(read_object_file(file));
    const auto* const text = class_cast<StoredText>(object.get());
    return text == nullptr ? "(none)" : text->text.text;
}

/// Runs `replace` with a stop at each operation; what is left must be the former file or the new.
void walk(const GFile& file, const FaultyFileSystem& start, const std::string& expected,
          const std::function<bool()>& replace)
{
    for (std::uint64_t stop = 1; stop < 100; ++stop)
        for (std::uint32_t pattern = 0; pattern < 40; ++pattern) {
            SCOPED_TRACE(testing::Message() << "stop " << stop << " pattern " << pattern);
            FaultyFileSystem files = start.copy();
            const StoreFilesInPlace in_place(files);
            files.stop_at(stop, pattern + 1);
            const bool done = replace();
            files.lose_power(pattern + 100);

            const std::string left = text_in(file);
            ASSERT_TRUE(left == expected || (!done && left == "former")) << left;
            if (!done)
                continue;
            if (pattern == 39)
                return;
        }
    FAIL() << "it is never done";
}

class ObjectFile : public testing::Test {
protected:
    ObjectFile()
    {
        const StoreFilesInPlace in_place(start_);
        StoredText former("former");
        EXPECT_TRUE(write_object_file(file_, former));
        StoredText other(std::string(100'000, 'o'));
        EXPECT_TRUE(write_object_file(other_, other));
    }
    TemporaryFolder folder_;
    GFile file_ = folder_.file("a.lob").c_str();
    GFile other_ = folder_.file("b.lob").c_str();
    FaultyFileSystem start_;
};

TEST_F(ObjectFile, Write_StoppedAnywhere_LeavesTheFormerOrTheNewFileWhole)
{
    const std::string large(150'000, 'n');
    StoredText object(large);
    walk(file_, start_, large, [&] { return write_object_file(file_, object); });
}

TEST_F(ObjectFile, Copy_StoppedAnywhere_LeavesTheFormerOrTheNewFileWhole)
{
    walk(file_, start_, std::string(100'000, 'o'), [&] { return copy_object_file(other_, file_); });
}

TEST_F(ObjectFile, Write_FailedOnceAnywhere_TellsSoAndLeavesNoOtherFile)
{
    StoredText object("new");
    for (const FileErrorKind kind : {FileErrorKind::DiskFull, FileErrorKind::Other})
        for (std::uint64_t at = 1; at < 100; ++at) {
            SCOPED_TRACE(at);
            FaultyFileSystem files = start_.copy();
            const StoreFilesInPlace in_place(files);
            files.fail_at(at, kind, false);
            const std::uint64_t before = files.operations();
            const bool done = write_object_file(file_, object);

            EXPECT_EQ(done, text_in(file_) == "new" && files.operations() - before < at);
            if (done) {
                EXPECT_GE(at, 4U);
                break;
            }
            // The directory's sync comes last: then the new file is there, but perhaps not for
            // good.
            EXPECT_TRUE(text_in(file_) == "former" || files.operations() - before == at);
        }
}

TEST_F(ObjectFile, RemoveAfterCommit_CommitFails_TheObjectStays)
{
    FaultyFileSystem files = start_.copy();
    const StoreFilesInPlace in_place(files);
    ResourceFile library(folder_.file("l.odb").c_str(), GIO::OpenReadWrite);
    StoredText entry("x");
    const GResourceFullName name(GResourcePath(), GString("n"), GString("t"));
    library.put(&entry, name, false);
    library.flush();
    files.fail_at(1, FileErrorKind::DiskFull, true);

    library.remove(name);
    library.remove_after_commit(GObjectPlace(file_.text, false, nullptr));

    EXPECT_NE(library.server->error(), 0);
    files.heal();
    library.close();
    EXPECT_EQ(text_in(file_), "former");
}

TEST_F(ObjectFile, RemoveAfterCommit_InNestedScopes_AtTheOutermostEnd)
{
    FaultyFileSystem files = start_.copy();
    const StoreFilesInPlace in_place(files);
    ResourceFile library(folder_.file("l.odb").c_str(), GIO::OpenReadWrite);
    const GObjectPlace doomed(file_.text, false, nullptr);
    const GObjectPlace kept(other_.text, false, nullptr);
    {
        const ResourceFile::CommitScope outer(library);
        {
            const ResourceFile::CommitScope inner(library);
            library.remove_after_commit(doomed);
            library.remove_after_commit(kept);
        }
        EXPECT_EQ(text_in(file_), "former");
        library.keep_place(kept);
    }

    EXPECT_EQ(text_in(file_), "(none)");
    EXPECT_NE(text_in(other_), "(none)");
}

TEST_F(ObjectFile, RemoveAfterCommit_ReadingClient_DoesNothing)
{
    FaultyFileSystem files = start_.copy();
    const StoreFilesInPlace in_place(files);
    {
        ResourceFile writer(folder_.file("l.odb").c_str(), GIO::OpenReadWrite);
        StoredText entry("x");
        writer.put(&entry, GString("n"), GString("t"), false);
    }
    ResourceFile reader(folder_.file("l.odb").c_str(), GIO::OpenRead);

    reader.remove_after_commit(GObjectPlace(file_.text, false, nullptr));
    reader.close();

    EXPECT_EQ(text_in(file_), "former");
}

}  // namespace
}  // namespace zmr
