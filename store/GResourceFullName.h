#pragma once

#include "store/GResourcePath.h"

/// Names one resource: a directory, a name in it, and a type.
class ZMR_GV_API GResourceFullName : public GResourcePath {
public:
    GResourceFullName() = default;
    GResourceFullName(const GResourcePath& path, const GString& resource_name,
                      const GString& resource_type)
        : GResourcePath(path), name(resource_name), type(resource_type)
    {
    }

    /// True in the state of the default constructor.
    [[nodiscard]] bool is_empty() const { return count == 0 && name.is_empty() && type.is_empty(); }
    void empty();
    [[nodiscard]] const GResourcePath& path() const { return *this; }
    [[nodiscard]] bool operator==(const GResourceFullName& other) const;

    GString name;
    GString type;
};

/// The path as its count and levels, then name and type.
ZMR_GV_API opstream& operator<<(opstream& out, const GResourceFullName& name);
/// Throws GStreamException on malformed data, also on more than 1,000 levels; `name` keeps its
/// value then.
ZMR_GV_API ipstream& operator>>(ipstream& in, GResourceFullName& name);
