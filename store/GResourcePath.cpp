#include "store/GResourcePath.h"

namespace {

const GString& empty_text()
{
    static const GString text;
    return text;
}

}  // namespace

GResourcePath::Levels& GResourcePath::own_levels()
{
    if (levels_ == nullptr)
        levels_ = std::make_shared<Levels>();
    else if (levels_.use_count() > 1)
        levels_ = std::make_shared<Levels>(*levels_);
    return *levels_;
}

GResourcePath& GResourcePath::operator+=(const GString& level)
{
    if (level.is_empty())
        return *this;
    const GString added = level;  // may be one of the levels
    own_levels().push_back(added);
    ++count;
    return *this;
}

const GString& GResourcePath::operator[](int index) const
{
    if (index < 0 || index >= count)
        return empty_text();
    return (*levels_)[static_cast<std::size_t>(index)];
}

bool GResourcePath::operator==(const GResourcePath& other) const
{
    if (count != other.count)
        return false;
    return count == 0 || levels_ == other.levels_ || *levels_ == *other.levels_;
}

GString GResourcePath::get_readable_form() const
{
    GString text;
    for (int i = 0; i < count; ++i) {
        text += (*this)[i];
        text += '/';
    }
    return text;
}

bool GResourcePath::rename_path_from_root(const GResourcePath& old_path,
                                          const GResourcePath& new_path)
{
    if (old_path.count > count)
        return false;
    for (int i = 0; i < old_path.count; ++i) {
        if (!((*this)[i] == old_path[i]))
            return false;
    }
    GResourcePath renamed = new_path;
    for (int i = old_path.count; i < count; ++i)
        renamed += (*this)[i];
    *this = renamed;
    return true;
}

void GResourcePath::remove_last()
{
    if (count == 0)
        return;
    if (--count == 0)
        levels_.reset();
    else
        own_levels().pop_back();
}

void GResourcePath::empty()
{
    levels_.reset();
    count = 0;
}

bool GResourcePath::to_library(zmr::LibraryPath& path) const
{
    zmr::LibraryPath converted;
    for (int i = 0; i < count; ++i) {
        if (!converted.append((*this)[i].view()))
            return false;
    }
    path = converted;
    return true;
}

GResourcePath GResourcePath::FromLibrary(const zmr::LibraryPath& path)
{
    GResourcePath converted;
    const std::size_t levels = path.size();
    for (std::size_t i = 0; i < levels; ++i)
        converted += GString(path.level(i));
    return converted;
}
