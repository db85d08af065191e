#include "store/GResourceIterators.h"

#include "store/ResourceFileServer.h"

namespace {

const GString& text_at(const TGVector<GString>& texts, long index)
{
    static const GString nothing;
    return index >= 0 && index < texts.count ? texts[index] : nothing;
}

void take(const std::vector<std::string>& texts, TGVector<GString>& target)
{
    for (const std::string& text : texts)
        target[target.count] = GString(text);
}

}  // namespace

GResourceIterator::GResourceIterator(const ResourceFile& file, const GResourceFullName& pattern)
    : file_(file), pattern_(pattern), names_(0, 64)
{
    if (file.server == nullptr)
        return;
    const GSingleLock locked(file.server->lock);
    const zmr::LibraryPath* const path = file.server->library_path(pattern);
    if (path == nullptr)
        return;
    const zmr::LibraryEntryList list = file.server->library_.list(*path, pattern.type.view());
    for (std::size_t i = 0; i < list.size(); ++i)
        names_[names_.count] = GString(list[i].name);
    index = names_.count - 1;
}

const GString& GResourceIterator::element() const
{
    return text_at(names_, index);
}

GStreamable* GResourceIterator::get_loaded() const
{
    if (file_.server == nullptr)
        return nullptr;
    const GSingleLock locked(file_.server->lock);
    const zmr::LibraryPath* const path = file_.server->library_path(pattern_);
    if (path == nullptr)
        return nullptr;
    return file_.server->loaded_.find(*path, element().view(), pattern_.type.view());
}

GResourceTypeIterator::GResourceTypeIterator(const ResourceFile& file, const GResourcePath& path)
    : types_(0, 16)
{
    if (file.server == nullptr)
        return;
    const GSingleLock locked(file.server->lock);
    if (const zmr::LibraryPath* const found = file.server->library_path(path))
        take(file.server->library_.types(*found), types_);
    index = types_.count - 1;
}

GResourceTypeIterator::GResourceTypeIterator(const ResourceFile& file) : types_(0, 16)
{
    if (file.server == nullptr)
        return;
    const GSingleLock locked(file.server->lock);
    take(file.server->library_.types(), types_);
    index = types_.count - 1;
}

const GString& GResourceTypeIterator::element() const
{
    return text_at(types_, index);
}

GResourceSubDirectoryIterator::GResourceSubDirectoryIterator(const ResourceFile& file,
                                                             const GResourcePath& path)
    : names_(0, 16)
{
    if (file.server == nullptr)
        return;
    const GSingleLock locked(file.server->lock);
    if (const zmr::LibraryPath* const found = file.server->library_path(path))
        take(file.server->library_.directories(*found), names_);
    index = names_.count - 1;
}

const GString& GResourceSubDirectoryIterator::element() const
{
    return text_at(names_, index);
}
