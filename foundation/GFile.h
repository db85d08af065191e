#pragma once

#include "foundation/GString.h"

/// A path, as text. Both slashes separate names in both lanes; what is put in between is "/"
/// natively and "\" in the win lane. A drive ("C:") and a server ("\\host\share") are roots in the
/// win lane only. Nothing here throws for a missing file.
class ZMR_GV_API GFile : public GString {
public:
    GFile() = default;
    GFile(const char* path) : GString(path) {}
    GFile(const GString& path) : GString(path) {}
    GFile(const GFile&) = default;
    GFile(GFile&&) noexcept = default;
    GFile& operator=(const GFile&) = default;
    GFile& operator=(GFile&&) noexcept = default;
    GFile& operator=(const GString& path);
    GFile& operator=(const char* path);

    /// The path without its last name and the separator before it; a root keeps its separator;
    /// empty when there is only a name.
    [[nodiscard]] GFile get_directory() const;
    /// Becomes get_directory().
    void just_directory();
    /// The last name, with its extension.
    [[nodiscard]] GString get_name() const;
    /// Becomes get_name().
    void just_name();
    /// Appends a name behind a separator (none is added to the empty path or behind one).
    void add_name(const char* name);
    /// Puts `name` in place of the last name.
    void replace_name(const char* name);
    /// Puts `extension`, with or without its dot, in place of the last name's; empty takes it away.
    void replace_extension(const char* extension);
    /// The extension of the last name without its dot, empty when it has none.
    [[nodiscard]] GString get_extension() const;

    /// True for an existing file or directory.
    [[nodiscard]] bool exists() const;
    [[nodiscard]] bool isDirectory() const;
    /// True when the last name holds "*" or "?".
    [[nodiscard]] bool isMask() const;
    [[nodiscard]] bool isRelativePath() const;
    /// True when the text could name a file here: not empty, no zero byte, no name or path too
    /// long, and none of the system's forbidden characters (a mask's are allowed).
    [[nodiscard]] bool valid() const;
    /// Compares paths byte by byte, the separators being equal; in the win lane without regard to
    /// the case of ASCII letters. 0 when equal.
    [[nodiscard]] int compare(const char* other) const;

    /// Becomes a full path: relative to the current directory, "." and ".." resolved as text.
    void expand();
    /// Becomes relative to `directory` when it lies in it or below; otherwise stays.
    void shrink(const char* directory);
    /// Becomes its redirected form, as fpbase::RedirectedName gives it, when that file exists.
    void redirect();
};

ZMR_GV_API opstream& operator<<(opstream& out, const GFile& file);
ZMR_GV_API ipstream& operator>>(ipstream& in, GFile& file);
