#include "tools/odb/SourceWalk.h"

#include "tools/odb/FilePaths.h"

#include <algorithm>
#include <system_error>

namespace odb {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaxDepth = 200;  ///< Directories within directories.

class Walk {
public:
    Walk(Depth depth, const SourceVisitor& visitor) : depth_(depth), visitor_(visitor) {}

    bool source(const std::string& name, const GResourcePath& into)
    {
        const std::optional<fs::path> path = to_path(name);
        if (!path) {
            visitor_.skipped(name, "it is no name that a file can have");
            return true;
        }
        std::error_code error;
        const fs::file_status status = fs::status(*path, error);
        if (fs::is_directory(status))
            return directory(*path, into);
        return entry(*path, status, error, into);
    }

private:
    // A file, or what can't be one.
    bool entry(const fs::path& path, const fs::file_status& status, const std::error_code& error,
               const GResourcePath& into)
    {
        if (fs::is_regular_file(status))
            return visitor_.file({to_name(path), to_name(path.filename()), into});
        std::string reason = "it is no file";
        if (status.type() == fs::file_type::not_found) {
            std::error_code ignored;
            const bool link = fs::is_symlink(fs::symlink_status(path, ignored));
            reason = link ? "it is a link to a missing file" : "no such file";
        } else if (status.type() == fs::file_type::none) {
            reason = error.message();
        }
        visitor_.skipped(to_name(path), reason);
        return true;
    }

    bool directory(const fs::path& path, const GResourcePath& into)
    {
        std::error_code error;
        const fs::path real = fs::canonical(path, error);
        if (!error && std::find(above_.begin(), above_.end(), real) != above_.end()) {
            visitor_.skipped(to_name(path), "it is a link to a directory that it lies in");
            return true;
        }
        if (above_.size() == kMaxDepth) {
            visitor_.skipped(to_name(path), "it lies too deep");
            return true;
        }
        fs::directory_iterator iterator;
        if (!error)
            iterator = fs::directory_iterator(path, error);
        if (error) {
            visitor_.skipped(to_name(path), error.message());
            return true;
        }
        above_.push_back(real);
        const bool go_on = entries(iterator, path, into);
        above_.pop_back();
        return go_on;
    }

    bool entries(fs::directory_iterator& iterator, const fs::path& path, const GResourcePath& into)
    {
        std::error_code error;
        while (iterator != fs::directory_iterator()) {
            const fs::path current = iterator->path();
            std::error_code status_error;
            const fs::file_status status = fs::status(current, status_error);
            bool go_on = true;
            if (!fs::is_directory(status)) {
                go_on = entry(current, status, status_error, into);
            } else if (depth_ == Depth::All) {
                GResourcePath below = into;
                below += GString(std::string_view(to_name(current.filename())));
                go_on = directory(current, below);
            }
            if (!go_on)
                return false;
            iterator.increment(error);
            if (error) {
                visitor_.skipped(to_name(path), error.message());
                return true;
            }
        }
        return true;
    }

    Depth depth_;
    const SourceVisitor& visitor_;
    std::vector<fs::path> above_;  ///< The real names of the directories being walked.
};

}  // namespace

bool walk_sources(const std::vector<std::string>& sources, const GResourcePath& into, Depth depth,
                  const SourceVisitor& visitor)
{
    Walk walk(depth, visitor);
    return std::all_of(sources.begin(), sources.end(),
                       [&](const std::string& name) { return walk.source(name, into); });
}

}  // namespace odb
