// Libraries on a file system that stops, fails and loses power at every operation: after each, what
// opens again is the state before the change or the one after it, never a part.

#include "../store/FaultyFileSystem.h"
#include "TestObjects.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ObjectPlacement.h"
#include "odb/ODB_ReferenceToObject.h"
#include "store/GObjectPlace.h"
#include "store/StoreFiles.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace {

/// What a user sees of a library: each entry's path and name, its mediator's class, the class that
/// it tells and the object that it gives.
using Seen = std::map<std::string, std::string>;

GResourceFullName mediator_of(const GResourcePath& path, const char* name)
{
    return {path, GString(name), ObjectDatabase::MediatorResourceType};
}

class Library {
public:
    explicit Library(zmr::FaultyFileSystem& files) : in_place_(files) {}

    [[nodiscard]] std::string file(const char* name) const { return Folder().file(name); }
    [[nodiscard]] Seen see(const char* name) const
    {
        Seen seen;
        ObjectDatabase database(file(name).c_str(), GIO::OpenRead);
        if (database.server == nullptr)
            return {{"unreadable", database.open_error().text}};
        ODB_MediatorsArray contents;
        database.get_contents(GResourcePath(), contents, true);
        for (long i = 0; i < contents.count; ++i) {
            ODB_Mediator& mediator = contents.at(i);
            const std::unique_ptr<GStreamable> object(mediator.get_object());
            const auto* const note = zmr::class_cast<TestNote>(object.get());
            const GResourceFullName& entry = mediator.get_DB_resname();
            seen[std::string(entry.get_readable_form().text) + entry.name.text] =
                std::string(mediator.getClassName()) + " " + mediator.get_object_class_name().text +
                " " + (note == nullptr ? "(none)" : note->note().text);
        }
        return seen;
    }

    /// The folder's directories are on the disk, its files in memory.
    static const TemporaryFolder& Folder()
    {
        static const TemporaryFolder folder;
        return folder;
    }

private:
    zmr::StoreFilesInPlace in_place_;
};

void add(ObjectDatabase& database, const GResourcePath& path, const char* name, const char* note,
         ODB_Mediator* mediator)
{
    TestNote object(note);
    database.append_object(&object, path, GString(name), mediator);
}

/// The state that every change starts from.
void prepare(zmr::FaultyFileSystem& files)
{
    const Library library(files);
    ObjectDatabase other(library.file("other.odb").c_str(), GIO::OpenReadWrite);
    add(other, GResourcePath(), "far", "a far one", nullptr);
    add(other, GResourcePath(), "out", "another file", new ODB_ExternalObject("out.lob"));
    ObjectDatabase main(library.file("main.odb").c_str(), GIO::OpenReadWrite);
    const GResourcePath root;
    add(main, root, "lamp", "a lamp", nullptr);
    add(main, root, "ext", "in a file", new ODB_ExternalObject("ext.lob"));
    add(main, path_of({"d"}), "made up", "in LOBJS",
        new ODB_ExternalObject(static_cast<const char*>(nullptr)));
    add(main, root, "near", "", new ODB_ReferenceToObject(main, mediator_of(root, "lamp")));
    add(main, root, "away", "", new ODB_ReferenceToObject(other, mediator_of(root, "far")));
    add(main, root, "to file", "", new ODB_ReferenceToObject(other, mediator_of(root, "out")));
}

using Change = std::function<void(ObjectDatabase& main, ObjectDatabase& other)>;

struct NamedChange {
    const char* name;
    Change change;
};

void PrintTo(const NamedChange& change, std::ostream* out)
{
    *out << change.name;
}

const GResourcePath kRoot;

GObjectPlace entry_of(const ObjectDatabase& database, const char* name)
{
    GObjectPlace place;
    place = new ODB_ObjectPlacement(database, kRoot, GString(name));
    return place;
}

const NamedChange kChanges[] = {
    {"AppendExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         add(main, kRoot, "new", "a new one", new ODB_ExternalObject("new.lob"));
     }},
    {"AppendExternalInLOBJS",
     [](ObjectDatabase& main, ObjectDatabase&) {
         add(main, kRoot, "new", "a new one",
             new ODB_ExternalObject(static_cast<const char*>(nullptr)));
     }},
    {"StoreExternalAgain",
     [](ObjectDatabase& main, ObjectDatabase&) {
         add(main, kRoot, "ext", std::string(3000, 'x').c_str(), main.get_mediator(GString("ext")));
     }},
    {"RemoveExternal",
     [](ObjectDatabase& main, ObjectDatabase&) { main.remove_object(GString("ext")); }},
    {"RenameExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         main.rename_object(kRoot, GString("ext"), path_of({"e"}), GString("moved"));
     }},
    {"RenameInternalOntoExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         main.rename_object(GString("lamp"), GString("ext"));
     }},
    {"RenameExternalOntoExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         main.rename_object(path_of({"d"}), GString("made up"), kRoot, GString("ext"));
     }},
    {"CopyExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         main.copy_object_to(GString("ext"), main, GString("copy"));
     }},
    {"CopyExternalOut",
     [](ObjectDatabase& main, ObjectDatabase& other) {
         main.copy_object_to(GString("ext"), other, GString("copy"));
     }},
    {"ExternalBecomesInternal",
     [](ObjectDatabase& main, ObjectDatabase&) { add(main, kRoot, "ext", "inside", nullptr); }},
    {"InternalBecomesExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         add(main, kRoot, "lamp", "outside", new ODB_ExternalObject("lamp.lob"));
     }},
    {"ExternalTakesAnotherFile",
     [](ObjectDatabase& main, ObjectDatabase&) {
         add(main, kRoot, "ext", "elsewhere", new ODB_ExternalObject("else.lob"));
     }},
    {"RenameDirectory",
     [](ObjectDatabase& main, ObjectDatabase&) {
         main.rename(GResourceFullName(path_of({"d"}), GString(), GString()),
                     GResourceFullName(path_of({"e", "f"}), GString(), GString()));
     }},
    {"AppendReference",
     [](ObjectDatabase& main, ObjectDatabase& other) {
         add(main, kRoot, "new", "", new ODB_ReferenceToObject(other, mediator_of(kRoot, "out")));
     }},
    {"ReferenceBecomesExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         add(main, kRoot, "away", "here", new ODB_ExternalObject("away.lob"));
     }},
    {"RemoveReference",
     [](ObjectDatabase& main, ObjectDatabase&) { main.remove_object(GString("away")); }},
    {"RenameReference",
     [](ObjectDatabase& main, ObjectDatabase&) {
         main.rename_object(GString("near"), GString("nearer"));
     }},
    {"CopyReference",
     [](ObjectDatabase& main, ObjectDatabase& other) {
         main.copy_object_to(GString("to file"), other, GString("back"));
     }},
    {"RemoveTarget",
     [](ObjectDatabase& main, ObjectDatabase&) { main.remove_object(GString("lamp")); }},
    {"PlacementPutsNew",
     [](ObjectDatabase& main, ObjectDatabase&) {
         TestNote note("by a placement");
         static_cast<void>(entry_of(main, "new").put(&note, false));
     }},
    {"PlacementPutsIntoExternal",
     [](ObjectDatabase& main, ObjectDatabase&) {
         TestNote note("by a placement");
         static_cast<void>(entry_of(main, "ext").put(&note, false));
     }},
    {"PlacementRemoves",
     [](ObjectDatabase& main, ObjectDatabase&) {
         static_cast<void>(entry_of(main, "ext").remove());
     }},
    {"PlacementCopies",
     [](ObjectDatabase& main, ObjectDatabase& other) {
         static_cast<void>(entry_of(main, "ext").copy_to(entry_of(other, "copy")));
     }},
    {"Empty", [](ObjectDatabase& main, ObjectDatabase&) { main.empty(); }},
    {"Pack", [](ObjectDatabase& main, ObjectDatabase&) { main.pack(); }},
};

class ObjectDatabaseFaults : public testing::TestWithParam<NamedChange> {
protected:
    /// Opens both libraries, changes and closes them.
    void run(const zmr::FaultyFileSystem&, const Library& library) const
    {
        ObjectDatabase main(library.file("main.odb").c_str(), GIO::OpenReadWrite);
        ObjectDatabase other(library.file("other.odb").c_str(), GIO::OpenReadWrite);
        GetParam().change(main, other);
        // References are asked, so that the other library's clients are there when it stops.
        for (const char* name : {"near", "away", "to file"})
            static_cast<void>(OdbTest::note_of(main, name));
    }
};

}  // namespace

TEST_P(ObjectDatabaseFaults, StoppedAnywhere_EachLibraryIsAsBeforeOrAsAfter)
{
    zmr::FaultyFileSystem start;
    prepare(start);
    Seen old_main, old_other, new_main, new_other;
    std::uint64_t count = 0;
    {
        zmr::FaultyFileSystem whole = start.copy();
        const Library library(whole);
        old_main = library.see("main.odb");
        old_other = library.see("other.odb");
        ASSERT_EQ(old_main.size(), 6U);
        ASSERT_EQ(old_main.at("away"), "ODB_ReferenceToObject TestNote a far one");
        ASSERT_EQ(old_main.at("to file"), "ODB_ReferenceToObject TestNote another file");
        run(whole, library);
        count = whole.operations();
        new_main = library.see("main.odb");
        new_other = library.see("other.odb");
    }
    if (std::string(GetParam().name) != "Pack") {
        ASSERT_TRUE(new_main != old_main || new_other != old_other);
    }

    // Power loss and kill at each operation, single and lasting failures of each.
    enum class End { PowerLoss, Kill, DiskFull, Denied, DiskStaysFull };
    for (std::uint64_t at = 1; at <= count + 1; ++at)
        for (const End end :
             {End::PowerLoss, End::PowerLoss, End::PowerLoss, End::PowerLoss, End::PowerLoss,
              End::PowerLoss, End::Kill, End::DiskFull, End::Denied, End::DiskStaysFull}) {
            static std::uint32_t seed = 1;
            ++seed;
            SCOPED_TRACE(testing::Message() << "operation " << at << " of " << count << ", end "
                                            << static_cast<int>(end) << ", seed " << seed);
            zmr::FaultyFileSystem files = start.copy();
            const Library library(files);
            if (end == End::PowerLoss || end == End::Kill)
                files.stop_at(at, seed);
            else
                files.fail_at(at,
                              end == End::Denied ? zmr::FileErrorKind::AccessDenied
                                                 : zmr::FileErrorKind::DiskFull,
                              end == End::DiskStaysFull);
            run(files, library);
            if (end == End::PowerLoss)
                files.lose_power(seed);
            else
                files.end_process();

            const Seen main = library.see("main.odb");
            const Seen other = library.see("other.odb");
            // An object that could not be written costs itself only; its entry may be there.
            const bool may_lack = end != End::PowerLoss && end != End::Kill;
            const auto fits = [&](const Seen& seen, const Seen& before, const Seen& after) {
                if (seen == before || seen == after)
                    return true;
                if (!may_lack || seen.size() != after.size())
                    return false;
                for (const auto& [name, text] : after) {
                    const auto found = seen.find(name);
                    const auto former = before.find(name);
                    if (found == seen.end())
                        return false;
                    const std::string lacking = text.substr(0, text.find(' ', text.find(' ') + 1));
                    if (found->second != text && found->second != lacking + " (none)" &&
                        (former == before.end() || found->second != former->second))
                        return false;
                }
                return true;
            };
            ASSERT_TRUE(fits(main, old_main, new_main)) << testing::PrintToString(main);
            ASSERT_TRUE(fits(other, old_other, new_other)) << testing::PrintToString(other);
        }
}

INSTANTIATE_TEST_SUITE_P(Changes, ObjectDatabaseFaults, testing::ValuesIn(kChanges),
                         [](const auto& one) { return std::string(one.param.name); });
