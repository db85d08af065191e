#include "scene_editor/core/LibrarySession.h"

#include "foundation/GException.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_ContentsFilter.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ObjectDatabase.h"
#include "scene_editor/core/LibraryPaths.h"
#include "scene_editor/core/ShrunkPicture.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFileServer.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace editor {

namespace {

// The reason with the file's name in it.
std::string open_reason(const std::string& file, const ResourceFile& library)
{
    const std::string_view reason = library.open_error().view();
    if (reason.find(file) != std::string_view::npos)
        return std::string(reason);
    return file + ": " + (reason.empty() ? "it can't be opened." : std::string(reason));
}

// What the mediator alone tells.
Holding holding_of(const ODB_Mediator& mediator)
{
    if (mediator.is_reference())
        return Holding::Reference;
    return zmr::class_cast<ODB_ExternalObject>(&mediator) != nullptr ? Holding::External
                                                                     : Holding::Inside;
}

const char* why_no_object(const ODB_Mediator& mediator)
{
    return mediator.get_object_class_identifier() == nullptr
               ? "Its class is not known here: a module is missing."
               : "Its content is missing or damaged.";
}

// The directory of what was deleted is no directory of the user's.
bool is_hidden(const DirectoryPath& parent, const GString& name)
{
    return parent.empty() && name.view() == kDeletedDirectory;
}

}  // namespace

PreviewLoaded draw_preview(PreviewRead read, int size_px)
{
    if (PixelMap* const drawn = GIconMaker::Make(*read.object, size_px))
        read.preview.picture.reset(drawn);
    return std::move(read.preview);
}

LibrarySession::LibrarySession(LibraryListener::EntryModified entry_modified,
                               LibraryListener::DirectoryRenamed directory_renamed)
    : entry_modified_(std::move(entry_modified)), directory_renamed_(std::move(directory_renamed))
{
}

LibrarySession::~LibrarySession() = default;

LibraryResult LibrarySession::open(const std::string& file)
{
    close();
    {
        // First as any resource file: opening one of another kind as a library would make it one.
        const ResourceFile probe(file.c_str(), GIO::OpenRead);
        if (probe.server == nullptr)
            return LibraryRefused{file, open_reason(file, probe)};
        const GString kind = probe.get_type();
        if (!kind.is_empty() && !ObjectDatabase::IsMediatorType(kind))
            return LibraryRefused{file, file + ": it is a resource file of another kind."};
    }
    LibraryOpened opened{file, true, {}};
    auto database = std::make_unique<ObjectDatabase>(file.c_str(), GIO::OpenReadWrite);
    if (database->server == nullptr) {
        opened.is_writable = false;
        opened.note = open_reason(file, *database);
        database = std::make_unique<ObjectDatabase>(file.c_str(), GIO::OpenRead);
        if (database->server == nullptr)
            return LibraryRefused{file, open_reason(file, *database)};
    }
    database_ = std::move(database);
    known_changes_ = database_->change_count();
    file_ = file;
    if (entry_modified_ && directory_renamed_) {
        listener_ = std::make_unique<LibraryListener>(*database_->server, entry_modified_,
                                                      directory_renamed_);
    }
    return opened;
}

void LibrarySession::close()
{
    names_.clear();
    known_ = {};
    listing_ = 0;
    listed_path_.clear();
    first_rows_ = false;
    filter_.reset();
    listener_.reset();
    database_.reset();
    file_.clear();
    told_damage_.clear();
}

DirectoriesListed LibrarySession::list_directories(const DirectoryPath& path) const
{
    DirectoriesListed listed{path, {}};
    if (database_ == nullptr)
        return listed;
    const GResourcePath here = resource_path(path);
    for (GResourceSubDirectoryIterator it(*database_, here); it.index >= 0; --it) {
        if (is_hidden(path, it.element()))
            continue;
        GResourcePath below = here;
        below += it.element();
        const GResourceSubDirectoryIterator deeper(*database_, below);
        listed.directories.push_back({std::string(it.element().view()), deeper.index >= 0});
    }
    std::sort(
        listed.directories.begin(), listed.directories.end(),
        [](const Subdirectory& a, const Subdirectory& b) { return name_before(a.name, b.name); });
    return listed;
}

void LibrarySession::begin_listing(ListingId listing, const DirectoryPath& path,
                                   const EntryFilter& filter)
{
    listing_ = listing;
    filter_ = filter.is_empty() ? nullptr : make_filter(filter);
    listed_path_ = path;
    names_.clear();
    first_rows_ = true;
    if (database_ == nullptr)
        return;
    known_changes_ = database_->change_count();
    known_ = DirectoryNames(*database_, path);
    names_.resize(known_.size());
    std::iota(names_.begin(), names_.end(), std::size_t{0});
    // Backwards, so that rows are taken off the end.
    std::sort(names_.begin(), names_.end(), [this](std::size_t a, std::size_t b) {
        return known_.kind(a) != known_.kind(b) ? known_.kind(a) > known_.kind(b)
                                                : name_before(known_.name(b), known_.name(a));
    });
}

RowsListed LibrarySession::next_rows(std::size_t count)
{
    RowsListed listed;
    listed.listing = listing_;
    first_rows_ = false;
    const GResourcePath here = resource_path(listed_path_);
    for (; count > 0 && !names_.empty(); --count, names_.pop_back()) {
        const std::string_view name = known_.name(names_.back());
        const RowKind kind = known_.kind(names_.back());
        const ODB_Mediator* const mediator =
            kind == RowKind::Entry ? database_->get_mediator(here, GString(name)) : nullptr;
        if (mediator == nullptr) {
            if (filter_ == nullptr || kind == RowKind::Directory)
                listed.rows.add(name, {}, kind);
            continue;
        }
        if (filter_ == nullptr || filter_->accept(*mediator) != 0) {
            listed.rows.add(name, mediator->get_object_class_name().view(), kind,
                            holding_of(*mediator));
        }
    }
    listed.is_last = names_.empty();
    if (listed.is_last)
        listed.damage = new_damage();
    return listed;
}

std::optional<NamesChanged> LibrarySession::look_again()
{
    if (database_ == nullptr || is_listing())
        return std::nullopt;
    const std::uint64_t changes = database_->change_count();
    if (std::exchange(known_changes_, changes) == changes)
        return std::nullopt;
    DirectoryNames now(*database_, listed_path_);
    DirectoryNames::Difference difference = now.since(known_);
    known_ = std::move(now);
    if (difference.is_empty())
        return std::nullopt;
    return NamesChanged{listing_, std::move(difference.gone), std::move(difference.come),
                        difference.has_other_directories};
}

std::string LibrarySession::new_damage()
{
    const ResourceFile::Damage* const damage =
        database_ != nullptr ? database_->last_damage() : nullptr;
    if (damage == nullptr || damage->reason == told_damage_)
        return {};
    told_damage_ = damage->reason;
    return file_ + ": a part of it is damaged: " + damage->reason;
}

ODB_Mediator* LibrarySession::mediator_of(const DirectoryPath& path, const std::string& name) const
{
    return database_ != nullptr ? database_->get_mediator(mediator_name(path, name)) : nullptr;
}

std::optional<EntryChanged> LibrarySession::look_at(const DirectoryPath& path,
                                                    const std::string& name) const
{
    const ODB_Mediator* const mediator = mediator_of(path, name);
    if (mediator == nullptr)
        return std::nullopt;
    return EntryChanged{path, name, std::string(mediator->get_object_class_name().view()),
                        holding_of(*mediator)};
}

std::unique_ptr<PixelMap> LibrarySession::load_icon(const DirectoryPath& path,
                                                    const std::string& name, int size_px) const
{
    ODB_Mediator* const mediator = mediator_of(path, name);
    const PixelMap* const icon = mediator != nullptr ? mediator->get_icon() : nullptr;
    if (icon == nullptr)
        return nullptr;
    std::unique_ptr<PixelMap> fitted = shrunk(*icon, size_px);
    if (fitted == nullptr)
        fitted = std::make_unique<PixelMap>(*icon);
    mediator->unload_icon();
    return fitted;
}

PreviewRead LibrarySession::load_preview(const DirectoryPath& path, const std::string& name,
                                         int size_px) const
{
    PreviewRead read;
    PreviewLoaded& preview = read.preview;
    preview.path = path;
    preview.name = name;
    ODB_Mediator* const mediator = mediator_of(path, name);
    if (mediator == nullptr) {
        preview.caption = "The entry is not there any more.";
        return read;
    }
    const Holding holding = tell_facts(*mediator, preview);
    read.object.reset(mediator->get_object());
    if (const auto* const picture = dynamic_cast<const PixelMap*>(read.object.get())) {
        preview.picture = std::make_unique<PixelMap>(*picture);
        preview.smaller = shrunk(*picture, size_px);
        preview.caption = size_text(*picture);
        read.object.reset();
        return read;
    }
    if (const PixelMap* const icon = mediator->get_icon()) {
        preview.picture = std::make_unique<PixelMap>(*icon);
        mediator->unload_icon();
    }
    if (read.object == nullptr && holding != Holding::Lost)
        preview.caption = why_no_object(*mediator);
    return read;
}

ObjectLoaded LibrarySession::load_object(const DirectoryPath& path, const std::string& name) const
{
    ObjectLoaded loaded{name, nullptr, {}};
    ODB_Mediator* const mediator = mediator_of(path, name);
    if (mediator == nullptr) {
        loaded.reason = "The entry " + in_quotes(name) + " is not there any more.";
        return loaded;
    }
    loaded.object.reset(mediator->get_object());
    if (loaded.object == nullptr)
        loaded.reason = "The entry " + in_quotes(name) + ": " + why_no_object(*mediator);
    return loaded;
}

}  // namespace editor
