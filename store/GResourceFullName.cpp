#include "store/GResourceFullName.h"

#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

namespace {

constexpr std::uint32_t kMaxLevels = 1000;

}  // namespace

void GResourceFullName::empty()
{
    GResourcePath::empty();
    name.empty();
    type.empty();
}

bool GResourceFullName::operator==(const GResourceFullName& other) const
{
    return name == other.name && type == other.type && path() == other.path();
}

opstream& operator<<(opstream& out, const GResourceFullName& name)
{
    out.writeDWord(static_cast<std::uint32_t>(name.count));
    for (int i = 0; i < name.count; ++i)
        out << name[i];
    return out << name.name << name.type;
}

ipstream& operator>>(ipstream& in, GResourceFullName& name)
{
    const auto levels = static_cast<std::uint32_t>(in.readDWord());
    if (levels > kMaxLevels)
        throw GStreamException("A resource's name has too many levels.");
    GResourceFullName read;
    GString text;
    for (std::uint32_t i = 0; i < levels; ++i) {
        in >> text;
        read += text;
    }
    in >> read.name >> read.type;
    name = read;
    return in;
}
