#include "foundation/GStringResource.h"

namespace zmr {

bool load_string_resource(HINSTANCE, unsigned, GString&)
{
    return false;
}

}  // namespace zmr
