// The open library: what it tells of single entries beside their objects.
#include "foundation/GStringCollection.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ODB_MovieAttribute.h"
#include "odb/ODB_PixelMapAttribute.h"
#include "odb/ODB_ReferenceToObject.h"
#include "odb/ODB_TextDescriptionAttribute.h"
#include "odb/ObjectDatabase.h"
#include "scene_editor/core/CommandLine.h"
#include "scene_editor/core/LibraryPaths.h"
#include "scene_editor/core/LibrarySession.h"
#include "scene_editor/core/ShrunkPicture.h"

#include <algorithm>

namespace editor {

namespace {

// Follows the references to the entry that holds the object; false when the way ends before.
bool has_host(const ODB_ReferenceToObject& reference)
{
    const ODB_ReferenceToObject* current = &reference;
    std::unique_ptr<ObjectDatabase> opened;  // holds `current` in memory
    for (int step = 0; step < ODB_ReferenceToObject::kMostSteps; ++step) {
        const GFile file = current->get_referenced_DB_filename();
        auto next = std::make_unique<ObjectDatabase>(file.text, GIO::OpenRead);
        const ODB_Mediator* const host =
            next->server != nullptr ? next->get_mediator(current->get_referenced_object_resname())
                                    : nullptr;
        if (host == nullptr)
            return false;
        current = zmr::class_cast<ODB_ReferenceToObject>(host);
        if (current == nullptr)
            return true;
        opened = std::move(next);
    }
    return false;
}

struct Told {
    Holding holding = Holding::Inside;
    std::string text;  // where the object is, when not in the library
};

Told tell_reference(const ODB_ReferenceToObject& reference)
{
    const GResourceFullName& target = reference.get_referenced_object_resname();
    const bool is_there = has_host(reference);
    std::string text = "Reference to " + path_text(target.path(), target.name.view());
    const GFile file = reference.get_referenced_DB_filename();
    const ObjectDatabase* const own = reference.get_DB();
    if (own != nullptr && file.compare(own->get_filename().text) != 0)
        text += " in " + std::string(file_part(file.view()));
    if (!is_there)
        text += ", which is not there";
    return {is_there ? Holding::Reference : Holding::Lost, text};
}

Told tell_external(const ODB_ExternalObject& external)
{
    const bool is_there = external.get_filename().exists();
    std::string text = "In the file " + std::string(external.relative_filename().view());
    if (!is_there)
        text += ", which is missing";
    return {is_there ? Holding::External : Holding::Lost, text};
}

Told tell_holding(const ODB_Mediator& mediator)
{
    if (const auto* const reference = zmr::class_cast<ODB_ReferenceToObject>(&mediator))
        return tell_reference(*reference);
    if (const auto* const external = zmr::class_cast<ODB_ExternalObject>(&mediator))
        return tell_external(*external);
    return {};
}

template <class Attribute>
zmr::OwnedObject<Attribute> attribute_of(ODB_Mediator& mediator)
{
    zmr::OwnedObject<> stored(mediator.get_attribute(&Attribute::metaclass_));
    auto* const attribute = zmr::class_cast<Attribute>(stored.get());
    if (attribute != nullptr)
        static_cast<void>(stored.release());
    return zmr::OwnedObject<Attribute>(attribute);
}

std::string description_of(ODB_Mediator& mediator)
{
    const auto description = attribute_of<ODB_TextDescriptionAttribute>(mediator);
    return description != nullptr ? std::string(description->get_text().view()) : std::string();
}

std::vector<std::string> pictures_of(ODB_Mediator& mediator)
{
    std::vector<std::string> names;
    const auto attribute = attribute_of<ODB_PixelMapAttribute>(mediator);
    if (attribute == nullptr)
        return names;
    GStringCollection found;
    attribute->get_names(found);
    for (long i = 0; i < found.count; ++i)
        names.emplace_back(found.at(i));
    std::sort(names.begin(), names.end(), name_before);
    return names;
}

std::string movie_of(ODB_Mediator& mediator)
{
    const auto attribute = attribute_of<ODB_MovieAttribute>(mediator);
    return attribute != nullptr ? std::string(attribute->get_movie_name(true).view())
                                : std::string();
}

}  // namespace

IconLoaded LibrarySession::load_row(const DirectoryPath& path, const std::string& name,
                                    int size_px) const
{
    IconLoaded row;
    row.icon = load_icon(path, name, size_px);
    if (ODB_Mediator* const mediator = mediator_of(path, name)) {
        row.holding = tell_holding(*mediator).holding;
        row.description = description_of(*mediator);
    }
    return row;
}

Holding LibrarySession::tell_facts(ODB_Mediator& mediator, PreviewLoaded& preview)
{
    const Told told = tell_holding(mediator);
    preview.class_name = mediator.get_object_class_name().view();
    preview.holding = told.text;
    preview.description = description_of(mediator);
    preview.pictures = pictures_of(mediator);
    preview.movie = movie_of(mediator);
    return told.holding;
}

PreviewLoaded LibrarySession::load_picture(const DirectoryPath& path, const std::string& name,
                                           const std::string& picture, int size_px) const
{
    PreviewLoaded preview;
    preview.path = path;
    preview.name = name;
    preview.picture_name = picture;
    ODB_Mediator* const mediator = mediator_of(path, name);
    if (mediator == nullptr) {
        preview.caption = "The entry is not there any more.";
        return preview;
    }
    tell_facts(*mediator, preview);
    const auto attribute = attribute_of<ODB_PixelMapAttribute>(*mediator);
    if (attribute != nullptr)
        preview.picture.reset(attribute->get_map(picture.c_str()));
    if (preview.picture == nullptr) {
        preview.caption = "The picture " + in_quotes(picture) + " is not there any more.";
        return preview;
    }
    preview.smaller = shrunk(*preview.picture, size_px);
    preview.caption = size_text(*preview.picture);
    return preview;
}

}  // namespace editor
