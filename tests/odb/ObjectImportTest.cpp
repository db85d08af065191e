#include "odb/ObjectImport.h"

#include "../store/FaultyFileSystem.h"
#include "TestObjects.h"
#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "store/ResourceFileServer.h"
#include "store/StoreFiles.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <new>
#include <string>

namespace {

/// Reads files that begin with "note:" as notes; what stands behind may be damaged.
class NoteFormat final : public GObjectFileFormat {
public:
    NoteFormat() { GObjectFileFormat::Register(*this); }
    ~NoteFormat() override { GObjectFileFormat::Unregister(*this); }

    unsigned char write_object(const char*, GStreamable*) const override { return 0; }
    GStreamable* read_object(const char* file) const override
    {
        const std::string text = text_of(file);
        if (text == "note:damaged")
            throw GLibraryException("The note is damaged.");
        if (text == "note:large")
            throw std::bad_alloc();
        return text == "note:changed" ? nullptr : new TestNote(text.c_str() + 5);
    }
    GString read_object_class_name(const char* file) override
    {
        return text_of(file).starts_with("note:") ? GString("TestNote") : GString();
    }

private:
    static std::string text_of(const char* file)
    {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

/// Makes icons of notes, 7 pixels wide; not of those of one word.
class NoteIcons final : public GIconMaker {
public:
    NoteIcons() { GIconMaker::Register(*this); }
    ~NoteIcons() override { GIconMaker::Unregister(*this); }

    [[nodiscard]] PixelMap* make_icon(const GStreamable& object, int size_px) const override
    {
        const auto* const note = zmr::class_cast<TestNote>(&object);
        if (note == nullptr || note->note() == "plain")
            return nullptr;
        if (note->note() == "failing")
            throw OutOfMemory_Exception();
        if (note->note() == "huge")
            throw std::bad_alloc();
        asked_size_px = size_px;
        return new PixelMap(7, 5, AbstractImage::Format24, nullptr);
    }

    mutable int asked_size_px = 0;
};

class ObjectImport : public testing::Test {
protected:
    [[nodiscard]] zmr::ImportedObject import(const char* text) const
    {
        const std::string file = odb_.folder.file("in.note");
        std::ofstream(file, std::ios::binary) << text;
        return zmr::import_object(file);
    }
    [[nodiscard]] static GResourceFullName named(const char* name)
    {
        return {GResourcePath(), GString(name), ObjectDatabase::MediatorResourceType};
    }
    [[nodiscard]] bool has_icon(const char* name)
    {
        return odb_.database.exist(odb_.icon_of(name));
    }

    NoteFormat format_;
    NoteIcons icons_;
    OdbTest odb_;
};

}  // namespace

TEST_F(ObjectImport, FileOfARegisteredFormat_GivesItsObject)
{
    const zmr::ImportedObject read = import("note:a lamp");

    const auto* const note = zmr::class_cast<TestNote>(read.object.get());
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->note(), "a lamp");
    EXPECT_EQ(read.reason, "");
}

TEST_F(ObjectImport, WhatCannotBeRead_GivesTheReason)
{
    const zmr::ImportedObject missing = zmr::import_object(odb_.folder.file("none"));
    EXPECT_EQ(missing.object, nullptr);
    EXPECT_EQ(missing.reason, zmr::FileError({zmr::FileErrorKind::NotFound, 0}).text());
    const zmr::ImportedObject folder = zmr::import_object(odb_.folder.file(""));
    EXPECT_EQ(folder.object, nullptr);
    EXPECT_NE(folder.reason, "");
    const zmr::ImportedObject nameless = zmr::import_object("");
    EXPECT_EQ(nameless.object, nullptr);
    EXPECT_NE(nameless.reason, "");

    EXPECT_EQ(import("").reason, "it is empty");
    EXPECT_EQ(import("a poem").reason, "no registered format reads it");
    EXPECT_EQ(import("note:changed").reason, "no registered format reads it");
    EXPECT_EQ(import("note:damaged").reason, "The note is damaged.");
    EXPECT_EQ(import("note:large").reason, "there is not enough memory to read it");
    EXPECT_EQ(import("note:large").object, nullptr);
}

TEST_F(ObjectImport, Appended_HasObjectAndIcon_WhichIsNotKeptInMemory)
{
    EXPECT_TRUE(zmr::append_with_icon(odb_.database, TestNote("a lamp"), named("lamp")));

    EXPECT_EQ(odb_.note_of("lamp"), "a lamp");
    EXPECT_EQ(icons_.asked_size_px, zmr::kKeptIconSize_px);
    ODB_Mediator* const lamp = odb_.database.get_mediator("lamp");
    ASSERT_NE(lamp->get_icon(), nullptr);
    EXPECT_EQ(lamp->get_icon()->get_width(), 7);
    // Without the stored one there is none left to show.
    lamp->unload_icon();
    odb_.database.remove(odb_.icon_of("lamp"));
    EXPECT_EQ(lamp->get_icon(), nullptr);
}

TEST_F(ObjectImport, AskedSize_IsThatOfTheIcon)
{
    EXPECT_TRUE(
        zmr::append_with_icon(odb_.database, TestNote("a lamp"), named("lamp"), nullptr, 32));

    EXPECT_EQ(icons_.asked_size_px, 32);
}

TEST_F(ObjectImport, TypeOfTheName_DoesNotMatter)
{
    EXPECT_TRUE(zmr::append_with_icon(odb_.database, TestNote("a lamp"),
                                      {path_of({"d"}), GString("lamp"), GString()}));

    EXPECT_TRUE(odb_.database.object_exists(path_of({"d"}), GString("lamp")));
}

TEST_F(ObjectImport, ObjectWithoutIcon_DoesNotShowThatOfTheFormerOne)
{
    for (const char* const text : {"plain", "failing", "huge"}) {
        ASSERT_TRUE(zmr::append_with_icon(odb_.database, TestNote("a lamp"), named("lamp")));
        ASSERT_TRUE(has_icon("lamp"));
        EXPECT_TRUE(zmr::append_with_icon(odb_.database, TestNote(text), named("lamp"))) << text;

        EXPECT_EQ(odb_.note_of("lamp"), text);
        EXPECT_FALSE(has_icon("lamp")) << text;
        EXPECT_EQ(odb_.database.get_mediator("lamp")->get_icon(), nullptr) << text;
    }
}

TEST_F(ObjectImport, GivenMediator_SaysWhereTheObjectLies)
{
    EXPECT_TRUE(zmr::append_with_icon(odb_.database, TestNote("a lamp"), named("lamp"),
                                      new ODB_ExternalObject("lamp.lob")));

    EXPECT_TRUE(std::filesystem::exists(odb_.folder.file("lamp.lob")));
    EXPECT_TRUE(has_icon("lamp"));
    EXPECT_EQ(odb_.note_of("lamp"), "a lamp");
}

TEST_F(ObjectImport, NameBeyondTheLimits_IsRefused)
{
    const std::string name(70000, 'n');
    EXPECT_FALSE(zmr::append_with_icon(odb_.database, TestNote("a lamp"), named(name.c_str()),
                                       new ODB_ExternalObject("lamp.lob")));

    EXPECT_FALSE(std::filesystem::exists(odb_.folder.file("lamp.lob")));
    EXPECT_EQ(odb_.database.get_mediator(named(name.c_str())), nullptr);
}

TEST_F(ObjectImport, LibraryThatCannotBeWritten_IsRefusedAndShowsNothingNew)
{
    odb_.add("lamp", "a lamp");
    odb_.database.close();
    ObjectDatabase reading(odb_.file().c_str(), GIO::OpenRead);
    EXPECT_FALSE(zmr::append_with_icon(reading, TestNote("another"), named("lamp"),
                                       new ODB_ExternalObject("lamp.lob")));
    ObjectDatabase unopened;
    EXPECT_FALSE(zmr::append_with_icon(unopened, TestNote("a lamp"), named("lamp"), nullptr));

    EXPECT_EQ(OdbTest::note_of(reading, "lamp"), "a lamp");
    EXPECT_FALSE(reading.get_mediator("lamp")->has_icon());
    EXPECT_FALSE(std::filesystem::exists(odb_.folder.file("lamp.lob")));
}

TEST_F(ObjectImport, StoppedAnywhere_ObjectAndIconAreThereOrNeither)
{
    bool was_kept = false;
    int stops = 0;
    for (std::uint64_t stop = 1; !was_kept; ++stop) {
        zmr::FaultyFileSystem files;
        const zmr::StoreFilesInPlace in_place(files);
        const std::string file = odb_.folder.file("faulty.odb");
        {
            ObjectDatabase database(file.c_str(), GIO::OpenReadWrite);
            database.append_object(nullptr, GString("first"), nullptr);
            database.flush();
            files.stop_at(stop, 1);
            static_cast<void>(zmr::append_with_icon(database, TestNote("a lamp"), named("lamp")));
            database.flush();
            was_kept = database.server->error() == 0;
        }
        files.end_process();
        ObjectDatabase again(file.c_str(), GIO::OpenReadWrite);
        ASSERT_NE(again.server, nullptr);
        EXPECT_TRUE(again.object_exists(GString("first"))) << stop;
        EXPECT_EQ(again.object_exists(GString("lamp")), again.exist(odb_.icon_of("lamp"))) << stop;
        EXPECT_EQ(OdbTest::note_of(again, "lamp"),
                  again.object_exists(GString("lamp")) ? "a lamp" : "(none)");
        stops += was_kept ? 0 : 1;
        ASSERT_LT(stop, 1000U);
    }
    EXPECT_GT(stops, 0);
}
