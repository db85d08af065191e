#include "foundation/Redirection.h"

#include "foundation/GException.h"
#include "foundation/NameMask.h"
#include "foundation/PathSyntax.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <algorithm>
#include <cstring>

G_DEFINE_CLASS(RedirectionItem, GStringCollection);
G_DEFINE_CLASS(RedirectionFile, GCollection);

namespace {

constexpr unsigned char kVersion = 0;

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

bool equal_but_for_case(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char byte1, char byte2) {
        return zmr::fold_ascii(byte1) == zmr::fold_ascii(byte2);
    });
}

}  // namespace

bool RedirectionItem::match(const char* name) const
{
    const GFile path(name);
    const GString last = path.get_name();
    if (last.is_empty())
        return false;
    const bool is_mask = path.isMask();
    std::string_view rest = masks_.view();
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(';'), rest.size());
        const std::string_view mask = trimmed(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (mask.empty())
            continue;
        if (is_mask ? equal_but_for_case(last.view(), mask)
                    : zmr::matches_mask(last.view(), mask, zmr::LetterCase::Ignored))
            return true;
    }
    return false;
}

bool RedirectionItem::search(const void* key, long& index) const
{
    for (index = 0; index < count; ++index)
        if (compare(keyOf(items[index]), key) == 0)
            return true;
    return false;
}

long RedirectionItem::v_index_of(const void* item) const
{
    return GCollection::v_index_of(item);
}

long RedirectionItem::v_insert(void* item)
{
    return item == nullptr ? -1 : GCollection::v_insert(item);
}

void RedirectionItem::read(ipstream& in)
{
    if (in.readByte() > kVersion)
        throw GStreamException("A redirection was written by a newer program.");
    in >> masks_;
    GCollection::read(in);  // the sorted base would sort
    pack();
}

void RedirectionItem::write(opstream& out)
{
    out.writeByte(kVersion);
    out << masks_;
    GCollection::write(out);
}

const RedirectionItem* RedirectionFile::find(const char* name) const
{
    for (long index = 0; index < count; ++index) {
        const RedirectionItem* item = at(index);
        if (item != nullptr && item->match(name))
            return item;
    }
    return nullptr;
}

const RedirectionItem* RedirectionFile::at(long index) const
{
    return static_cast<const RedirectionItem*>(
        static_cast<const GStreamable*>(GCollection::at(index)));
}

void* RedirectionFile::read_item(ipstream& in)
{
    auto* item = in.read_pointer<RedirectionItem>();
    if (owns_items != 0)
        in.claim();
    return static_cast<GStreamable*>(item);
}
