#include "foundation/GClassDictionary.h"

#include <cstring>

long GClassDictionary::insert(const GMetaClass& metaclass)
{
    return insert_item(&metaclass);
}

int GClassDictionary::compare(const void* item1, const void* item2) const
{
    const int order = std::strcmp(static_cast<const GMetaClass*>(item1)->name,
                                  static_cast<const GMetaClass*>(item2)->name);
    // Two modules may have classes of one name.
    return order != 0 ? order : GVoidPtrSortedArrayPrim::compare(item1, item2);
}
