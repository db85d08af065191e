#include "store/GObjectFilePlacement.h"

#include "foundation/FileSystem.h"
#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/fpstream.h"
#include "platform/FileDevice.h"

#include <string>

G_DEFINE_CLASS(GObjectFilePlacement, GObjectPlacement);

bool (*GObjectFilePlacement::s_AskFunction)(GFile& file) = nullptr;

namespace {

// The head of a file that holds one object as its stream; docs/object-file.md.
constexpr std::uint32_t kMagic = 0x4F524D5A;  // "ZMRO"
constexpr unsigned char kVersion = 1;

/// Reads the head. True when the file is of this kind; `class_name` receives the object's class.
bool read_head(ipstream& in, GString& class_name)
{
    if (in.readDWord() != kMagic || in.readByte() != kVersion)
        return false;
    in >> class_name;
    return true;
}

/// Writes the object to a file of its own. Throws on a failed device.
void write_file(const char* name, GStreamable& object)
{
    ofpstream out(name);
    if (!out.good())
        throw GStreamException("The file can't be made.");
    out.writeDWord(kMagic);
    out.writeByte(kVersion);
    out.writeString(object.getClassName());
    out.writePointer(&object);
    out.flush();
}

}  // namespace

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
        GStreamable* object = nullptr;
        if (const GObjectFileFormat* const format = format_of_file()) {
            object = format->read_object(filename_.text);
        } else {
            ifpstream in(filename_.text);
            GString class_name;
            if (in.good() && read_head(in, class_name))
                object = in.read_pointer<GStreamable>();
        }
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
        GString class_name;
        if (const GObjectFileFormat* const format = format_of_file()) {
            class_name = const_cast<GObjectFileFormat*>(format)->read_object_class_name(
                filename_.text);  // looks at the file only
        } else {
            ifpstream in(filename_.text);
            if (!in.good() || !read_head(in, class_name))
                return nullptr;
        }
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
    if (const GObjectFileFormat* const format = format_of_file()) {
        if (format->write_object(filename_.text, streamable) == 0)
            return false;
        return GObjectPlacement::put_object(object, shared);
    }
    GFile temporary = filename_ + ".~????????";
    if (!FileSystem::UniqueName(temporary, '?'))
        return false;
    zmr::FileSystemDevice& files = zmr::FileSystemDevice::Real();
    try {
        write_file(temporary.text, *streamable);
    } catch (const GException&) {
        static_cast<void>(files.remove(temporary.text));  // what is left of it is of no use
        return false;
    }
    if (files.rename(temporary.text, filename_.text)) {
        static_cast<void>(files.remove(temporary.text));
        return false;
    }
    return GObjectPlacement::put_object(object, shared);
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
    GObject* const object = reader.get_object(false);
    ok = object != nullptr && writer.put_object(object, false);
    GStreamable::Destroy(zmr::class_cast<GStreamable>(object));
    return true;
}

bool GObjectFilePlacement::remove_object()
{
    return !zmr::FileSystemDevice::Real().remove(filename_.text);
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
