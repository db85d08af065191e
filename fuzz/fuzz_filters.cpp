// Any bytes as a filter, applied to a small library in memory, then written and read again: both
// must accept the same.
#include "MemoryFile.h"
#include "foundation/GException.h"
#include "foundation/OwnedObject.h"
#include "foundation/mpstream.h"
#include "graphics/PixelMap.h"
#include "odb/ODB_ClassFilter.h"
#include "odb/ODB_FiltersContainer.h"
#include "odb/ODB_MediatorsArray.h"
#include "odb/ODB_RegularExpressionFilter.h"
#include "odb/ObjectDatabase.h"
#include "store/StoreFiles.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

/// The entries that filters are asked about; made once.
class Entries {
public:
    Entries() : in_place_(files_), database_("lib.odb", GIO::OpenReadWrite)
    {
        PixelMap map(2, 2, AbstractImage::Format24, nullptr);
        for (const char* const name :
             {"a", "lamp", "Lamp 12", "aaaaaaaaaaaaaaaaaaaaaaaaaaaa!", "l\xC3\xA4mp", ".*", "("})
            database_.append_object(&map, GString(name), nullptr);
        database_.append_object(nullptr, GString("nothing"), nullptr);
        database_.get_contents(contents_, false);
    }
    [[nodiscard]] const ODB_MediatorsArray& contents() const { return contents_; }

private:
    MemoryFileSystem files_;
    zmr::StoreFilesInPlace in_place_;
    ObjectDatabase database_;
    ODB_MediatorsArray contents_;
};

using OwnedFilter = zmr::OwnedObject<ODB_ContentsFilter>;

OwnedFilter read_filter(std::span<const unsigned char> bytes)
{
    impstream in(bytes);
    try {
        return OwnedFilter(in.read_owned<ODB_ContentsFilter>());
    } catch (const GException&) {
        return nullptr;
    }
}

std::vector<bool> answers(ODB_ContentsFilter& filter, const ODB_MediatorsArray& contents)
{
    std::vector<bool> result;
    for (long i = 0; i < contents.count; ++i)
        result.push_back(filter.accept(contents.at(i)) != 0);
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const Entries& entries = *new Entries;
    const OwnedFilter filter = read_filter({data, size});
    if (filter == nullptr)
        return 0;
    const std::vector<bool> first = answers(*filter, entries.contents());
    ompstream out;
    out.writePointer(filter.get());
    const OwnedFilter again = read_filter(out.bytes());
    if (again == nullptr || answers(*again, entries.contents()) != first)
        std::abort();
    ODB_MediatorsArray copy = entries.contents();
    copy.apply_filter(*filter);
    long accepted = 0;
    for (const bool one : first)
        accepted += one ? 1 : 0;
    if (copy.count != accepted)
        std::abort();
    return 0;
}
