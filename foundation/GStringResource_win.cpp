#include "foundation/GStringResource.h"

#include "platform/Windows.h"

namespace zmr {

bool load_string_resource(HINSTANCE module, unsigned id, GString& target)
{
    // A string of a table has at most 65535 UTF-16 units of three bytes each.
    constexpr int kLargest = 3 * 65535 + 2;
    for (int size = 512;; size = size * 8 < kLargest ? size * 8 : kLargest) {
        GString loaded;
        char* buffer = loaded.getBuffer(static_cast<unsigned>(size));
        const int length = ::LoadStringA(module, id, buffer, size);
        if (length <= 0)
            return false;
        // A text that fills the buffer may have been cut.
        if (length < size - 1 || size == kLargest) {
            target.assign(buffer, static_cast<unsigned>(length));
            return true;
        }
    }
}

}  // namespace zmr
