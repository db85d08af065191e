#include "scene_editor/core/LibrarySession.h"

#include "foundation/GException.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "store/GResourceIterators.h"
#include "store/ResourceFileServer.h"

#include <algorithm>

namespace editor {

namespace {

GString text_of(const std::string& text)
{
    return GString(std::string_view(text));
}

GResourcePath resource_path(const DirectoryPath& path)
{
    GResourcePath result;
    for (const std::string& level : path)
        result += text_of(level);
    return result;
}

GResourceFullName mediator_name(const DirectoryPath& path, const std::string& name)
{
    return {resource_path(path), text_of(name), ObjectDatabase::MediatorResourceType};
}

std::string quoted(std::string_view name)
{
    return "\"" + std::string(name) + "\"";
}

// The reason with the file's name in it.
std::string open_reason(const std::string& file, const ResourceFile& library)
{
    const std::string_view reason = library.open_error().view();
    if (reason.find(file) != std::string_view::npos)
        return std::string(reason);
    return file + ": " + (reason.empty() ? "it can't be opened." : std::string(reason));
}

// `picture` in the size that a square of `size_px` has room for; null keeps the picture.
std::unique_ptr<PixelMap> shrunk(const PixelMap& picture, int size_px)
{
    const long width = picture.get_width();
    const long height = picture.get_height();
    if (width <= size_px && height <= size_px)
        return nullptr;
    const long longer = std::max(width, height);
    return std::unique_ptr<PixelMap>(
        PixelMapTools::Resize(picture, std::max(1L, width * size_px / longer),
                              std::max(1L, height * size_px / longer), true));
}

const char* why_no_object(const ODB_Mediator& mediator)
{
    return mediator.get_object_class_identifier() == nullptr
               ? "Its class is not known here: a module is missing."
               : "Its content is missing or damaged.";
}

std::string size_text(const PixelMap& picture)
{
    return std::to_string(picture.get_width()) + " \xC3\x97 " +
           std::to_string(picture.get_height()) + " pixels";
}

}  // namespace

PreviewLoaded draw_preview(PreviewRead read, int size_px)
{
    if (PixelMap* const drawn = GIconMaker::Make(*read.object, size_px))
        read.preview.picture.reset(drawn);
    return std::move(read.preview);
}

LibrarySession::LibrarySession() = default;
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
    file_ = file;
    return opened;
}

void LibrarySession::close()
{
    names_.clear();
    first_rows_ = false;
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

void LibrarySession::begin_listing(ListingId listing, const DirectoryPath& path)
{
    listing_ = listing;
    listed_path_ = path;
    names_.clear();
    first_rows_ = true;
    if (database_ == nullptr)
        return;
    const GResourcePath here = resource_path(path);
    for (GResourceSubDirectoryIterator it(*database_, here); it.index >= 0; --it)
        names_.push_back({std::string(it.element().view()), RowKind::Directory});
    const GResourceFullName mediators = mediator_name(path, {});
    for (GResourceIterator it(*database_, mediators); it.index >= 0; --it)
        names_.push_back({std::string(it.element().view()), RowKind::Entry});
    // Backwards, so that rows are taken off the end.
    std::sort(names_.begin(), names_.end(), [](const ListedName& a, const ListedName& b) {
        return a.kind != b.kind ? a.kind > b.kind : name_before(b.name, a.name);
    });
}

RowsListed LibrarySession::next_rows(std::size_t count)
{
    RowsListed listed;
    listed.listing = listing_;
    first_rows_ = false;
    const GResourcePath here = resource_path(listed_path_);
    for (; count > 0 && !names_.empty(); --count, names_.pop_back()) {
        const ListedName& row = names_.back();
        const ODB_Mediator* const mediator =
            row.kind == RowKind::Entry ? database_->get_mediator(here, text_of(row.name)) : nullptr;
        const std::string_view class_name =
            mediator != nullptr ? mediator->get_object_class_name().view() : std::string_view();
        listed.rows.add(row.name, class_name, row.kind);
    }
    listed.is_last = names_.empty();
    if (listed.is_last)
        listed.damage = new_damage();
    return listed;
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

std::unique_ptr<PixelMap> LibrarySession::load_icon(const DirectoryPath& path,
                                                    const std::string& name, int size_px) const
{
    if (database_ == nullptr)
        return nullptr;
    ODB_Mediator* const mediator = database_->get_mediator(mediator_name(path, name));
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
    ODB_Mediator* const mediator =
        database_ != nullptr ? database_->get_mediator(mediator_name(path, name)) : nullptr;
    if (mediator == nullptr) {
        preview.caption = "The entry is not there any more.";
        return read;
    }
    preview.class_name = mediator->get_object_class_name().view();
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
    if (read.object == nullptr)
        preview.caption = why_no_object(*mediator);
    return read;
}

ObjectLoaded LibrarySession::load_object(const DirectoryPath& path, const std::string& name) const
{
    ObjectLoaded loaded{name, nullptr, {}};
    ODB_Mediator* const mediator =
        database_ != nullptr ? database_->get_mediator(mediator_name(path, name)) : nullptr;
    if (mediator == nullptr) {
        loaded.reason = "The entry " + quoted(name) + " is not there any more.";
        return loaded;
    }
    loaded.object.reset(mediator->get_object());
    if (loaded.object == nullptr)
        loaded.reason = "The entry " + quoted(name) + ": " + why_no_object(*mediator);
    return loaded;
}

std::optional<std::string> LibrarySession::rename(const DirectoryPath& path,
                                                  const std::string& from, const std::string& to)
{
    if (auto reason = not_writable())
        return reason;
    if (to.empty())
        return "An entry must have a name.";
    const GResourcePath here = resource_path(path);
    if (!database_->object_exists(here, text_of(from)))
        return "The entry " + quoted(from) + " is not there any more.";
    if (database_->object_exists(here, text_of(to)))
        return "There is an entry " + quoted(to) + " in this directory already.";
    database_->rename_object(here, text_of(from), here, text_of(to));
    if (auto reason = commit())
        return reason;
    if (!database_->object_exists(here, text_of(to)))
        return "The entry " + quoted(from) + " can't have the name " + quoted(to) + ".";
    return std::nullopt;
}

std::optional<std::string> LibrarySession::remove(const DirectoryPath& path,
                                                  const std::vector<ListedEntry>& entries)
{
    if (auto reason = not_writable())
        return reason;
    {
        const ResourceFile::CommitScope whole(*database_);
        const GResourcePath here = resource_path(path);
        for (const ListedEntry& entry : entries)
            database_->remove_object(here, text_of(entry.name));
    }
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
    if (database_->server != nullptr && database_->server->error() == 0)
        return std::nullopt;
    const std::string why(database_->server != nullptr ? database_->server->error_text().view()
                                                       : std::string_view("it is not open"));
    return file_ + ": it can't be written any more: " + why +
           " What was committed before is whole.";
}

}  // namespace editor
