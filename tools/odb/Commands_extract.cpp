// odb extract: objects become files, never outside the directory told, whatever their names hold.
#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/OwnedObject.h"
#include "graphics/PixelMap.h"
#include "graphics/PixelMapTools.h"
#include "odb/ODB_Mediator.h"
#include "odb/ObjectDatabase.h"
#include "store/GObjectPlace.h"
#include "tools/odb/Browse.h"
#include "tools/odb/Commands.h"
#include "tools/odb/FileNames.h"
#include "tools/odb/FilePaths.h"
#include "tools/odb/OpenLibrary.h"
#include "tools/odb/Terminal.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <new>
#include <system_error>

namespace odb {

namespace {

namespace fs = std::filesystem;

/// Why an object was not written.
struct NotWritten {
    std::string reason;
    ExitCode code = ExitCode::Refused;
};

std::string with_extension(const std::string& name, const char* extension)
{
    return has_extension(name, extension) ? name : name + "." + extension;
}

// A name of one level that a file here can have.
std::string file_name_of(const GString& name)
{
    std::string result = safe_file_name(name.view());
    if (to_path(result))
        return result;
    // No UTF-8, where the system's names are Unicode.
    std::replace_if(
        result.begin(), result.end(), [](char c) { return (c & 0x80) != 0; }, '_');
    return result;
}

class Extracting {
public:
    Extracting(ObjectDatabase& database, const ExtractArguments& arguments, fs::path root,
               Style style)
        : database_(database),
          arguments_(arguments),
          root_(std::move(root)),
          style_(style),
          progress_("extracting")
    {
        if (style_ == Style::Json)
            print("{\"extracted\":");
    }

    // An object by its name alone, or a directory with all below it under its name.
    void extract(const std::string& text)
    {
        const EntryName entry = parse_entry(text);
        if (!entry.name.is_empty() && database_.object_exists(entry.path, entry.name)) {
            extract_entry(entry, root_);
            return;
        }
        const GResourcePath directory = entry.as_directory();
        if (!directory_exists(database_, directory)) {
            fail(text, {"there is no such object or directory"});
            return;
        }
        const int above = entry.name.is_empty() ? 0 : entry.path.count;
        walk_directories(database_, directory, Depth::All,
                         [&](const GResourcePath& path) { return extract_directory(path, above); });
    }

    ExitCode finish()
    {
        if (style_ == Style::Json)
            list_.close("}");
        else
            print(fmt::format("{} written, {} not\n", written_, failed_));
        return code_;
    }

private:
    bool extract_directory(const GResourcePath& path, int above)
    {
        fs::path folder = root_;
        NotWritten problem;
        for (int level = above; level < path.count; ++level) {
            if (!enter(folder, file_name_of(path[level]), problem)) {
                fail(directory_text(path), problem);
                return true;
            }
        }
        for (const GString& name : object_names(database_, path)) {
            if (terminal::interrupted())
                return false;
            extract_entry({path, name}, folder);
        }
        return true;
    }

    // Goes to a folder below, which is made when it is missing; not through a link that leads out.
    static bool enter(fs::path& folder, const std::string& name, NotWritten& problem)
    {
        const std::optional<fs::path> level = to_path(name);
        if (!level) {
            problem.reason = "it has a name that no file can have";
            return false;
        }
        folder /= *level;
        std::error_code error;
        fs::create_directory(folder, error);
        const fs::file_status status = fs::symlink_status(folder, error);
        if (fs::is_directory(status))
            return true;
        problem.reason = fmt::format("{} can't be made a directory", to_name(folder));
        return false;
    }

    void extract_entry(const EntryName& entry, const fs::path& folder)
    {
        progress_.show(entry.text());
        NotWritten problem;
        std::string file;
        try {
            file = write(entry, folder, problem);
        } catch (const GException& error) {
            problem.reason = error.what();
        } catch (const std::bad_alloc&) {
            problem.reason = "there is not enough memory";
        }
        unload_entry(database_, entry);
        if (file.empty()) {
            fail(entry.text(), problem);
            return;
        }
        ++written_;
        if (style_ == Style::Json)
            list_.add({{"path", entry.text()}, {"file", file}});
    }

    // The name of the written file; empty with the reason.
    std::string write(const EntryName& entry, const fs::path& folder, NotWritten& problem)
    {
        ODB_Mediator* const mediator = database_.get_mediator(entry.path, entry.name);
        const zmr::OwnedObject<> object(mediator == nullptr ? nullptr : mediator->get_object());
        if (object == nullptr) {
            problem = reason_of_missing(mediator);
            return {};
        }
        const std::string name = file_name_of(entry.name);
        if (const auto* picture = zmr::class_cast<PixelMap>(object.get()))
            return write_picture(*picture, folder, with_extension(name, "png"), problem);
        if (std::string file = write_by_format(*object, folder, name, problem);
            !file.empty() || !problem.reason.empty())
            return file;
        return write_stream(*object, folder, with_extension(name, "lob"), problem);
    }

    NotWritten reason_of_missing(const ODB_Mediator* mediator) const
    {
        if (mediator == nullptr)
            return {"its entry can't be read", ExitCode::Damaged};
        if (mediator->get_object_class_identifier() == nullptr)
            return {
                fmt::format("its class {} is not known here; --module names the module that has it",
                            class_of(*mediator))};
        const ResourceFile::Damage* const damage = database_.last_damage();
        return {damage == nullptr ? "its content is missing" : "damaged: " + damage->reason,
                ExitCode::Damaged};
    }

    // The full name of a file that may be written; empty with the reason.
    std::string free_file(const fs::path& folder, const std::string& name,
                          NotWritten& problem) const
    {
        const std::optional<fs::path> last = to_path(name);
        if (!last) {
            problem.reason = "it has a name that no file can have";
            return {};
        }
        const fs::path path = folder / *last;
        std::error_code error;
        const fs::file_status status = fs::symlink_status(path, error);
        if (fs::exists(status) && (!arguments_.overwrite || !fs::is_regular_file(status))) {
            problem.reason = fmt::format(
                "{} exists already{}", to_name(path),
                fs::is_regular_file(status) ? "; --overwrite replaces it" : " and is no file");
            return {};
        }
        return to_name(path);
    }

    std::string write_picture(const PixelMap& picture, const fs::path& folder,
                              const std::string& name, NotWritten& problem) const
    {
        std::string file = free_file(folder, name, problem);
        if (file.empty())
            return {};
        if (PixelMapTools::SaveToFile(&picture, file.c_str(), true))
            return file;
        problem.reason = fmt::format("{} can't be written", file);
        return {};
    }

    // Formats go by the file's name, so that the new file beside the old one ends in it too.
    std::string write_by_format(GStreamable& object, const fs::path& folder,
                                const std::string& name, NotWritten& problem) const
    {
        const std::string temporary = free_file(folder, "odb~new~" + name, problem);
        if (temporary.empty())
            return {};
        for (const GObjectFileFormat* format : GObjectFileFormat::All()) {
            if (format->write_object(temporary.c_str(), &object) == 0)
                continue;
            std::string file = free_file(folder, name, problem);
            std::error_code error;
            if (!file.empty())
                fs::rename(*to_path(temporary), *to_path(file), error);
            if (!file.empty() && !error)
                return file;
            if (error)
                problem.reason = fmt::format("{}: {}", file, error.message());
            remove_file(temporary);
            return {};
        }
        remove_file(temporary);  // a format may have failed half-way
        return {};
    }

    std::string write_stream(GStreamable& object, const fs::path& folder, const std::string& name,
                             NotWritten& problem) const
    {
        std::string file = free_file(folder, name, problem);
        if (file.empty())
            return {};
        if (GObjectPlace(file.c_str(), false, nullptr).put(&object, false))
            return file;
        problem.reason = fmt::format("{} can't be written", file);
        return {};
    }

    static void remove_file(const std::string& file)
    {
        std::error_code ignored;  // there may be none
        fs::remove(*to_path(file), ignored);
    }

    void fail(const std::string& name, const NotWritten& problem)
    {
        ++failed_;
        code_ = graver(code_, problem.code);
        complain(fmt::format("{}: \"{}\": {}", arguments_.file, name, problem.reason));
    }

    ObjectDatabase& database_;
    const ExtractArguments& arguments_;
    fs::path root_;
    Style style_;
    Progress progress_;
    JsonArrayPrinter list_;
    ExitCode code_ = ExitCode::Done;
    std::uint64_t written_ = 0;
    std::uint64_t failed_ = 0;
};

}  // namespace

ExitCode extract(const ExtractArguments& arguments, Style style)
{
    const OpenedLibrary library = open_to_read_or_complain(arguments.file);
    if (!library)
        return library.code;
    const std::optional<fs::path> root = to_path(arguments.to);
    std::error_code error;
    if (root)
        fs::create_directories(*root, error);
    std::error_code unknown;
    if (!root || !fs::is_directory(*root, unknown)) {
        const bool is_file = root && fs::exists(*root, unknown);
        const std::string reason = !root     ? "no directory can have that name"
                                   : is_file ? "a file of that name is there"
                                             : error.message();
        complain(fmt::format("{}: the directory can't be made: {}", arguments.to, reason));
        return ExitCode::Refused;
    }

    ExitCode code = ExitCode::Done;
    {
        Extracting extracting(*library.database, arguments, *root, style);
        for (const std::string& name : arguments.names) {
            if (!terminal::interrupted())
                extracting.extract(name);
        }
        code = extracting.finish();
    }
    if (terminal::interrupted()) {
        complain("interrupted; the files written so far are whole");
        code = graver(code, ExitCode::Refused);
    }
    return code;
}

}  // namespace odb
