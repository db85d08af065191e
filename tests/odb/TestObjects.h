#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ODB_ObjectAttribute.h"
#include "odb/ObjectDatabase.h"
#include "tests/TemporaryFolder.h"

#include <atomic>

/// An object to put into a database: a text.
class TestNote : public GStreamable {
    G_DECLARE_CLASS(TestNote)

public:
    TestNote() { ++alive; }
    explicit TestNote(const char* note) : note_(note) { ++alive; }
    ~TestNote() override { --alive; }

    [[nodiscard]] const GString& note() const { return note_; }
    void read(ipstream& in) override;
    void write(opstream& out) override;

    static std::atomic<int> alive;
    static std::atomic<int> reads;  ///< Objects read since the process began.

private:
    GString note_;
};

/// An attribute: a number.
class TestRating : public ODB_ObjectAttribute {
    G_DECLARE_CLASS(TestRating)

public:
    TestRating() { ++alive; }
    explicit TestRating(int count) : stars(count) { ++alive; }
    ~TestRating() override { --alive; }

    void read(ipstream& in) override;
    void write(opstream& out) override;

    static std::atomic<int> alive;
    int stars = 0;
};

/// A mediator of another class than the default, for objects that are not stored at all.
class TestPhantom : public ODB_Mediator {
    G_DECLARE_CLASS(TestPhantom)

public:
    TestPhantom() = default;
    [[nodiscard]] GStreamable* get_object() override { return nullptr; }

protected:
    ~TestPhantom() override = default;
};

/// An open database in a folder of its own.
class OdbTest {
public:
    OdbTest() : database(folder.file("library.odb").c_str(), GIO::OpenReadWrite) {}

    [[nodiscard]] std::string file() const { return folder.file("library.odb"); }
    void add(const char* name, const char* note)
    {
        TestNote object(note);
        database.append_object(&object, GString(name), nullptr);
    }
    /// The text of the object of that name, "(none)" when there is none.
    [[nodiscard]] std::string note_of(const char* name) { return note_of(database, name); }
    [[nodiscard]] static std::string note_of(ObjectDatabase& from, const char* name);
    [[nodiscard]] static GResourceFullName icon_of(const char* name)
    {
        return {GResourcePath(), GString(name), ObjectDatabase::ODB_IconResourceType};
    }

    TemporaryFolder folder;
    ObjectDatabase database;
};

/// A path of one or more levels.
[[nodiscard]] inline GResourcePath path_of(std::initializer_list<const char*> levels)
{
    GResourcePath path;
    for (const char* level : levels)
        path += GString(level);
    return path;
}
