#include "odb/ShortMovieName.h"

#include "foundation/Immortal.h"
#include "odb/MovieName.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace zmr {

namespace {

constexpr std::string_view kPrefix = "movie";

struct ShortNames {
    std::mutex mutex;
    std::map<std::string, GString, std::less<>> names;  // those in use, with what they stand for
    unsigned last_number = 0;
};

ShortNames& short_names()
{
    static Immortal<ShortNames> all;
    return *all;
}

/// The extension with its dot, by which the layer knows who opens the file; empty for none.
std::string_view extension_of(std::string_view file)
{
    const std::size_t dot = file.rfind('.');
    const std::size_t folder = file.find_last_of("/\\:");
    if (dot == std::string_view::npos || (folder != std::string_view::npos && dot < folder))
        return {};
    return file.substr(dot);
}

}  // namespace

ShortMovieName::ShortMovieName(const char* movie_name) : text_(movie_name)
{
    GFile file;
    GResourceFullName name;
    if (!parse_movie_name(movie_name, file, name) || extension_of(file.view()).empty())
        return;
    ShortNames& all = short_names();
    const std::lock_guard locked(all.mutex);
    std::string text;
    do {
        text = kPrefix;
        text.append(extension_of(file.view()))
            .append("+")
            .append(std::to_string(++all.last_number));
    } while (all.names.contains(text));
    text_ = GString(text.c_str());
    all.names.emplace(std::move(text), GString(movie_name));
    is_short_ = true;
}

ShortMovieName::~ShortMovieName()
{
    if (!is_short_)
        return;
    ShortNames& all = short_names();
    const std::lock_guard locked(all.mutex);
    all.names.erase(all.names.find(text_.view()));
}

bool ShortMovieName::Find(const char* text, GString& movie_name)
{
    if (text == nullptr)
        return false;
    ShortNames& all = short_names();
    const std::lock_guard locked(all.mutex);
    const auto found = all.names.find(std::string_view(text));
    if (found == all.names.end())
        return false;
    movie_name = found->second;
    return true;
}

}  // namespace zmr
