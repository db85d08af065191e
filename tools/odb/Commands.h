#pragma once

#include "tools/odb/ExitCode.h"
#include "tools/odb/Output.h"

#include <string>
#include <vector>

/// The tool's commands, each a function of its arguments that prints its results and gives the exit
/// code. Names of entries are paths with "/". docs/odb-tool.md describes them for the user.
namespace odb {

struct CreateArguments {
    std::string file;
};
struct AddArguments {
    std::string file;
    std::vector<std::string> sources;
    std::string into;
    bool recursive = false;
    bool external = false;
};
struct ListFilter {
    enum class Kind { Class, Related, Name };
    Kind kind;
    std::string value;  ///< The class, or the regular expression.
};
struct ListArguments {
    std::string file;
    std::string directory;
    bool recursive = false;
    std::vector<ListFilter> filters;
    std::vector<std::string> filter_texts;  ///< More filters, as "related:NAME".
};
struct ShowArguments {
    std::string file;
    std::string name;
};
struct ExtractArguments {
    std::string file;
    std::vector<std::string> names;
    std::string to;
    bool overwrite = false;
};
struct RenameArguments {
    std::string file;
    std::string from;
    std::string to;
};
struct RemoveArguments {
    std::string file;
    std::vector<std::string> names;
};
struct CopyArguments {
    std::string file;
    std::vector<std::string> names;
    std::string to;
    std::string into;
};
struct LinkArguments {
    std::string file;
    std::string name;
    std::string target;  ///< With "#" and a library behind it when that is another one.
};
struct FileArguments {
    std::string file;
};
struct AttributeArguments {
    std::string file;
    std::string name;
    std::string action;  ///< Empty to list.
    std::string class_name;
    std::string value;
};
struct DescribeArguments {
    std::string file;
    std::string name;
    bool sets = false;
    std::string text;
    bool removes = false;
};
struct PictureArguments {
    std::string file;
    std::string name;
    std::string picture;
    std::string other_file;
    bool overwrite = false;
};
struct MovieArguments {
    std::string file;
    std::string name;
    std::string other_file;
    bool overwrite = false;
};
struct CheckArguments {
    std::string file;
    bool fix = false;
};

[[nodiscard]] ExitCode create(const CreateArguments& arguments, Style style);
[[nodiscard]] ExitCode add(const AddArguments& arguments, Style style);
[[nodiscard]] ExitCode list(const ListArguments& arguments, Style style);
[[nodiscard]] ExitCode show(const ShowArguments& arguments, Style style);
[[nodiscard]] ExitCode info(const FileArguments& arguments, Style style);
[[nodiscard]] ExitCode extract(const ExtractArguments& arguments, Style style);
[[nodiscard]] ExitCode rename(const RenameArguments& arguments, Style style);
[[nodiscard]] ExitCode remove(const RemoveArguments& arguments, Style style);
[[nodiscard]] ExitCode copy(const CopyArguments& arguments, Style style);
[[nodiscard]] ExitCode link(const LinkArguments& arguments, Style style);
[[nodiscard]] ExitCode attribute(const AttributeArguments& arguments, Style style);
[[nodiscard]] ExitCode describe(const DescribeArguments& arguments, Style style);
[[nodiscard]] ExitCode picture_list(const PictureArguments& arguments, Style style);
[[nodiscard]] ExitCode picture_add(const PictureArguments& arguments, Style style);
[[nodiscard]] ExitCode picture_extract(const PictureArguments& arguments, Style style);
[[nodiscard]] ExitCode picture_remove(const PictureArguments& arguments, Style style);
[[nodiscard]] ExitCode movie_set(const MovieArguments& arguments, Style style);
[[nodiscard]] ExitCode movie_extract(const MovieArguments& arguments, Style style);
[[nodiscard]] ExitCode movie_remove(const MovieArguments& arguments, Style style);
[[nodiscard]] ExitCode pack(const FileArguments& arguments, Style style);
[[nodiscard]] ExitCode verify(const FileArguments& arguments, Style style);
[[nodiscard]] ExitCode check(const CheckArguments& arguments, Style style);

}  // namespace odb
