#include "foundation/GFile.h"

#include "foundation/DirectoryAccess.h"
#include "foundation/PathSyntax.h"
#include "foundation/fpstream.h"

#include <algorithm>

namespace {

std::string_view view_of(const char* text)
{
    return text == nullptr ? std::string_view() : std::string_view(text);
}

char normal_byte(char byte)
{
    if (zmr::is_separator(byte))
        return '/';
    return zmr::kPathCase == zmr::LetterCase::Ignored ? zmr::fold_ascii(byte) : byte;
}

int order_of(std::string_view path1, std::string_view path2)
{
    const std::size_t common = std::min(path1.size(), path2.size());
    for (std::size_t place = 0; place < common; ++place) {
        const auto byte1 = static_cast<unsigned char>(normal_byte(path1[place]));
        const auto byte2 = static_cast<unsigned char>(normal_byte(path2[place]));
        if (byte1 != byte2)
            return byte1 < byte2 ? -1 : 1;
    }
    if (path1.size() == path2.size())
        return 0;
    return path1.size() < path2.size() ? -1 : 1;
}

/// `path` made full, or empty when the system can't tell the current directory.
std::string expanded(std::string_view path)
{
    const std::size_t root_end = zmr::root_length(path);
    const std::string base = zmr::full_base(path.substr(0, root_end));
    if (base.empty())
        return {};
    const std::size_t base_root = zmr::root_length(base);
    std::string names = base.substr(base_root);
    names += zmr::kSeparator;
    names += path.substr(root_end);
    return zmr::resolve_dots(std::string_view(base).substr(0, base_root), names);
}

}  // namespace

GFile& GFile::operator=(const GString& path)
{
    GString::operator=(path);
    return *this;
}

GFile& GFile::operator=(const char* path)
{
    GString::operator=(path);
    return *this;
}

GFile GFile::get_directory() const
{
    return GString(view().substr(0, zmr::directory_length(view())));
}

void GFile::just_directory()
{
    *this = get_directory();
}

GString GFile::get_name() const
{
    return GString(view().substr(zmr::name_start(view())));
}

void GFile::just_name()
{
    *this = get_name();
}

void GFile::add_name(const char* name)
{
    const GString added(name);  // it may be a part of this path
    if (added.is_empty())
        return;
    const std::string_view path = view();
    const bool separated = path.empty() || zmr::is_separator(path.back()) ||
                           zmr::is_separator(added.text[0]) ||
                           zmr::root_length(path) == path.size();
    if (!separated)
        *this += zmr::kSeparator;
    *this += added;
}

void GFile::replace_name(const char* name)
{
    GString replaced(view().substr(0, zmr::name_start(view())));
    replaced += name;
    *this = replaced;
}

void GFile::replace_extension(const char* extension)
{
    const std::size_t start = zmr::name_start(view());
    const std::string_view name = view().substr(start);
    if (name.empty())
        return;
    std::string_view wanted = view_of(extension);
    if (!wanted.empty() && wanted.front() == '.')
        wanted.remove_prefix(1);

    GString replaced(view().substr(0, start + zmr::extension_start(name)));
    if (!wanted.empty()) {
        replaced += '.';
        replaced += GString(wanted);
    }
    *this = replaced;
}

GString GFile::get_extension() const
{
    const std::string_view name = view().substr(zmr::name_start(view()));
    const std::size_t dot = zmr::extension_start(name);
    return dot == name.size() ? GString() : GString(name.substr(dot + 1));
}

bool GFile::exists() const
{
    return zmr::path_kind(std::string(view())) != zmr::PathKind::Missing;
}

bool GFile::isDirectory() const
{
    return zmr::path_kind(std::string(view())) == zmr::PathKind::Directory;
}

bool GFile::isMask() const
{
    return view().substr(zmr::name_start(view())).find_first_of("*?") != std::string_view::npos;
}

bool GFile::isRelativePath() const
{
    return zmr::root_length(view()) == 0;
}

bool GFile::valid() const
{
    return zmr::is_valid_path(view());
}

int GFile::compare(const char* other) const
{
    return order_of(view(), view_of(other));
}

void GFile::expand()
{
    if (is_empty())
        return;
    const std::string full = expanded(view());
    if (!full.empty())
        *this = GString(full);
}

void GFile::shrink(const char* directory)
{
    if (directory == nullptr || is_empty())
        return;
    const std::string full = expanded(view());
    const std::string base = expanded(directory);
    if (base.empty() || full.size() <= base.size() ||
        order_of(std::string_view(full).substr(0, base.size()), base) != 0)
        return;
    std::string_view rest = std::string_view(full).substr(base.size());
    if (!zmr::is_separator(base.back())) {
        if (!zmr::is_separator(rest.front()))
            return;
        rest.remove_prefix(1);
    }
    *this = GString(rest);
}

void GFile::redirect()
{
    const GFile redirected = fpbase::RedirectedName(text, 0);
    if (redirected.exists())
        *this = redirected;
}

opstream& operator<<(opstream& out, const GFile& file)
{
    return out << static_cast<const GString&>(file);
}

ipstream& operator>>(ipstream& in, GFile& file)
{
    return in >> static_cast<GString&>(file);
}
