// Libraries that can't be written: on a read-only share, a read-only file, in use by another
// process. Whatever is tried is refused as the headers say and changes no file.

#include "ReadOnlyFileSystem.h"
#include "RefusedChanges.h"
#include "TestObjects.h"
#include "store/ResourceFileServer.h"
#include "store/StoreFiles.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

/// Opening to write fails as told, changes nothing, and nothing changes through a reading client.
void expect_refusals(const TemporaryFolder& folder, ResourceFile::OpenFailure failure,
                     const std::string& reason)
{
    const auto files = files_of(folder.file(""));
    {
        ObjectDatabase library(folder.file("library.odb").c_str(), GIO::OpenReadWrite);
        EXPECT_EQ(library.server, nullptr);
        EXPECT_EQ(library.open_failure(), failure);
        EXPECT_NE(std::string(library.open_error().text).find(reason), std::string::npos)
            << library.open_error().text;
        EXPECT_NE(std::string(library.open_error().text).find("library.odb"), std::string::npos);
        TestNote note("new");
        library.append_object(&note, GString("new"), nullptr);
        library.pack();
        library.empty();
        library.flush();
    }
    EXPECT_EQ(files_of(folder.file("")), files);
    EXPECT_EQ(what_changes(folder.file("")), "");
}

}  // namespace

TEST(ReadOnlyLibrary, EveryChangeCounts_WhereItCanBeWritten)
{
    // Else the tests below would show nothing.
    for (const RefusedChange& change : refused_changes()) {
        SCOPED_TRACE(change.name);
        const TemporaryFolder folder;
        make_library_to_refuse(folder.file(""));
        const auto files = files_of(folder.file(""));
        {
            ObjectDatabase library(folder.file("library.odb").c_str(), GIO::OpenReadWrite);
            ASSERT_NE(library.server, nullptr);
            change.act(library, folder.file(""));
        }
        const std::string name = change.name;
        if (name != "Flush" && name != "Pack") {
            EXPECT_NE(files_of(folder.file("")), files);
        }
    }
}

TEST(ReadOnlyLibrary, OnAReadOnlyShare_NothingChanges)
{
    const TemporaryFolder folder;
    make_library_to_refuse(folder.file(""));
    ReadOnlyFileSystem files(zmr::FileSystemDevice::Real(), folder.file(""));
    const zmr::StoreFilesInPlace in_place(files);

    expect_refusals(folder, ResourceFile::OpenFailure::Device, "access is denied");
    EXPECT_GT(files.denials(), 0);
}

TEST(ReadOnlyLibrary, FileOnlyIsReadOnly_NothingChangesBesideItEither)
{
    const TemporaryFolder folder;
    make_library_to_refuse(folder.file(""));
    ReadOnlyFileSystem files(zmr::FileSystemDevice::Real(), folder.file("library.odb"));
    const zmr::StoreFilesInPlace in_place(files);

    expect_refusals(folder, ResourceFile::OpenFailure::Device, "access is denied");
}

TEST(ReadOnlyLibrary, MissingOnAReadOnlyShare_IsNotMadeAndSaysSo)
{
    const TemporaryFolder folder;
    ReadOnlyFileSystem files(zmr::FileSystemDevice::Real(), folder.file(""));
    const zmr::StoreFilesInPlace in_place(files);

    ObjectDatabase library(folder.file("new.odb").c_str(), GIO::OpenReadWrite);
    TestNote note("x");
    library.append_object(&note, GString("lamp"), nullptr);
    library.flush();

    ASSERT_NE(library.server, nullptr);
    EXPECT_EQ(library.server->error(), static_cast<int>(zmr::FileErrorKind::AccessDenied));
    library.close();
    EXPECT_TRUE(files_of(folder.file("")).empty());
}

TEST(ReadOnlyLibrary, AnotherProcessWritesIt_NothingChangesAndItIsToldWho)
{
    const TemporaryFolder folder;
    make_library_to_refuse(folder.file(""));
    ChildStart start;
    start.program = ZMR_ODB_CHILD;
    start.words = {"hold", folder.file("library.odb")};
    std::string reason;
    const auto child = ChildProcess::Start(start, reason);
    ASSERT_NE(child, nullptr) << reason;
    std::string line;
    ASSERT_TRUE(child->read_line(line));
    ASSERT_EQ(line, "held");

    expect_refusals(folder, ResourceFile::OpenFailure::InUse, "in use by ");

    ASSERT_TRUE(child->write_line("end"));
    EXPECT_EQ(child->wait().code, 0);
    ObjectDatabase library(folder.file("library.odb").c_str(), GIO::OpenReadWrite);
    EXPECT_TRUE(library.is_writable());
    EXPECT_EQ(OdbTest::note_of(library, "lamp"), "lamp");
}
