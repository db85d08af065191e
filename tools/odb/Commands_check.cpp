// odb check: what a library refers to and no longer finds, and what is left over in it.
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_InternalObject.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ObjectDatabase.h"
#include "store/GObjectPlace.h"
#include "store/GResourceIterators.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <memory>

namespace odb {

namespace {

class Checking {
public:
    Checking(ObjectDatabase& database, const CheckArguments& arguments, Style style)
        : database_(database), arguments_(arguments), style_(style), progress_("checking")
    {
    }

    // False when the walk is to end.
    bool check_directory(const GResourcePath& path)
    {
        progress_.show(directory_text(path));
        ODB_MediatorsArray mediators;
        database_.get_contents(path, mediators, false);
        for (long i = 0; i < mediators.count; ++i) {
            if (terminal::interrupted() || writing_failed(database_))
                return false;
            check_object(mediators.at(i));
        }
        check_contents(path);
        check_icons(path);
        return true;
    }

    void report_end(bool whole)
    {
        if (style_ == Style::Json) {
            if (found_ == 0)
                print("{\"found\":");
            list_.close(fmt::format(",\"fixed\":{},\"complete\":{}}}", fixed_, whole));
        } else if (found_ == 0) {
            print("nothing amiss\n");
        } else {
            print(fmt::format("{} found, {} fixed\n", found_, fixed_));
        }
    }
    [[nodiscard]] bool all_is_well() const { return found_ == fixed_; }

private:
    // What was done about it. References and missing files are never touched: what they name may
    // come back, and without its name it could not.
    enum class Mend : std::uint8_t { No, Removed, Mended };
    [[nodiscard]] Mend when_fixing(Mend mend) const { return arguments_.fix ? mend : Mend::No; }

    void check_object(ODB_Mediator& mediator)
    {
        const EntryName entry{mediator.get_DB_resname().path(), mediator.get_DB_key()};
        if (const auto* const reference = zmr::class_cast<ODB_ReferenceToObject>(&mediator))
            check_reference(entry, *reference);
        else if (auto* const external = zmr::class_cast<ODB_ExternalObject>(&mediator))
            check_file(entry, *external);
        else if (auto* const internal = zmr::class_cast<ODB_InternalObject>(&mediator))
            check_content(entry, *internal);
    }

    // Follows the references to the object that stands at their end.
    void check_reference(const EntryName& entry, const ODB_ReferenceToObject& reference)
    {
        const ODB_ReferenceToObject* current = &reference;
        std::unique_ptr<ObjectDatabase> opened;  // holds `current` in memory
        for (int step = 0; step < ODB_ReferenceToObject::kMostSteps; ++step) {
            const GFile file = current->get_referenced_DB_filename();
            const GResourceFullName target = current->get_referenced_object_resname();
            auto next = std::make_unique<ObjectDatabase>(file.text, GIO::OpenRead);
            if (next->server == nullptr) {
                add(entry, "reference", fmt::format("{} can't be opened", file.view()), Mend::No);
                return;
            }
            const ODB_Mediator* const host = next->get_mediator(target);
            if (host == nullptr) {
                const EntryName missing{target.path(), target.name};
                add(entry, "reference",
                    fmt::format("there is no \"{}\" in {}", missing.text(), file.view()), Mend::No);
                return;
            }
            current = zmr::class_cast<ODB_ReferenceToObject>(host);
            if (current == nullptr)
                return;
            opened = std::move(next);
        }
        add(entry, "reference", "it leads in a circle", Mend::No);
    }

    void check_file(const EntryName& entry, ODB_ExternalObject& external)
    {
        const GFile file = external.get_filename();
        if (file.is_empty())
            return;
        if (!file.exists())
            add(entry, "file", fmt::format("{} is missing", file.view()), Mend::No);
        else if (const GMetaClass* const stored = external.get_place().get_class())
            check_class(entry, external, GString(stored->name));
    }

    void check_content(const EntryName& entry, ODB_InternalObject& internal)
    {
        const GResourceFullName content = internal.get_resource_name();
        if (!database_.exist(content)) {
            add(entry, "object", "its content is missing", Mend::No);
            return;
        }
        char* const stored = database_.read_class_name(content);
        if (stored != nullptr)
            check_class(entry, internal, GString(stored));
        gfreestr(stored);
    }

    // The entry tells the class of its object, so that nobody has to read that.
    void check_class(const EntryName& entry, ODB_Mediator& mediator, const GString& stored)
    {
        const GString told = mediator.get_object_class_name();
        if (told == stored)
            return;
        if (arguments_.fix)  // without an object the entry takes the class of what is there
            database_.append_object(nullptr, mediator.get_DB_resname(), &mediator);
        add(entry, "class", fmt::format("it holds {}, not {}", stored.view(), told.view()),
            when_fixing(Mend::Mended));
    }

    // Contents that no entry leads to get one.
    void check_contents(const GResourcePath& path)
    {
        const GResourceFullName pattern(path, GString(),
                                        ODB_InternalObject::GetDefaultResourceType());
        for (GResourceIterator content(database_, pattern); content.index >= 0; --content) {
            const EntryName entry{path, content.element()};
            if (database_.object_exists(entry.path, entry.name))
                continue;
            if (arguments_.fix)
                database_.append_object(nullptr, entry.path, entry.name, nullptr);
            add(entry, "entry", "its content has none", when_fixing(Mend::Mended));
        }
    }

    // Icons outlive the objects that they belong to.
    void check_icons(const GResourcePath& path)
    {
        const GResourceFullName pattern(path, GString(), ObjectDatabase::ODB_IconResourceType);
        for (GResourceIterator icon(database_, pattern); icon.index >= 0; --icon) {
            const EntryName entry{path, icon.element()};
            if (database_.object_exists(entry.path, entry.name))
                continue;
            if (arguments_.fix)
                database_.remove(entry.of_type(ObjectDatabase::ODB_IconResourceType));
            add(entry, "icon", "no object has it", when_fixing(Mend::Removed));
        }
    }

    void add(const EntryName& entry, const char* kind, const std::string& reason, Mend mend)
    {
        const bool fixed = mend != Mend::No;
        const char* const done = mend == Mend::Removed  ? " (removed)"
                                 : mend == Mend::Mended ? " (mended)"
                                                        : "";
        ++found_;
        fixed_ += fixed ? 1 : 0;
        if (style_ == Style::Text) {
            print(fmt::format("{}: {}: {}{}\n", printable(entry.text()), kind, printable(reason),
                              done));
            return;
        }
        if (found_ == 1)
            print("{\"found\":");
        list_.add({{"path", entry.text()}, {"kind", kind}, {"reason", reason}, {"fixed", fixed}});
    }

    ObjectDatabase& database_;
    const CheckArguments& arguments_;
    Style style_;
    Progress progress_;
    JsonArrayPrinter list_;
    std::uint64_t found_ = 0;
    std::uint64_t fixed_ = 0;
};

}  // namespace

ExitCode check(const CheckArguments& arguments, Style style)
{
    const OpenedLibrary library =
        arguments.fix ? open_to_write_or_complain(arguments.file, WhenMissing::Refuse)
                      : open_to_read_or_complain(arguments.file);
    if (!library)
        return library.code;
    ObjectDatabase& database = *library.database;
    Checking checking(database, arguments, style);
    const bool whole = walk_directories(database, {}, Depth::All, [&](const GResourcePath& path) {
        return checking.check_directory(path);
    });
    checking.report_end(whole);
    ExitCode code = whole && checking.all_is_well() ? ExitCode::Done : ExitCode::Refused;
    if (arguments.fix)
        code = finish_writing(database, arguments.file, code);
    if (const ResourceFile::Damage* const damage = database.last_damage()) {
        complain(fmt::format("{}: damaged: {}", arguments.file, damage->reason));
        code = ExitCode::Damaged;
    }
    return code;
}

}  // namespace odb
