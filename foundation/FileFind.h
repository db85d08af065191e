#pragma once

#include "foundation/GString.h"

#include <memory>

/// Walks the entries of one directory that match a mask, in byte order of their names, so that
/// every run gives the same order. The whole directory is read by the constructor.
class ZMR_GV_API FileFind {
public:
    static constexpr unsigned char kFiles = 1;
    static constexpr unsigned char kDirectories = 2;

    /// `mask` is a path whose last name may hold "*" and "?"; "*.*" matches every name. `kind` is
    /// kFiles, kDirectories or both together. `name` gives bare names with `bare_names`, else
    /// paths.
    /// "." is never given; ".." comes with directories. A missing directory has no entries.
    FileFind(const char* mask, unsigned char kind, bool bare_names);
    ~FileFind();
    FileFind(const FileFind&) = delete;
    FileFind& operator=(const FileFind&) = delete;
    /// Moves to the next entry.
    FileFind& operator++();

    GString name;  ///< The current entry; empty at the end.

private:
    struct Entries;
    std::unique_ptr<Entries> entries_;
};
