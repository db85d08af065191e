#include "StoredText.h"
#include "foundation/SuspendedDestruction.h"
#include "foundation/fpstream.h"
#include "foundation/mpstream.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFile.h"
#include "store/ResourceFileServer.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

namespace {

GResourcePath path_of(std::initializer_list<const char*> levels)
{
    GResourcePath path;
    for (const char* level : levels)
        path += GString(level);
    return path;
}

GResourceFullName name_of(const char* name, const char* type = "t")
{
    return {GResourcePath(), GString(name), GString(type)};
}

GResourceFullName directory(std::initializer_list<const char*> levels)
{
    return {path_of(levels), GString(), GString()};
}

class ResourceFileTest : public testing::Test {
protected:
    ResourceFileTest() : file_(name("library.zrf").c_str(), GIO::OpenReadWrite) {}

    [[nodiscard]] std::string name(const char* file) const { return folder_.file(file); }
    void put(const GResourceFullName& resource, const std::string& text)
    {
        StoredText object(text);
        file_.put(&object, resource, false);
    }
    [[nodiscard]] static std::string text_of(ResourceFile& file, const GResourceFullName& resource)
    {
        const std::unique_ptr<GStreamable> object(file.get(resource, false));
        const auto* const text = zmr::class_cast<StoredText>(object.get());
        return text == nullptr ? "(none)" : text->text.text;
    }
    [[nodiscard]] std::string text_of(const GResourceFullName& resource)
    {
        return text_of(file_, resource);
    }
    /// The raw content of a resource as extract_to gives it.
    [[nodiscard]] static std::string extracted(const ResourceFile& file,
                                               const GResourceFullName& resource)
    {
        ompstream out;
        if (!file.extract_to(out, resource, false))
            return "(none)";
        return {static_cast<const char*>(out.data()), static_cast<std::size_t>(out.tellp())};
    }
    void put_raw(const GResourceFullName& resource, std::string bytes)
    {
        impstream in(bytes.data(), static_cast<long>(bytes.size()));
        file_.copy_from(resource, in, -1, 0);
    }

    static constexpr int kPackedResources = 200;
    static constexpr std::size_t kPackedBytes = 60'000;
    /// Every second of these is free space.
    void fill_for_packing()
    {
        for (int i = 0; i < kPackedResources; ++i)
            put_raw(name_of(std::to_string(i).c_str()), std::string(kPackedBytes, 'a'));
        for (int i = 0; i < kPackedResources; i += 2)
            file_.remove(name_of(std::to_string(i).c_str()));
        file_.flush();
    }

    TemporaryFolder folder_;
    ResourceFile file_;
};

struct Renamed {
    int count = 0;
    ResourceFileServer* server = nullptr;
    GString old_path;
    GString new_path;
    bool exists_already = false;
    ResourceFile* file = nullptr;

    static void hear(GCallBackReason, void* info, void* user)
    {
        const auto& base = *static_cast<const ResourceFile::Reason_BaseInfo*>(info);
        const auto& renamed = static_cast<const ResourceFile::DirectoryRenamedInfo&>(base);
        auto& heard = *static_cast<Renamed*>(user);
        ++heard.count;
        heard.server = renamed.server;
        heard.old_path = renamed.old_path->get_readable_form();
        heard.new_path = renamed.new_path->get_readable_form();
        heard.exists_already = heard.file->exist({*renamed.new_path, GString("n"), GString("t")});
    }
};

}  // namespace

TEST_F(ResourceFileTest, PutAndGet_AfterReopening_GivesTheObject)
{
    put(name_of("a"), "first");
    put({path_of({"d", "e"}), GString("b"), GString("t")}, std::string(100'000, 'x'));
    file_.close();

    ResourceFile again(name("library.zrf").c_str(), GIO::OpenRead);

    ASSERT_NE(again.server, nullptr) << again.open_error().text;
    EXPECT_EQ(text_of(again, name_of("a")), "first");
    EXPECT_EQ(text_of(again, {path_of({"d", "e"}), GString("b"), GString("t")}),
              std::string(100'000, 'x'));
    EXPECT_EQ(again.server->error(), 0);
}

TEST_F(ResourceFileTest, Get_Missing_IsNull)
{
    put(name_of("a"), "x");

    EXPECT_EQ(file_.get(name_of("b"), true), nullptr);
    EXPECT_EQ(file_.get(name_of("a", "other type"), true), nullptr);
    EXPECT_FALSE(file_.exist(name_of("b")));
    EXPECT_EQ(file_.last_damage(), nullptr);
}

TEST_F(ResourceFileTest, Get_KeepLoaded_AllClientsGetTheSameInstance)
{
    put(name_of("a"), "x");
    ResourceFile other(name("library.zrf").c_str(), GIO::OpenRead);
    ASSERT_EQ(other.server, file_.server);

    GStreamable* const first = file_.get(name_of("a"), true);

    ASSERT_NE(first, nullptr);
    EXPECT_EQ(other.get(name_of("a"), true), first);
    EXPECT_EQ(file_.get(GString("a"), GString("t"), true), first);
    const std::unique_ptr<GStreamable> own(file_.get(name_of("a"), false));
    EXPECT_NE(own.get(), first);
}

TEST_F(ResourceFileTest, Get_ShortForm_UsesTheCurrentPath)
{
    put({path_of({"d"}), GString("a"), GString("t")}, "deep");
    file_.current_path = path_of({"d"});

    EXPECT_NE(file_.get(GString("a"), GString("t"), true), nullptr);
}

TEST_F(ResourceFileTest, Put_KeepLoaded_ServerTakesTheInstanceOver)
{
    auto* const object = new StoredText("x");

    file_.put(object, name_of("a"), true);

    EXPECT_EQ(file_.get(name_of("a"), true), object);
    const int alive = StoredText::alive;
    file_.close();
    EXPECT_EQ(StoredText::alive, alive - 1);
}

TEST_F(ResourceFileTest, Put_TheLoadedInstanceAgain_KeepsIt)
{
    auto* const object = new StoredText("x");
    file_.put(object, name_of("a"), true);
    object->text = "changed";

    file_.put(object, name_of("a"), true);
    file_.put(object, name_of("a"), false);

    EXPECT_EQ(file_.get(name_of("a"), true), object);
    EXPECT_EQ(text_of(name_of("a")), "changed");
}

TEST_F(ResourceFileTest, Put_OverAnotherLoadedInstance_DestroysThatOne)
{
    file_.put(new StoredText("old"), name_of("a"), true);
    const int alive = StoredText::alive;

    file_.put(new StoredText("new"), name_of("a"), true);

    EXPECT_EQ(StoredText::alive, alive);
    put(name_of("a"), "newest");
    EXPECT_EQ(StoredText::alive, alive - 1);
    EXPECT_EQ(text_of(name_of("a")), "newest");
}

TEST_F(ResourceFileTest, Put_OverALoadedInstanceWhileDestructionIsDeferred_FreesItLater)
{
    file_.put(new StoredText("old"), name_of("a"), true);
    const int alive = StoredText::alive;
    SuspendedDestruction::Enable(1);

    put(name_of("a"), "new");
    const int while_deferred = StoredText::alive;
    SuspendedDestruction::Enable(0);

    EXPECT_EQ(while_deferred, alive);
    EXPECT_EQ(StoredText::alive, alive - 1);
}

TEST_F(ResourceFileTest, Put_ByAClientThatCantWrite_KeepsTheInstanceInMemoryOnly)
{
    put(name_of("other"), "x");
    file_.close();
    ResourceFile reader(name("library.zrf").c_str(), GIO::OpenRead);
    auto* const object = new StoredText("x");

    reader.put(object, name_of("a"), true);

    EXPECT_FALSE(reader.exist(name_of("a")));
    EXPECT_EQ(reader.get(name_of("a"), true), object);
    EXPECT_EQ(reader.loaded_instances(GResourcePath(), GString("t"), true),
              std::vector<GStreamable*>{object});
}

TEST_F(ResourceFileTest, Remove_DestroysTheLoadedInstance)
{
    file_.put(new StoredText("x"), name_of("a"), true);
    const int alive = StoredText::alive;

    file_.remove(name_of("a"));
    file_.remove(name_of("never there"));

    EXPECT_FALSE(file_.exist(name_of("a")));
    EXPECT_EQ(file_.get(name_of("a"), true), nullptr);
    EXPECT_EQ(StoredText::alive, alive - 1);
}

TEST_F(ResourceFileTest, Rename_MovesContentAndLoadedInstance)
{
    auto* const object = new StoredText("x");
    file_.put(object, name_of("a"), true);

    file_.rename(name_of("a"), {path_of({"d"}), GString("b"), GString("u")});

    EXPECT_FALSE(file_.exist(name_of("a")));
    EXPECT_EQ(file_.get(name_of("a"), true), nullptr);
    EXPECT_EQ(file_.get({path_of({"d"}), GString("b"), GString("u")}, true), object);
}

TEST_F(ResourceFileTest, Rename_Missing_ChangesNothing)
{
    file_.put(new StoredText("b"), name_of("b"), true);
    GStreamable* const loaded = file_.get(name_of("b"), true);

    file_.rename(name_of("a"), name_of("b"));

    EXPECT_EQ(file_.get(name_of("b"), true), loaded);
    EXPECT_EQ(text_of(name_of("b")), "b");
}

TEST_F(ResourceFileTest, Rename_OntoAnExistingName_ReplacesItAndItsInstance)
{
    put(name_of("a"), "a");
    file_.put(new StoredText("b"), name_of("b"), true);
    const int alive = StoredText::alive;

    file_.rename(name_of("a"), name_of("b"));

    EXPECT_EQ(StoredText::alive, alive - 1);
    EXPECT_EQ(text_of(name_of("b")), "a");
}

TEST_F(ResourceFileTest, RenameDirectory_MovesAllBelowAndTellsAfterwards)
{
    auto* const object = new StoredText("x");
    file_.put(object, {path_of({"a", "b"}), GString("n"), GString("t")}, true);
    put({path_of({"a"}), GString("n"), GString("t")}, "y");
    Renamed heard;
    heard.file = &file_;
    ResourceFile::RegisterCallback(ResourceFile::Reason_DirectoryRenamed, &Renamed::hear, &heard);

    file_.rename(directory({"a"}), directory({"z"}));

    ResourceFile::UnRegisterCallback(GAnyReason, &Renamed::hear, &heard);
    EXPECT_EQ(heard.count, 1);
    EXPECT_EQ(heard.server, file_.server);
    EXPECT_EQ(heard.old_path, "a/");
    EXPECT_EQ(heard.new_path, "z/");
    EXPECT_TRUE(heard.exists_already);
    EXPECT_EQ(file_.get({path_of({"z", "b"}), GString("n"), GString("t")}, true), object);
    EXPECT_FALSE(file_.exist({path_of({"a"}), GString("n"), GString("t")}));
}

TEST_F(ResourceFileTest, RenameDirectory_OntoAnExistingOne_IsRefusedAndTellsNobody)
{
    put({path_of({"a"}), GString("n"), GString("t")}, "a");
    put({path_of({"b"}), GString("n"), GString("t")}, "b");
    Renamed heard;
    heard.file = &file_;
    ResourceFile::RegisterCallback(ResourceFile::Reason_DirectoryRenamed, &Renamed::hear, &heard);

    file_.rename(directory({"a"}), directory({"b"}));

    ResourceFile::UnRegisterCallback(ResourceFile::Reason_DirectoryRenamed, &Renamed::hear, &heard);
    EXPECT_EQ(heard.count, 0);
    EXPECT_EQ(text_of({path_of({"a"}), GString("n"), GString("t")}), "a");
    EXPECT_EQ(text_of({path_of({"b"}), GString("n"), GString("t")}), "b");
}

TEST_F(ResourceFileTest, Empty_RemovesAllAndDestroysTheInstances)
{
    file_.put(new StoredText("x"), name_of("a"), true);
    put({path_of({"d"}), GString("n"), GString("t")}, "y");
    const int alive = StoredText::alive;

    file_.empty();

    EXPECT_EQ(StoredText::alive, alive - 1);
    EXPECT_EQ(GResourceTypeIterator(file_).index, -1);
    EXPECT_EQ(GResourceSubDirectoryIterator(file_, GResourcePath()).index, -1);
}

TEST_F(ResourceFileTest, CopyFrom_AnotherFile_CopiesTheBytes)
{
    put(name_of("a"), std::string(50'000, 'q'));
    ResourceFile other(name("other.zrf").c_str(), GIO::OpenReadWrite);

    other.copy_from(name_of("b"), file_, name_of("a"));
    other.copy_from(name_of("c"), file_, name_of("missing"));

    EXPECT_EQ(text_of(other, name_of("b")), std::string(50'000, 'q'));
    EXPECT_FALSE(other.exist(name_of("c")));
}

TEST_F(ResourceFileTest, CopyFrom_AStream_IsRawContentThatGetNeverParses)
{
    std::string bytes(200'001, 'm');
    bytes[77] = '\0';

    put_raw(name_of("movie"), bytes);

    EXPECT_TRUE(file_.exist(name_of("movie")));
    EXPECT_EQ(extracted(file_, name_of("movie")), bytes);
    EXPECT_EQ(file_.get(name_of("movie"), false), nullptr);
    EXPECT_EQ(file_.read_class_name(name_of("movie")), nullptr);
    EXPECT_EQ(file_.last_damage(), nullptr);
}

TEST_F(ResourceFileTest, CopyFrom_AStreamWithASize_TakesThatMuch)
{
    std::string bytes = "0123456789";
    impstream in(bytes.data(), 10);

    file_.copy_from(name_of("part"), in, 4, 0);

    EXPECT_EQ(extracted(file_, name_of("part")), "0123");
    EXPECT_EQ(in.readByte(), '4');
}

TEST_F(ResourceFileTest, ReadClassName_GivesTheClassWithoutReadingTheObject)
{
    put(name_of("a"), "x");
    const int alive = StoredText::alive;

    char* const class_name = file_.read_class_name(name_of("a"));

    EXPECT_STREQ(class_name, "StoredText");
    gfreestr(class_name);
    EXPECT_EQ(file_.read_class_name(name_of("missing")), nullptr);
    EXPECT_EQ(StoredText::alive, alive);
}

TEST_F(ResourceFileTest, Get_ObjectOfAClassNobodyRegistered_IsNullAndKeepsItsName)
{
    ompstream out;
    out.writeByte(2);
    out.writeString("ClassOfAnotherProgram");
    zmr::LibraryFile library;
    ASSERT_EQ(library.open(name("foreign.zrf"), zmr::LibraryAccess::Write).status,
              zmr::LibraryOpenStatus::Ok);
    ASSERT_TRUE(library.put(zmr::LibraryPath(), "a", "t", zmr::ContentKind::Streamable,
                            "ClassOfAnotherProgram", std::as_bytes(out.bytes())));
    ASSERT_TRUE(library.close());
    ResourceFile foreign(name("foreign.zrf").c_str(), GIO::OpenRead);

    EXPECT_EQ(foreign.get(name_of("a"), true), nullptr);

    char* const class_name = foreign.read_class_name(name_of("a"));
    EXPECT_STREQ(class_name, "ClassOfAnotherProgram");
    gfreestr(class_name);
    EXPECT_EQ(foreign.last_damage(), nullptr);
}

TEST_F(ResourceFileTest, Get_BytesThatAreNoStream_IsNullAndNamed)
{
    const std::string nonsense(50, '\x7F');
    zmr::LibraryFile library;
    ASSERT_EQ(library.open(name("odd.zrf"), zmr::LibraryAccess::Write).status,
              zmr::LibraryOpenStatus::Ok);
    ASSERT_TRUE(library.put(zmr::LibraryPath(), "a", "t", zmr::ContentKind::Streamable, "X",
                            std::as_bytes(std::span(nonsense))));
    ASSERT_TRUE(library.close());
    ResourceFile odd(name("odd.zrf").c_str(), GIO::OpenRead);

    EXPECT_EQ(odd.get(name_of("a"), true), nullptr);

    ASSERT_NE(odd.last_damage(), nullptr);
    EXPECT_EQ(odd.last_damage()->name.name, "a");
}

TEST_F(ResourceFileTest, Block_OfRawContent_CanBeSoughtAtAnyOffset)
{
    std::string bytes;
    for (int i = 0; i < 100'000; ++i)
        bytes += static_cast<char>(i * 7);
    put_raw(name_of("movie"), bytes);

    const ResourceFileBlock block = file_.get_resource_block(name_of("movie"));
    ASSERT_NE(block.presence, 0u);
    EXPECT_EQ(block.sequential, 0u);
    ASSERT_EQ(block.length, bytes.size());
    const GSingleLock locked(file_.server->lock);
    iopstream& stream = file_.server->get_stream();
    for (const long offset : {0L, 1L, 65'535L, 65'536L, 99'990L}) {
        char piece[10] = {};
        stream.clear();
        stream.seekg(static_cast<long>(block.offset) + offset, GIO::SeekBegin);
        ASSERT_EQ(stream.readBytes(piece, 10), 10) << offset;
        EXPECT_EQ(std::string(piece, 10), bytes.substr(static_cast<std::size_t>(offset), 10));
    }
}

TEST_F(ResourceFileTest, Block_OfCompressedContent_IsReachedBySkipping)
{
    const std::string text(40'000, 'z');
    put(name_of("a"), text);
    const std::string whole = extracted(file_, name_of("a"));

    const ResourceFileBlock block = file_.get_resource_block(name_of("a"));

    ASSERT_NE(block.presence, 0u);
    ASSERT_NE(block.sequential, 0u);
    ASSERT_EQ(block.length, whole.size());
    const GSingleLock locked(file_.server->lock);
    iopstream& stream = file_.server->get_stream();
    stream.clear();
    stream.seekg(static_cast<long>(block.offset), GIO::SeekBegin);
    stream.skipBytes(20'000);
    std::string rest(whole.size() - 20'000, '\0');
    EXPECT_EQ(stream.readBytes(rest.data(), static_cast<long>(rest.size())),
              static_cast<long>(rest.size()));
    EXPECT_EQ(rest, whole.substr(20'000));
}

TEST_F(ResourceFileTest, Block_OfASmallResource_GivesItsBytes)
{
    put(name_of("a"), "small");
    const std::string whole = extracted(file_, name_of("a"));

    const ResourceFileBlock block = file_.get_resource_block(name_of("a"));

    ASSERT_NE(block.presence, 0u);
    ASSERT_EQ(block.length, whole.size());
    iopstream& stream = file_.server->get_stream();
    stream.clear();
    stream.seekg(static_cast<long>(block.offset), GIO::SeekBegin);
    std::string read(whole.size(), '\0');
    stream.readBytes(read.data(), static_cast<long>(read.size()));
    EXPECT_EQ(read, whole);
}

TEST_F(ResourceFileTest, Block_HandedOut_StaysReadableWhenTheResourceIsReplacedAndPacked)
{
    const std::string bytes(150'000, 'm');
    put_raw(name_of("filler"), std::string(300'000, 'f'));
    put_raw(name_of("movie"), bytes);
    file_.flush();
    const ResourceFileBlock block = file_.get_resource_block(name_of("movie"));

    file_.remove(name_of("filler"));
    put_raw(name_of("movie"), std::string(200'000, 'n'));
    file_.flush();
    file_.pack();
    put_raw(name_of("more"), std::string(400'000, 'o'));
    file_.flush();

    iopstream& stream = file_.server->get_stream();
    stream.clear();
    stream.seekg(static_cast<long>(block.offset), GIO::SeekBegin);
    std::string read(bytes.size(), '\0');
    EXPECT_EQ(stream.readBytes(read.data(), static_cast<long>(read.size())),
              static_cast<long>(read.size()));
    EXPECT_EQ(read, bytes);
}

TEST_F(ResourceFileTest, Block_OfAMissingResource_HasNoPresence)
{
    EXPECT_EQ(file_.get_resource_block(name_of("missing")).presence, 0u);
}

TEST_F(ResourceFileTest, Stream_OfTheServer_RefusesToBeWritten)
{
    put(name_of("a"), "x");

    EXPECT_THROW(file_.server->get_stream().writeDWord(1), GStreamException);
}

TEST_F(ResourceFileTest, TwoClients_WhateverNameTheyUse_ShareOneServer)
{
    put(name_of("a"), "x");
    file_.flush();
    const std::string indirect = folder_.file("sub/../library.zrf");
    std::filesystem::create_directory(folder_.path() / "sub");

    ResourceFile other(indirect.c_str(), GIO::OpenRead);

    EXPECT_EQ(other.server, file_.server);
    EXPECT_EQ(file_.server->clients.count, 2);
    other.close();
    EXPECT_EQ(file_.server->clients.count, 1);
}

TEST_F(ResourceFileTest, TwoClients_OfAFileThatIsNotMadeYet_ShareOneServer)
{
    ResourceFile other(name("library.zrf").c_str(), GIO::OpenReadWrite);

    EXPECT_EQ(other.server, file_.server);
}

TEST_F(ResourceFileTest, Copy_IsAFurtherClient)
{
    put(name_of("a"), "x");

    ResourceFile copy(file_);
    file_.close();

    EXPECT_EQ(text_of(copy, name_of("a")), "x");
}

TEST_F(ResourceFileTest, FirstWritingClient_UpgradesAReadersServer)
{
    put(name_of("a"), "x");
    file_.close();
    ResourceFile reader(name("library.zrf").c_str(), GIO::OpenRead);

    ResourceFile writer(name("library.zrf").c_str(), GIO::OpenReadWrite);
    StoredText object("y");
    writer.put(&object, name_of("b"), false);

    ASSERT_EQ(reader.server, writer.server);
    EXPECT_EQ(text_of(reader, name_of("b")), "y");
    reader.put(&object, name_of("c"), false);
    EXPECT_FALSE(reader.exist(name_of("c"))) << "a client without bit 2 writes nothing";
}

TEST_F(ResourceFileTest, Open_MissingFileForReading_HasNoServerAndSaysWhy)
{
    ResourceFile reader(name("none.zrf").c_str(), GIO::OpenRead);

    EXPECT_EQ(reader.server, nullptr);
    EXPECT_EQ(reader.open_failure(), ResourceFile::OpenFailure::Missing);
    EXPECT_NE(std::string(reader.open_error().text).find("none.zrf"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(name("none.zrf")));
}

TEST_F(ResourceFileTest, Open_AFileThatIsNoLibrary_IsRefusedAndUntouched)
{
    const std::string letter = "Dear Ann, this is a letter and no library at all.";
    std::ofstream(name("letter.txt")) << letter;

    ResourceFile writer(name("letter.txt").c_str(), GIO::OpenReadWrite);
    ResourceFile reader(name("letter.txt").c_str(), GIO::OpenRead);

    EXPECT_EQ(writer.server, nullptr);
    EXPECT_EQ(writer.open_failure(), ResourceFile::OpenFailure::NoLibrary);
    EXPECT_EQ(reader.server, nullptr);
    EXPECT_FALSE(ResourceFile::IsValidToRead(name("letter.txt").c_str()));
    std::ifstream in(name("letter.txt"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), letter);
}

TEST_F(ResourceFileTest, Open_ADirectory_IsRefused)
{
    ResourceFile writer(folder_.path().string().c_str(), GIO::OpenReadWrite);

    EXPECT_EQ(writer.server, nullptr);
    EXPECT_FALSE(writer.open_error().is_empty());
}

TEST_F(ResourceFileTest, Open_WhileAnotherWriterHoldsIt_SaysWho)
{
    put(name_of("a"), "x");
    file_.close();
    zmr::LibraryFile owner;  // to the object layer, as a writer of another process
    ASSERT_EQ(owner.open(name("library.zrf"), zmr::LibraryAccess::Write, "ann@studio").status,
              zmr::LibraryOpenStatus::Ok);

    ResourceFile writer(name("library.zrf").c_str(), GIO::OpenReadWrite);
    ResourceFile reader(name("library.zrf").c_str(), GIO::OpenRead);

    EXPECT_EQ(writer.server, nullptr);
    EXPECT_EQ(writer.open_failure(), ResourceFile::OpenFailure::InUse);
    EXPECT_NE(std::string(writer.open_error().text).find("ann@studio"), std::string::npos)
        << writer.open_error().text;
    EXPECT_EQ(text_of(reader, name_of("a")), "x");
}

TEST_F(ResourceFileTest, Open_OnAnOpenClient_ClosesTheFormerFile)
{
    put(name_of("a"), "x");

    file_.open(name("second.zrf").c_str(), GIO::OpenReadWrite);

    EXPECT_FALSE(file_.exist(name_of("a")));
    ResourceFile first(name("library.zrf").c_str(), GIO::OpenRead);
    EXPECT_EQ(text_of(first, name_of("a")), "x");
}

TEST_F(ResourceFileTest, SetType_AloneMakesNoFile_FlushDoes)
{
    file_.set_type(GString("kind"));
    EXPECT_EQ(file_.get_type(), "kind");
    file_.close();
    EXPECT_FALSE(std::filesystem::exists(name("library.zrf")));

    file_.open(name("library.zrf").c_str(), GIO::OpenReadWrite);
    file_.set_type(GString("kind"));
    file_.flush();
    file_.close();

    ResourceFile again(name("library.zrf").c_str(), GIO::OpenRead);
    EXPECT_EQ(again.get_type(), "kind");
}

TEST_F(ResourceFileTest, CommitScope_WhatIsInsideIsNotSeenByOthersBeforeItsEnd)
{
    put(name_of("before"), "x");
    file_.flush();
    {
        const ResourceFile::CommitScope scope(file_);
        put(name_of("inside"), "y");
        file_.flush();
        zmr::LibraryFile other;
        ASSERT_EQ(other.open(name("library.zrf"), zmr::LibraryAccess::Read).status,
                  zmr::LibraryOpenStatus::Ok);
        EXPECT_TRUE(other.exists(zmr::LibraryPath(), "before", "t"));
        EXPECT_FALSE(other.exists(zmr::LibraryPath(), "inside", "t"));
    }
    zmr::LibraryFile other;
    ASSERT_EQ(other.open(name("library.zrf"), zmr::LibraryAccess::Read).status,
              zmr::LibraryOpenStatus::Ok);
    EXPECT_TRUE(other.exists(zmr::LibraryPath(), "inside", "t"));
}

TEST_F(ResourceFileTest, Pack_TellsItsProgressUpToAllThatIsMoved)
{
    fill_for_packing();
    std::vector<std::pair<std::uint64_t, std::uint64_t>> told;

    EXPECT_TRUE(file_.pack([&told](std::uint64_t done, std::uint64_t all) {
        told.emplace_back(done, all);
        return true;
    }));

    ASSERT_GE(told.size(), 3U);  // some 3 MiB in one directory are moved
    for (std::size_t i = 0; i < told.size(); ++i) {
        EXPECT_LE(told[i].first, told[i].second);
        EXPECT_GE(told[i].first, i == 0 ? 0 : told[i - 1].first);
    }
    EXPECT_GE(told.back().first, 2U << 20);
    EXPECT_LE(told.back().second - told.back().first, 1U << 20);
}

TEST_F(ResourceFileTest, Pack_Stopped_EndsAtOnceAndChangesNothingThatIsSeen)
{
    fill_for_packing();
    int calls = 0;

    EXPECT_FALSE(file_.pack([&calls](std::uint64_t, std::uint64_t) { return ++calls < 2; }));

    EXPECT_EQ(calls, 2);
    EXPECT_EQ(file_.server->error(), 0);
    EXPECT_TRUE(file_.verify({}));
    for (int i = 1; i < kPackedResources; i += 2)
        EXPECT_EQ(extracted(file_, name_of(std::to_string(i).c_str())).size(), kPackedBytes);
    EXPECT_TRUE(file_.pack({}));
}

TEST_F(ResourceFileTest, Pack_WhereNothingCanBePacked_IsRefused)
{
    fill_for_packing();
    int calls = 0;
    const auto count = [&calls](std::uint64_t, std::uint64_t) {
        ++calls;
        return true;
    };
    ResourceFile reading(name("library.zrf").c_str(), GIO::OpenRead);
    ResourceFile unopened;
    EXPECT_FALSE(reading.pack(count));
    EXPECT_FALSE(unopened.pack(count));
    {
        const ResourceFile::CommitScope scope(file_);
        EXPECT_FALSE(file_.pack(count));
    }

    EXPECT_EQ(calls, 0);
}

TEST_F(ResourceFileTest, ChangeCount_MovesWithEveryChangeOfAnyClient)
{
    ResourceFile reading(file_);
    std::uint64_t last = reading.change_count();
    const auto has_moved = [&] { return std::exchange(last, reading.change_count()) != last; };

    put(name_of("a"), "text");
    EXPECT_TRUE(has_moved());
    put_raw(name_of("raw"), "bytes");
    EXPECT_TRUE(has_moved());
    put({path_of({"d"}), GString("b"), GString("t")}, "text");
    EXPECT_TRUE(has_moved());
    file_.copy_from(name_of("c"), file_, name_of("a"));
    EXPECT_TRUE(has_moved());
    file_.rename(name_of("c"), name_of("e"));
    EXPECT_TRUE(has_moved());
    file_.rename(directory({"d"}), directory({"f"}));
    EXPECT_TRUE(has_moved());
    file_.remove(name_of("e"));
    EXPECT_TRUE(has_moved());
    file_.empty();
    EXPECT_TRUE(has_moved());
}

TEST_F(ResourceFileTest, ChangeCount_StandsWhereNothingIsChanged)
{
    put(name_of("a"), "text");
    const std::uint64_t before = file_.change_count();

    EXPECT_EQ(text_of(name_of("a")), "text");
    file_.remove(name_of("none"));
    file_.rename(name_of("none"), name_of("b"));
    file_.rename(directory({"none"}), directory({"b"}));
    file_.copy_from(name_of("b"), file_, name_of("none"));
    put(name_of(std::string(70'000, 'n').c_str()), "text");
    file_.flush();
    file_.pack();

    EXPECT_EQ(file_.change_count(), before);
    EXPECT_EQ(ResourceFile().change_count(), 0U);
}

TEST_F(ResourceFileTest, Pack_WithTwoClients_ChangesNothingThatIsSeen)
{
    for (int i = 0; i < 50; ++i)
        put(name_of(("n" + std::to_string(i)).c_str()),
            std::string(3'000, 'a') + std::to_string(i));
    for (int i = 0; i < 50; i += 2)
        file_.remove(name_of(("n" + std::to_string(i)).c_str()));
    ResourceFile other(file_);
    GStreamable* const loaded = other.get(name_of("n1"), true);

    file_.pack();

    EXPECT_EQ(other.get(name_of("n1"), true), loaded);
    for (int i = 0; i < 50; ++i) {
        const std::string expected =
            i % 2 == 0 ? "(none)" : std::string(3'000, 'a') + std::to_string(i);
        EXPECT_EQ(text_of(other, name_of(("n" + std::to_string(i)).c_str())), expected);
    }
}

TEST_F(ResourceFileTest, Verify_NamesADamagedResourceAndTheRestStaysReadable)
{
    std::string incompressible;
    unsigned state = 1;
    for (int i = 0; i < 5'000; ++i) {
        state = state * 1'103'515'245u + 12'345u;
        incompressible += static_cast<char>(1 + (state >> 16) % 255);
    }
    put(name_of("victim"), incompressible);
    put(name_of("other"), "fine");
    file_.close();
    {
        std::fstream raw(name("library.zrf"), std::ios::in | std::ios::out | std::ios::binary);
        std::string all((std::istreambuf_iterator<char>(raw)), {});
        const std::size_t place = all.find(incompressible.substr(1'000, 100));
        ASSERT_NE(place, std::string::npos);
        raw.seekp(static_cast<std::streamoff>(place));
        raw.put('\x01');
    }
    file_.open(name("library.zrf").c_str(), GIO::OpenRead);
    ASSERT_NE(file_.server, nullptr) << file_.open_error().text;

    std::vector<std::string> damaged;
    const bool whole = file_.verify(
        [&](const ResourceFile::Damage& damage) { damaged.emplace_back(damage.name.name.text); });

    EXPECT_FALSE(whole);
    EXPECT_EQ(damaged, std::vector<std::string>{"victim"});
    EXPECT_EQ(file_.get(name_of("victim"), false), nullptr);
    ASSERT_NE(file_.last_damage(), nullptr);
    EXPECT_EQ(file_.last_damage()->name.name, "victim");
    EXPECT_EQ(text_of(name_of("other")), "fine");
    EXPECT_EQ(file_.server->error(), 0);
}

TEST_F(ResourceFileTest, Unload_FreesTheInstanceAndKeepsTheResource)
{
    file_.put(new StoredText("x"), name_of("a"), true);
    const int alive = StoredText::alive;

    file_.unload(name_of("a"));

    EXPECT_EQ(StoredText::alive, alive - 1);
    EXPECT_EQ(text_of(name_of("a")), "x");
}

TEST_F(ResourceFileTest, Iterators_AreSnapshotsWalkedFromTheEnd)
{
    for (const char* name : {"b", "a", "c"})
        put(name_of(name), name);
    put(name_of("a", "u"), "other type");
    put({path_of({"d", "e"}), GString("n"), GString("v")}, "deep");
    std::string walked;
    for (GResourceIterator name(file_, name_of("")); name.index >= 0; --name) {
        walked += name.element().text;
        file_.remove(name_of(name.element().text));
    }

    EXPECT_EQ(walked, "cba");
    EXPECT_EQ(GResourceIterator(file_, name_of("")).index, -1);
    const GResourceTypeIterator types(file_);
    EXPECT_EQ(types.index, 1);
    EXPECT_EQ(types.element(), "v");
    const GResourceTypeIterator types_here(file_, GResourcePath());
    EXPECT_EQ(types_here.index, 0);
    EXPECT_EQ(types_here.element(), "u");
    const GResourceSubDirectoryIterator below(file_, GResourcePath());
    EXPECT_EQ(below.index, 0);
    EXPECT_EQ(below.element(), "d");
}

TEST_F(ResourceFileTest, Iterator_GetLoaded_GivesInstancesAndReadsNothing)
{
    put(name_of("a"), "x");
    put(name_of("b"), "y");
    GStreamable* const loaded = file_.get(name_of("b"), true);
    const int alive = StoredText::alive;

    GResourceIterator name(file_, name_of(""));

    EXPECT_EQ(name.get_loaded(), loaded);
    --name;
    EXPECT_EQ(name.get_loaded(), nullptr);
    EXPECT_EQ(StoredText::alive, alive);
}

TEST_F(ResourceFileTest, Callbacks_TakenBackByAnEarlierOne_AreNotCalled)
{
    struct Chain {
        static void first(GCallBackReason, void*, void* user)
        {
            auto& calls = *static_cast<std::vector<int>*>(user);
            calls.push_back(1);
            ResourceFile::UnRegisterCallback(GAnyReason, &second, user);
        }
        static void second(GCallBackReason, void*, void* user)
        {
            static_cast<std::vector<int>*>(user)->push_back(2);
        }
    };
    std::vector<int> calls;
    const GCallBackReason reason;
    ResourceFile::RegisterCallback(reason, &Chain::first, &calls);
    ResourceFile::RegisterCallback(reason, &Chain::second, &calls);
    ResourceFile::Reason_BaseInfo info;

    ResourceFile::EvokeCallback(reason, info);
    ResourceFile::EvokeCallback(GCallBackReason(), info);
    ResourceFile::UnRegisterCallback(reason, &Chain::first, &calls);
    ResourceFile::EvokeCallback(reason, info);

    EXPECT_EQ(calls, std::vector<int>{1});
}

TEST_F(ResourceFileTest, NamesBeyondTheLimits_AreNeverThere)
{
    const std::string long_text(5'000, 'n');
    GResourcePath deep;
    for (int i = 0; i < 500; ++i)
        deep += GString("d");

    put(name_of(long_text.c_str()), "x");
    put({deep, GString("n"), GString("t")}, "x");

    EXPECT_FALSE(file_.exist(name_of(long_text.c_str())));
    EXPECT_FALSE(file_.exist({deep, GString("n"), GString("t")}));
    EXPECT_EQ(file_.server->error(), 0);
}

TEST_F(ResourceFileTest, ManyThreads_ReadWhileOneWrites)
{
    for (int i = 0; i < 20; ++i)
        put(name_of(("n" + std::to_string(i)).c_str()), "text");
    std::vector<std::thread> readers;
    for (int reader = 0; reader < 4; ++reader) {
        readers.emplace_back([this] {
            ResourceFile client(name("library.zrf").c_str(), GIO::OpenRead);
            for (int i = 0; i < 200; ++i)
                EXPECT_EQ(text_of(client, name_of(("n" + std::to_string(i % 20)).c_str())), "text");
        });
    }
    for (int i = 0; i < 200; ++i)
        put(name_of("written"), std::to_string(i));
    for (std::thread& reader : readers)
        reader.join();

    EXPECT_EQ(text_of(name_of("written")), "199");
}

TEST_F(ResourceFileTest, Stream_OfTheFileObject_OpensTheSameFile)
{
    put(name_of("a"), "x");
    file_.current_path = path_of({"d"});

    const std::unique_ptr<GStreamable> copy(file_.clone(true));

    auto* const client = zmr::class_cast<ResourceFile>(copy.get());
    ASSERT_NE(client, nullptr);
    EXPECT_EQ(client->server, file_.server);
    EXPECT_TRUE(client->current_path == path_of({"d"}));
}
