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
};
struct ListArguments {
    std::string file;
    std::string directory;
    bool recursive = false;
    bool by_class = false;
    std::string class_name;
    bool by_pattern = false;
    std::string pattern;
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
struct FileArguments {
    std::string file;
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
[[nodiscard]] ExitCode pack(const FileArguments& arguments, Style style);
[[nodiscard]] ExitCode verify(const FileArguments& arguments, Style style);

}  // namespace odb
