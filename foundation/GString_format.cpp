#include "foundation/GException.h"
#include "foundation/GString.h"
#include "foundation/GStringResource.h"

#include <algorithm>
#include <atomic>
#include <cstdio>

// The texts that come from resources, and formatting.

namespace {

struct LoadFunction {
    GString::LoadStringFunc function;
    void* user;
    const LoadFunction* next;
};

// Pushed to at the front and never taken from, so that functions may be added and asked in any
// thread and while modules load.
constinit std::atomic<const LoadFunction*> load_functions = nullptr;

constexpr unsigned kLargestText = 1u << 24;  // a function that claims more is cut here

/// Asks one function, with a larger buffer as long as the text fills it.
bool ask(const LoadFunction& loader, unsigned id, GString& target)
{
    for (unsigned size = 256;; size *= 8) {
        GString loaded;
        char* buffer = loaded.getBuffer(size);
        const unsigned length = loader.function(id, buffer, size, loader.user);
        if (length == 0)
            return false;
        if (length < size - 1 || size >= kLargestText) {
            target.assign(buffer, std::min(length, size - 1));
            return true;
        }
    }
}

}  // namespace

void GString::AddLoadStringFunc(LoadStringFunc function, void* user)
{
    if (function == nullptr)
        return;
    // Lives as long as the process.
    auto* added = new LoadFunction{function, user, load_functions.load()};
    while (!load_functions.compare_exchange_weak(added->next, added)) {
    }
}

bool GString::loadString(unsigned id)
{
    for (const LoadFunction* each = load_functions.load(); each != nullptr; each = each->next)
        if (ask(*each, id, *this))
            return true;
    empty();
    return false;
}

bool GString::loadString(HINSTANCE module, unsigned id)
{
    if (module == nullptr)
        return loadString(id);
    if (zmr::load_string_resource(module, id, *this))
        return true;
    empty();
    return false;
}

void GString::format(unsigned id, ...)
{
    std::va_list arguments;
    va_start(arguments, id);
    vformat(id, arguments);
    va_end(arguments);
}

void GString::vformat(const char* format, std::va_list arguments)
{
    if (format == nullptr) {
        empty();
        return;
    }
    GString result;  // the arguments may point into this text
    unsigned size = 256;
    for (;;) {
        char* buffer = result.getBuffer(size);
        std::va_list copied;
        va_copy(copied, arguments);
        const int length = std::vsnprintf(buffer, std::size_t{size} + 1, format, copied);
        va_end(copied);
        if (length < 0) {
            result.empty();
            break;
        }
        if (static_cast<unsigned>(length) <= size) {
            result.assign(buffer, static_cast<unsigned>(length));
            break;
        }
        size = static_cast<unsigned>(length);
    }
    *this = static_cast<GString&&>(result);
}

void GString::vformat(unsigned id, std::va_list arguments)
{
    GString loaded;
    loaded.loadString(id);
    vformat(loaded.text, arguments);
}

void GString::vformat(HINSTANCE module, unsigned id, std::va_list arguments)
{
    GString loaded;
    loaded.loadString(module, id);
    vformat(loaded.text, arguments);
}
