// odb add: files become objects.
#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/OwnedObject.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ExternalObject.h"
#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "platform/FileDevice.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"
#include "tools/odb/SourceWalk.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <new>

namespace odb {

namespace {

constexpr int kIconSize_px = 96;
constexpr const char* kNoFormat = "no registered format reads it";

// Reads the object; null with the reason.
zmr::OwnedObject<> read_source(const std::string& file, std::string& reason)
{
    // Looked at first, because a format only says that it does not know the file.
    zmr::FileError error;
    const auto device = zmr::FileSystemDevice::Real().open(file, zmr::FileAccess::Read,
                                                           zmr::FileCreate::OpenExisting,
                                                           zmr::FileShare::ReadWrite, error);
    std::uint64_t size = 0;
    if (device != nullptr)
        error = device->length(size);
    if (error) {
        reason = error.text();
        return nullptr;
    }
    if (size == 0) {
        reason = "it is empty";
        return nullptr;
    }
    try {
        const GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
        zmr::OwnedObject<> object(format == nullptr ? nullptr : format->read_object(file.c_str()));
        if (object == nullptr)
            reason = kNoFormat;
        return object;
    } catch (const GException& damage) {
        reason = damage.what();
    } catch (const std::bad_alloc&) {
        reason = "there is not enough memory to read it";
    }
    return nullptr;
}

std::unique_ptr<PixelMap> make_icon(const GStreamable& object)
{
    try {
        return std::unique_ptr<PixelMap>(GIconMaker::Make(object, kIconSize_px));
    } catch (const GException&) {
        return nullptr;  // the object is worth keeping without one
    }
}

class Adding {
public:
    /// `external`: each object gets a file of its own beside the library.
    Adding(ObjectDatabase& database, bool external, Style style)
        : database_(database), external_(external), style_(style), progress_("adding")
    {
    }

    // False when the walk is to end.
    bool add(const SourceFile& source)
    {
        if (terminal::interrupted())
            return false;
        progress_.show(fmt::format("{} {}", added_ + skipped_ + 1, source.file));
        std::string reason;
        const zmr::OwnedObject<> object = read_source(source.file, reason);
        if (object == nullptr) {
            skip(source.file, reason);
            return true;
        }
        const EntryName entry{source.into, GString(std::string_view(source.name))};
        const bool stored = store(*object, entry);
        unload_entry(database_, entry);
        if (writing_failed(database_))
            return false;
        if (stored)
            ++added_;
        else
            skip(source.file, "the library can't have an entry of that name");
        return true;
    }

    void skip(const std::string& source, const std::string& reason)
    {
        ++skipped_;
        if (style_ == Style::Text) {
            complain(fmt::format("{}: skipped: {}", source, reason));
            return;
        }
        if (skipped_ == 1)
            print("{\"skipped\":");
        list_.add({{"source", source}, {"reason", reason}});
    }

    // The numbers, behind the skipped sources that were printed as they came. After a failure to
    // write it is not known how many of the added are kept.
    void report(bool written)
    {
        if (style_ == Style::Text) {
            if (written)
                print(fmt::format("{} added, {} skipped\n", added_, skipped_));
            return;
        }
        if (skipped_ == 0)
            print("{\"skipped\":");
        list_.close(fmt::format(",\"added\":{}}}", written ? std::to_string(added_) : "null"));
    }

    [[nodiscard]] std::uint64_t added() const { return added_; }
    [[nodiscard]] std::uint64_t skipped() const { return skipped_; }

private:
    // One commit: the object with its icon, or neither. An object without an icon must not show the
    // one of the object that it replaces.
    bool store(const GStreamable& object, const EntryName& entry)
    {
        std::unique_ptr<PixelMap> icon = make_icon(object);
        const ResourceFile::CommitScope scope(database_);
        constexpr const char* kMadeUpName = nullptr;
        database_.append_object(&object, entry.path, entry.name,
                                external_ ? new ODB_ExternalObject(kMadeUpName) : nullptr);
        ODB_Mediator* const mediator = database_.get_mediator(entry.path, entry.name);
        if (mediator == nullptr ||
            !database_.exist(entry.of_type(ObjectDatabase::MediatorResourceType)))
            return false;
        if (icon != nullptr)
            mediator->set_icon(icon.release());
        else
            database_.remove(entry.of_type(ObjectDatabase::ODB_IconResourceType));
        mediator->unload_icon();
        return true;
    }

    ObjectDatabase& database_;
    bool external_;
    Style style_;
    Progress progress_;
    JsonArrayPrinter list_;
    std::uint64_t added_ = 0;
    std::uint64_t skipped_ = 0;
};

}  // namespace

ExitCode add(const AddArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_write_or_complain(arguments.file, WhenMissing::Make);
    if (!library)
        return library.code;

    ExitCode code = ExitCode::Done;
    {
        Adding adding(*library.database, arguments.external, style);
        SourceVisitor visitor;
        visitor.file = [&adding](const SourceFile& source) { return adding.add(source); };
        visitor.skipped = [&adding](const std::string& source, const std::string& reason) {
            adding.skip(source, reason);
        };
        walk_sources(arguments.sources, parse_directory(arguments.into),
                     arguments.recursive ? Depth::All : Depth::This, visitor);
        library.database->flush();
        adding.report(!writing_failed(*library.database));
        if (adding.skipped() > 0)
            code = ExitCode::Refused;
        if (terminal::interrupted()) {
            complain(fmt::format("{}: interrupted; the {} added are kept", arguments.file,
                                 adding.added()));
            code = ExitCode::Refused;
        }
    }
    return finish_writing(*library.database, arguments.file, code);
}

}  // namespace odb
