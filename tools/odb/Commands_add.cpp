// odb add: files become objects.
#include "odb/ODB_ExternalObject.h"
#include "odb/ObjectDatabase.h"
#include "odb/ObjectImport.h"
#include "tools/odb/Commands.h"
#include "tools/odb/OpenLibrary.h"
#include "tools/odb/SourceWalk.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace odb {

namespace {

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
        const zmr::ImportedObject read = zmr::import_object(source.file);
        if (read.object == nullptr) {
            skip(source.file, read.reason);
            return true;
        }
        const EntryName entry{source.into, GString(std::string_view(source.name))};
        constexpr const char* kMadeUpName = nullptr;
        const bool is_stored = zmr::append_with_icon(
            database_, *read.object, entry.of_type(ObjectDatabase::MediatorResourceType),
            external_ ? new ODB_ExternalObject(kMadeUpName) : nullptr);
        unload_entry(database_, entry);
        if (writing_failed(database_))
            return false;
        if (is_stored)
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
