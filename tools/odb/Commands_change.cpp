// odb rename, remove and copy: objects and directories with all below them.
#include "odb/ODB_InternalObject.h"
#include "odb/ObjectDatabase.h"
#include "store/GResourceIterators.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace odb {

namespace {

ExitCode refuse(const std::string& file, const std::string& name, const std::string& reason)
{
    complain(fmt::format("{}: \"{}\": {}", file, name, reason));
    return ExitCode::Refused;
}

[[nodiscard]] bool ends_in_slash(const std::string& text)
{
    return text.ends_with('/');
}

[[nodiscard]] bool is_object(const ObjectDatabase& database, const EntryName& entry)
{
    return !entry.name.is_empty() && database.object_exists(entry.path, entry.name);
}

/// Removes every resource of a directory, the icons that objects leave behind included.
void remove_resources(ObjectDatabase& database, const GResourcePath& path)
{
    for (GResourceTypeIterator type(database, path); type.index >= 0; --type) {
        const GResourceFullName pattern(path, GString(), type.element());
        for (GResourceIterator name(database, pattern); name.index >= 0; --name)
            database.remove(GResourceFullName(path, name.element(), type.element()));
    }
}

void remove_entry(ObjectDatabase& database, const EntryName& entry)
{
    const ResourceFile::CommitScope scope(database);
    database.remove_object(entry.path, entry.name);
    database.remove(entry.of_type(ObjectDatabase::ODB_IconResourceType));
}

/// Removes the directory with all below it; gives the number of objects. An interruption ends it
/// early.
std::uint64_t remove_directory(ObjectDatabase& database, const GResourcePath& directory)
{
    std::uint64_t removed = 0;
    walk_directories(database, directory, Depth::All, [&](const GResourcePath& path) {
        for (const GString& name : object_names(database, path)) {
            if (terminal::interrupted() || writing_failed(database))
                return false;
            remove_entry(database, {path, name});
            ++removed;
        }
        remove_resources(database, path);
        return true;
    });
    return removed;
}

class Copying {
public:
    Copying(ObjectDatabase& source, ObjectDatabase& target, const CopyArguments& arguments)
        : source_(source),
          target_(target),
          arguments_(arguments),
          into_(parse_directory(arguments.into)),
          progress_("copying")
    {
    }

    void copy(const std::string& text)
    {
        const EntryName entry = parse_entry(text);
        if (is_object(source_, entry)) {
            copy_entry(entry, {into_, entry.name});
            return;
        }
        const GResourcePath directory = entry.as_directory();
        if (!directory_exists(source_, directory)) {
            fail(text, "there is no such object or directory");
            return;
        }
        const int above = entry.name.is_empty() ? 0 : entry.path.count;
        if (source_.server == target_.server && lies_in(into_, directory)) {
            fail(text, "a directory can't be copied into itself");
            return;
        }
        walk_directories(source_, directory, Depth::All, [&](const GResourcePath& path) {
            GResourcePath to = into_;
            for (int level = above; level < path.count; ++level)
                to += path[level];
            for (const GString& name : object_names(source_, path)) {
                if (terminal::interrupted() || writing_failed(target_))
                    return false;
                copy_entry({path, name}, {to, name});
            }
            return true;
        });
    }

    [[nodiscard]] ExitCode code() const { return code_; }
    [[nodiscard]] std::uint64_t copied() const { return copied_; }

private:
    static bool lies_in(const GResourcePath& path, const GResourcePath& directory)
    {
        if (path.count < directory.count)
            return false;
        for (int level = 0; level < directory.count; ++level) {
            if (!(path[level] == directory[level]))
                return false;
        }
        return true;
    }

    void copy_entry(const EntryName& from, const EntryName& to)
    {
        progress_.show(from.text());
        if (source_.server == target_.server && from.text() == to.text()) {
            fail(from.text(), "it can't be copied onto itself");
            return;
        }
        const bool whole = copy_resources(from, to);
        const ResourceFile::Damage* const damage = source_.last_damage();
        unload_entry(source_, from);
        unload_entry(target_, to);
        if (whole) {
            ++copied_;
            return;
        }
        if (writing_failed(target_))
            return;  // told at the end
        fail(from.text(), damage == nullptr ? "it can't be copied" : "damaged: " + damage->reason);
        if (damage != nullptr)
            code_ = graver(code_, ExitCode::Damaged);
    }

    bool copy_resources(const EntryName& from, const EntryName& to)
    {
        const ResourceFile::CommitScope scope(target_);
        source_.copy_object_to(from.path, from.name, target_, to.path, to.name);
        bool whole = true;
        for (const GString& type :
             {ObjectDatabase::MediatorResourceType, ODB_InternalObject::GetDefaultResourceType(),
              ObjectDatabase::ODB_IconResourceType}) {
            if (source_.exist(from.of_type(type)))
                whole = whole && target_.exist(to.of_type(type));
            else if (type == ObjectDatabase::ODB_IconResourceType)
                target_.remove(to.of_type(type));  // of the object that was replaced
        }
        return whole;
    }

    void fail(const std::string& name, const std::string& reason)
    {
        code_ = graver(code_, refuse(arguments_.file, name, reason));
    }

    ObjectDatabase& source_;
    ObjectDatabase& target_;
    const CopyArguments& arguments_;
    GResourcePath into_;
    Progress progress_;
    ExitCode code_ = ExitCode::Done;
    std::uint64_t copied_ = 0;
};

void print_count(Style style, const char* what, std::uint64_t count)
{
    if (style == Style::Json)
        print(json_text({{what, count}}) + "\n");
    else
        print(fmt::format("{} {}\n", count, what));
}

ExitCode rename_directory(ObjectDatabase& database, const RenameArguments& arguments,
                          const GResourcePath& from, const GResourcePath& to)
{
    if (directory_exists(database, to))
        return refuse(arguments.file, arguments.to, "there is a directory of that name already");
    database.ResourceFile::rename(GResourceFullName(from, GString(), GString()),
                                  GResourceFullName(to, GString(), GString()));
    if (writing_failed(database) || directory_exists(database, to))
        return ExitCode::Done;
    return refuse(arguments.file, arguments.to, "a directory can't get that name");
}

ExitCode rename_object(ObjectDatabase& database, const RenameArguments& arguments,
                       const EntryName& from, const EntryName& to)
{
    if (is_object(database, to))
        return refuse(arguments.file, arguments.to, "there is an object of that name already");
    {
        // An icon that a removed object left under the new name must not be shown.
        const ResourceFile::CommitScope scope(database);
        database.remove(to.of_type(ObjectDatabase::ODB_IconResourceType));
        database.rename_object(from.path, from.name, to.path, to.name);
    }
    if (writing_failed(database) || is_object(database, to))
        return ExitCode::Done;
    return refuse(arguments.file, arguments.to, "an object can't get that name");
}

}  // namespace

ExitCode rename(const RenameArguments& arguments, Style)
{
    const OpenedLibrary library = open_to_write_or_complain(arguments.file, WhenMissing::Refuse);
    if (!library)
        return library.code;
    ObjectDatabase& database = *library.database;
    const EntryName from = parse_entry(arguments.from);
    EntryName to = parse_entry(arguments.to);
    if (ends_in_slash(arguments.to)) {
        // "icons/": keeps its name and goes there.
        to = {to.as_directory(), from.name};
    }
    const GResourcePath directory = from.as_directory();
    ExitCode code = ExitCode::Done;
    if (to.name.is_empty() || from.name.is_empty())
        code = refuse(arguments.file, from.name.is_empty() ? arguments.from : arguments.to,
                      "it is no name");
    else if (!ends_in_slash(arguments.from) && is_object(database, from))
        code = rename_object(database, arguments, from, to);
    else if (directory_exists(database, directory))
        code = rename_directory(database, arguments, directory, to.as_directory());
    else
        code = refuse(arguments.file, arguments.from, "there is no such object or directory");
    return finish_writing(database, arguments.file, code);
}

ExitCode remove(const RemoveArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_write_or_complain(arguments.file, WhenMissing::Refuse);
    if (!library)
        return library.code;
    ObjectDatabase& database = *library.database;
    ExitCode code = ExitCode::Done;
    std::uint64_t removed = 0;
    for (const std::string& text : arguments.names) {
        const EntryName entry = parse_entry(text);
        if (!ends_in_slash(text) && is_object(database, entry)) {
            remove_entry(database, entry);
            ++removed;
        } else if (!entry.name.is_empty() && directory_exists(database, entry.as_directory())) {
            removed += remove_directory(database, entry.as_directory());
        } else {
            code = refuse(arguments.file, text, "there is no such object or directory");
        }
        if (writing_failed(database) || terminal::interrupted())
            break;
    }
    print_count(style, "removed", removed);
    if (terminal::interrupted())
        code = refuse(arguments.file, arguments.file, "interrupted; what was removed is removed");
    return finish_writing(database, arguments.file, code);
}

ExitCode copy(const CopyArguments& arguments, Style style)
{
    const OpenedLibrary source = open_to_read_or_complain(arguments.file);
    if (!source)
        return source.code;
    const OpenedLibrary target = open_to_write_or_complain(arguments.to, WhenMissing::Make);
    if (!target)
        return target.code;

    ExitCode code = ExitCode::Done;
    {
        Copying copying(*source.database, *target.database, arguments);
        for (const std::string& name : arguments.names) {
            if (!terminal::interrupted() && !writing_failed(*target.database))
                copying.copy(name);
        }
        code = copying.code();
        print_count(style, "copied", copying.copied());
    }
    if (terminal::interrupted())
        code = graver(code,
                      refuse(arguments.to, arguments.to, "interrupted; what was copied is kept"));
    return finish_writing(*target.database, arguments.to, code);
}

}  // namespace odb
