#pragma once

#include "foundation/TGVector.h"
#include "store/ResourceFile.h"

/// The iterators are snapshots, in the byte order of their texts, walked from the last element to
/// the first: `index` starts at the last element, and the walk ends when it falls below 0. Nothing
/// that is done to the file on the way changes them.

/// The resources of one type in one directory.
class ZMR_GV_API GResourceIterator {
public:
    /// `pattern` gives the directory and the type; its name is empty.
    GResourceIterator(const ResourceFile& file, const GResourceFullName& pattern);
    /// The name of the current element.
    [[nodiscard]] const GString& element() const;
    [[nodiscard]] operator const GString&() const { return element(); }
    /// The instance that the server holds for the current element, or null. Reads nothing.
    [[nodiscard]] GStreamable* get_loaded() const;
    GResourceIterator& operator--()
    {
        --index;
        return *this;
    }

    long index = -1;

private:
    const ResourceFile& file_;
    GResourceFullName pattern_;
    TGVector<GString> names_;
};

/// The types that occur in one directory, or in the whole file.
class ZMR_GV_API GResourceTypeIterator {
public:
    GResourceTypeIterator(const ResourceFile& file, const GResourcePath& path);
    explicit GResourceTypeIterator(const ResourceFile& file);
    [[nodiscard]] const GString& element() const;
    [[nodiscard]] operator const GString&() const { return element(); }
    GResourceTypeIterator& operator--()
    {
        --index;
        return *this;
    }

    long index = -1;

private:
    TGVector<GString> types_;
};

/// The immediate subdirectories of one directory.
class ZMR_GV_API GResourceSubDirectoryIterator {
public:
    GResourceSubDirectoryIterator(const ResourceFile& file, const GResourcePath& path);
    [[nodiscard]] const GString& element() const;
    [[nodiscard]] operator const GString&() const { return element(); }
    GResourceSubDirectoryIterator& operator--()
    {
        --index;
        return *this;
    }

    long index = -1;

private:
    TGVector<GString> names_;
};
