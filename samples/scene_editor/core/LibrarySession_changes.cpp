// The open library: what is changed in it.
#include "odb/ODB_Mediator.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "odb/ObjectDatabase.h"
#include "scene_editor/core/CountsText.h"
#include "scene_editor/core/LibraryPaths.h"
#include "scene_editor/core/LibrarySession.h"
#include "store/ResourceFileServer.h"

#include <cstdint>
#include <filesystem>

namespace editor {

namespace {

// Why a library can't be written any more; nothing when it can.
std::optional<std::string> write_failure(const ObjectDatabase& library, const std::string& file)
{
    if (library.server != nullptr && library.server->error() == 0)
        return std::nullopt;
    const std::string why(library.server != nullptr ? library.server->error_text().view()
                                                    : std::string_view("it is not open"));
    return file + ": it can't be written any more: " + why + " What was committed before is whole.";
}

std::uintmax_t bytes_of(const std::string& file)
{
    const std::u8string name(file.begin(), file.end());
    std::error_code failure;
    const std::uintmax_t bytes = std::filesystem::file_size(std::filesystem::path(name), failure);
    return failure ? 0 : bytes;
}

}  // namespace

std::optional<std::string> LibrarySession::rename(const DirectoryPath& path,
                                                  const std::string& from, const std::string& to)
{
    if (auto reason = not_writable())
        return reason;
    if (to.empty())
        return "An entry must have a name.";
    const GResourcePath here = resource_path(path);
    if (!database_->object_exists(here, text_of(from)))
        return "The entry " + in_quotes(from) + " is not there any more.";
    if (database_->object_exists(here, text_of(to)))
        return "There is an entry " + in_quotes(to) + " in this directory already.";
    database_->rename_object(here, text_of(from), here, text_of(to));
    if (auto reason = commit())
        return reason;
    if (!database_->object_exists(here, text_of(to)))
        return "The entry " + in_quotes(from) + " can't have the name " + in_quotes(to) + ".";
    return std::nullopt;
}

LibrarySession::Removed LibrarySession::remove(const DirectoryPath& path,
                                               const std::vector<ListedEntry>& entries,
                                               const StepsDone& steps)
{
    if (auto reason = not_writable())
        return {{}, reason};
    Removed removed;
    removed.entries = delete_entries(*database_, path, entries, steps);
    removed.reason = commit();
    if (removed.reason)
        removed.entries.clear();
    return removed;
}

std::size_t LibrarySession::deletions() const
{
    return database_ != nullptr && database_->is_writable() ? deletions_kept(*database_) : 0;
}

LibraryResult LibrarySession::restore(const StepsDone& steps)
{
    if (const auto reason = not_writable())
        return ChangeRefused{*reason};
    const RestoredEntries restored = restore_last_deletion(*database_, steps);
    if (const auto reason = commit())
        return ChangeRefused{*reason};
    if (restored.count == 0)
        return ChangeRefused{"There is nothing that was deleted."};
    EntriesRestored result{restored.count, restored.path, restored.name, {}};
    if (!restored.renamed.empty()) {
        result.note = restored.renamed.size() == 1
                          ? "Its name is in use by now: the entry is back as " +
                                in_quotes(restored.renamed[0]) + "."
                          : with_thousands(restored.renamed.size()) +
                                " entries are back with a number behind their names, which are in "
                                "use by now.";
    }
    return result;
}

std::optional<std::string> LibrarySession::describe(const DirectoryPath& path,
                                                    const std::string& name,
                                                    const std::string& text)
{
    if (auto reason = not_writable())
        return reason;
    ODB_Mediator* const mediator = mediator_of(path, name);
    if (mediator == nullptr)
        return "The entry " + in_quotes(name) + " is not there any more.";
    {
        const ResourceFile::CommitScope whole(*database_);
        if (text.empty())
            mediator->remove_attribute(&ODB_TextDescriptionAttribute::metaclass_);
        else
            mediator->set_attribute(new ODB_TextDescriptionAttribute(text.c_str()), true);
        mediator->modified();  // tells all listeners, our own among them
    }
    return commit();
}

WorkDone LibrarySession::copy(const DirectoryPath& path, const std::vector<ListedEntry>& entries,
                              const std::string& file, const DirectoryPath& to,
                              const StepsDone& steps)
{
    if (database_ == nullptr)
        return {"No library is open.", false, false};
    {
        // First as any resource file: opening one of another kind as a library would make it one.
        const ResourceFile probe(file.c_str(), GIO::OpenRead);
        const GString kind = probe.server != nullptr ? probe.get_type() : GString();
        if (!kind.is_empty() && !ObjectDatabase::IsMediatorType(kind))
            return {file + ": it is a resource file of another kind.", false, false};
    }
    ObjectDatabase target(file.c_str(), GIO::OpenReadWrite);
    if (target.server == nullptr) {
        const std::string reason(target.open_error().view());
        return {reason.empty() ? file + ": it can't be opened." : reason, false, false};
    }
    const bool is_own = target.server == database_->server;
    const TransferResult result = copy_entries(*database_, path, entries, target, to, steps);
    target.flush();
    if (const auto failure = write_failure(target, file))
        return {*failure, false, is_own};
    return finish(result, "copied", is_own);
}

WorkDone LibrarySession::add(const DirectoryPath& path, const std::vector<std::string>& files,
                             const StepsDone& steps)
{
    if (const auto reason = not_writable())
        return {*reason, false, false};
    const TransferResult result = add_files(*database_, path, files, steps);
    if (const auto reason = commit())
        return {*reason, false, true};
    return finish(result, "added", false);
}

WorkDone LibrarySession::finish(const TransferResult& result, const char* verb, bool list_again)
{
    return {transfer_text(result, verb), result.refused.empty() && result.renamed.empty(),
            list_again};
}

WorkDone LibrarySession::pack(const StepsDone& steps)
{
    if (const auto reason = not_writable())
        return {*reason, false, false};
    const std::uintmax_t before = bytes_of(file_);
    constexpr std::uint64_t kStepBytes = 1024;
    const bool is_packed = empty_deleted(*database_, steps) &&
                           database_->pack([&steps](std::uint64_t done, std::uint64_t all) {
                               return steps(static_cast<std::size_t>(done / kStepBytes),
                                            static_cast<std::size_t>(all / kStepBytes));
                           });
    if (const auto reason = commit())
        return {*reason, false, false};
    if (!is_packed)
        return {"It was stopped; the library is whole.", false, false};
    return {"Packed: " + with_thousands(static_cast<std::size_t>(before)) + " bytes before, " +
                with_thousands(static_cast<std::size_t>(bytes_of(file_))) + " now.",
            true, false};
}

FiltersListed LibrarySession::filters() const
{
    return {database_ != nullptr ? saved_filters(*database_) : std::vector<SavedFilter>()};
}

std::optional<std::string> LibrarySession::save(const SavedFilter& filter)
{
    if (auto reason = not_writable())
        return reason;
    if (filter.name.empty())
        return "A filter must have a name.";
    save_filter(*database_, filter);
    return commit();
}

std::optional<std::string> LibrarySession::remove_saved(const std::string& filter)
{
    if (auto reason = not_writable())
        return reason;
    remove_filter(*database_, filter);
    return commit();
}

std::optional<std::string> LibrarySession::not_writable() const
{
    if (database_ == nullptr)
        return "No library is open.";
    if (!database_->is_writable())
        return file_ + ": it is open for reading only.";
    return std::nullopt;
}

std::optional<std::string> LibrarySession::commit()
{
    database_->flush();
    return write_failure(*database_, file_);
}

}  // namespace editor
