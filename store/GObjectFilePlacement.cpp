#include "store/GObjectFilePlacement.h"

#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "store/ObjectFile.h"

G_DEFINE_CLASS(GObjectFilePlacement, GObjectPlacement);

bool (*GObjectFilePlacement::s_AskFunction)(GFile& file) = nullptr;

GObjectFilePlacement::GObjectFilePlacement(const char* file, bool recognise,
                                           const GObjectFileFormat* format)
    : filename_(file), recognise_(recognise), format_(format)
{
}

void GObjectFilePlacement::read(ipstream& in)
{
    static_cast<void>(in.readByte());
    GObjectPlacement::read(in);
    GFile file;
    in >> file;
    recognise_ = in.readByte() != 0;
    filename_ = file;
}

void GObjectFilePlacement::write(opstream& out)
{
    out.writeByte(0);
    GObjectPlacement::write(out);
    out << filename_;
    out.writeByte(recognise_ ? 1 : 0);
}

GStreamable* GObjectFilePlacement::clone(bool)
{
    return new GObjectFilePlacement(*this);
}

bool GObjectFilePlacement::place_exists() const
{
    return filename_.exists() && !filename_.isDirectory();
}

void GObjectFilePlacement::change_not_exists()
{
    if (filename_.is_empty())
        return;
    filename_.redirect();
    if (filename_.exists() || s_AskFunction == nullptr)
        return;
    GFile asked = filename_;
    if (!s_AskFunction(asked))
        return;
    asked.expand();
    filename_ = asked;
}

const GObjectFileFormat* GObjectFilePlacement::format_of_file() const
{
    if (format_ != nullptr || !recognise_)
        return format_;
    return GObjectFileFormat::Find(filename_.text);
}

GObject* GObjectFilePlacement::get_object(bool shared)
{
    try {
        const GObjectFileFormat* const format = format_of_file();
        GStreamable* const object = format != nullptr ? format->read_object(filename_.text)
                                                      : zmr::read_object_file(filename_);
        if (shared)
            set_shared_object(object);
        return object;
    } catch (const GLibraryException&) {
        return nullptr;
    }
}

const GMetaClass* GObjectFilePlacement::get_object_class_id() const
{
    try {
        const GObjectFileFormat* const format = format_of_file();
        const GString class_name =
            format == nullptr ? zmr::object_file_class(filename_)
                              : const_cast<GObjectFileFormat*>(format)->read_object_class_name(
                                    filename_.text);  // looks at the file only
        return GMetaClass::FindByName(class_name.text);
    } catch (const GLibraryException&) {
        return nullptr;
    }
}

bool GObjectFilePlacement::put_object(GObject* object, bool shared)
{
    auto* const streamable = zmr::class_cast<GStreamable>(object);
    if (streamable == nullptr || filename_.is_empty())
        return false;
    const GObjectFileFormat* const format = format_of_file();
    const bool written = format == nullptr ? zmr::write_object_file(filename_, *streamable)
                                           : format->write_object(filename_.text, streamable) != 0;
    return written && GObjectPlacement::put_object(object, shared);
}

bool GObjectFilePlacement::copy_object_from_to(const GObjectPlacement& from,
                                               const GObjectPlacement& to, bool& ok)
{
    const auto* const source = zmr::class_cast<GObjectFilePlacement>(&from);
    const auto* const target = zmr::class_cast<GObjectFilePlacement>(&to);
    if (source == nullptr || target == nullptr)
        return false;
    auto& reader = const_cast<GObjectFilePlacement&>(*source);  // reading changes no placement
    auto& writer = const_cast<GObjectFilePlacement&>(*target);
    if (reader.format_of_file() == nullptr && writer.format_of_file() == nullptr) {
        ok = zmr::copy_object_file(reader.filename_, writer.filename_);
        return true;
    }
    GObject* const object = reader.get_object(false);
    ok = object != nullptr && writer.put_object(object, false);
    GStreamable::Destroy(zmr::class_cast<GStreamable>(object));
    return true;
}

bool GObjectFilePlacement::remove_object()
{
    return zmr::remove_file(filename_);
}

bool GObjectFilePlacement::compare_items(const GObjectPlacement& other) const
{
    const auto* const file = zmr::class_cast<GObjectFilePlacement>(&other);
    return file != nullptr && filename_.compare(file->filename_.text) == 0;
}

void GObjectFilePlacement::get_readable_form(GString& text) const
{
    text = filename_;
}
