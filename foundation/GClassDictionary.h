#pragma once

#include "foundation/GMetaClass.h"
#include "foundation/GVoidPtrSortedArrayPrim.h"

/// A set of classes in the byte order of their names, so that menus and pages built from it come in
/// the same order on every run.
class ZMR_GV_API GClassDictionary : public GVoidPtrSortedArrayPrim {
public:
    GClassDictionary() = default;
    GClassDictionary(const GClassDictionary&) = default;
    GClassDictionary& operator=(const GClassDictionary&) = default;

    /// The index of the class, which is inserted once.
    long insert(const GMetaClass& metaclass);
    [[nodiscard]] const GMetaClass* at(long index) const
    {
        return index >= 0 && index < count ? static_cast<const GMetaClass*>(items[index]) : nullptr;
    }

protected:
    int compare(const void* item1, const void* item2) const override;
};
