#include "scene_editor/core/LibraryTransfer.h"

#include "odb/ODB_Mediator.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ObjectDatabase.h"
#include "odb/ObjectImport.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/core/CountsText.h"
#include "scene_editor/core/LibraryPaths.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFileServer.h"

namespace editor {

namespace {

constexpr std::size_t kMostToldOf = 8;

// A reference whose target lies in its own library, as one from another library.
void copy_reference(ObjectDatabase& source, const GResourceFullName& from,
                    const ODB_ReferenceToObject& reference, ObjectDatabase& target,
                    const GResourceFullName& to)
{
    const ResourceFile::CommitScope whole(target);
    target.append_object(
        nullptr, to, new ODB_ReferenceToObject(source, reference.get_referenced_object_resname()));
    for (GResourceTypeIterator type(source, from.path()); type.index >= 0; --type) {
        if (ObjectDatabase::IsMediatorType(type.element()))
            continue;
        const GResourceFullName own(from.path(), from.name, type.element());
        target.copy_from({to.path(), to.name, type.element()}, source, own);
    }
}

void copy_entry(ObjectDatabase& source, const GResourceFullName& from, ObjectDatabase& target,
                const GResourceFullName& to)
{
    const auto* const reference = zmr::class_cast<ODB_ReferenceToObject>(source.get_mediator(from));
    const bool is_within = reference != nullptr && reference->get_referenced_DB_filename().compare(
                                                       source.get_filename().text) == 0;
    if (is_within && source.server != target.server)
        copy_reference(source, from, *reference, target, to);
    else
        source.copy_object_to(from, target, to);
}

// Tells listeners of a new entry; false when it is not there.
bool tell_of(ObjectDatabase& library, const GResourceFullName& name)
{
    ODB_Mediator* const mediator =
        library.object_exists(name) ? library.get_mediator(name) : nullptr;
    if (mediator == nullptr)
        return false;
    mediator->unload_icon();
    mediator->modified();
    return true;
}

bool has_failed(const ObjectDatabase& library)
{
    return library.server == nullptr || library.server->error() != 0;
}

}  // namespace

TransferResult copy_entries(ObjectDatabase& source, const DirectoryPath& from,
                            const std::vector<ListedEntry>& entries, ObjectDatabase& target,
                            const DirectoryPath& to, const StepsDone& steps)
{
    TransferResult result;
    std::size_t at = 0;
    for (const ListedEntry& entry : entries) {
        if (has_failed(target) || !steps(at++, entries.size()))
            break;
        const GResourceFullName from_name = mediator_name(from, entry.name);
        if (source.get_mediator(from_name) == nullptr) {
            result.refused.push_back(in_quotes(entry.name) + " is not there any more.");
            continue;
        }
        const std::string name = free_name(target, resource_path(to), entry.name);
        const GResourceFullName to_name = mediator_name(to, name);
        copy_entry(source, from_name, target, to_name);
        if (!tell_of(target, to_name)) {
            result.refused.push_back(in_quotes(entry.name) + " can't be copied.");
            continue;
        }
        ++result.done;
        if (name != entry.name)
            result.renamed.push_back(name);
    }
    return result;
}

TransferResult add_files(ObjectDatabase& library, const DirectoryPath& to,
                         const std::vector<std::string>& files, const StepsDone& steps)
{
    TransferResult result;
    std::size_t at = 0;
    for (const std::string& file : files) {
        if (has_failed(library) || !steps(at++, files.size()))
            break;
        const zmr::ImportedObject read = zmr::import_object(file);
        if (read.object == nullptr) {
            result.refused.push_back(file + ": " + read.reason);
            continue;
        }
        const std::string own(file_part(file));
        const std::string name = free_name(library, resource_path(to), own);
        const GResourceFullName full_name = mediator_name(to, name);
        if (!zmr::append_with_icon(library, *read.object, full_name) ||
            !tell_of(library, full_name)) {
            result.refused.push_back(file + ": the library can't have an entry of that name");
            continue;
        }
        ++result.done;
        if (name != own)
            result.renamed.push_back(name);
    }
    return result;
}

std::string transfer_text(const TransferResult& result, const char* verb)
{
    std::string text = with_thousands(result.done) + (result.done == 1 ? " entry " : " entries ") +
                       std::string(verb) + ".";
    const auto add = [&text](const std::vector<std::string>& lines, const char* heading,
                             const char* before) {
        if (lines.empty())
            return;
        text += heading;
        for (std::size_t i = 0; i < lines.size() && i < kMostToldOf; ++i)
            text += before + lines[i];
        if (lines.size() > kMostToldOf)
            text += before + std::string("and ") + with_thousands(lines.size() - kMostToldOf) +
                    " more.";
    };
    add(result.renamed, "\n\nUnder names of their own, since theirs are in use:", "\n  ");
    add(result.refused, "\n\nNot taken:", "\n  ");
    return text;
}

}  // namespace editor
