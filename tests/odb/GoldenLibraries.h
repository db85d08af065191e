#pragma once

#include "../store/FaultyFileSystem.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

/// A library of fixed content. The files in data/ hold the bytes that version 1 of the format has
/// for it: they must open for ever, and be written the same for ever.
struct GoldenLibrary {
    const char* name;
    std::vector<const char*> files;  ///< The library's own first, then the object files beside it.
    /// Writes the library of that file.
    std::function<void(const std::string& file)> write;
};
[[nodiscard]] std::span<const GoldenLibrary> golden_libraries();

/// The full name of a file beside the golden libraries; the files are those of a file system in
/// memory.
[[nodiscard]] std::string golden_file(const std::string& name);
/// The bytes of the library's files, written anew. The sector that names who writes is zeros: it is
/// different each time, and only serves messages.
[[nodiscard]] std::vector<std::string> write_golden(const GoldenLibrary& library);
