#pragma once

#include "platform/Export.h"

class GStreamable;
class PixelMap;

/// Makes small pictures of objects of one kind, by which a person finds them in a library. Makers
/// register for the life of their module, usually as static objects; the library's own shrinks
/// pictures. Registration runs while a module loads; the rest in any thread.
class ZMR_GV_API GIconMaker {
public:
    GIconMaker() = default;
    virtual ~GIconMaker();
    GIconMaker(const GIconMaker&) = delete;
    GIconMaker& operator=(const GIconMaker&) = delete;

    /// A new icon, owned by the caller, of at most `size_px` pixels a side and at least 1; null for
    /// an object of another kind, and for one that has nothing to show. May throw
    /// OutOfMemory_Exception.
    [[nodiscard]] virtual PixelMap* make_icon(const GStreamable& object, int size_px) const = 0;

    /// The makers are asked in the order of registration, those of modules before the library's
    /// own. One that is registered already keeps its place; the destructor unregisters.
    static void Register(GIconMaker& maker);
    static void Unregister(GIconMaker& maker);
    /// The icon by the first maker that gives one; null when there is none, and for a size outside
    /// 1 to kMaxSize_px.
    [[nodiscard]] static PixelMap* Make(const GStreamable& object, int size_px);

    static constexpr int kMaxSize_px = 1024;
};
