#pragma once

#include "foundation/GCollection.h"
#include "foundation/GFile.h"
#include "foundation/GStringCollection.h"

/// Directories in which files whose names match one of some masks are looked for, in their order.
class ZMR_GV_API RedirectionItem : public GStringCollection {
    G_DECLARE_CLASS(RedirectionItem)

public:
    /// No mask and no directory.
    RedirectionItem() = default;
    /// `masks` are separated by ";".
    explicit RedirectionItem(const char* masks) : masks_(masks) {}

    /// True when the last name of `name` (which may be a mask itself, and then must be equal) fits
    /// one of the masks. The case of ASCII letters does not count.
    [[nodiscard]] bool match(const char* name) const;
    [[nodiscard]] const GString& masks() const { return masks_; }
    /// Linear, as the directories stand in the order in which they are asked.
    bool search(const void* key, long& index) const override;
    long v_index_of(const void* item) const override;
    /// Adds a directory behind the others; unlike its base the item keeps that order.
    long v_insert(void* item) override;
    void read(ipstream& in) override;
    void write(opstream& out) override;

private:
    GString masks_;
};

/// The redirection of a process: items in the order in which they are asked.
class ZMR_GV_API RedirectionFile : public GCollection {
    G_DECLARE_CLASS(RedirectionFile)

public:
    RedirectionFile() = default;
    /// The first item that matches, or null.
    [[nodiscard]] const RedirectionItem* find(const char* name) const;
    [[nodiscard]] const RedirectionItem* at(long index) const;
    /// Null for an object of another class.
    void* read_item(ipstream& in) override;
};
