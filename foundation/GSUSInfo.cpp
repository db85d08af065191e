#include "foundation/GSUSInfo.h"

#include <atomic>
#include <cmath>

namespace {

constinit std::atomic<double> g_input_scale = 1.0;  // each load of an object sets it
constinit double g_view_scale = 1.0;
constinit bool g_view_scale_set = false;

[[nodiscard]] double usable(double scale)
{
    return std::isfinite(scale) && scale > 0.0 ? scale : 1.0;
}

}  // namespace

void GSUSInfo::InputScale(double scale)
{
    g_input_scale = usable(scale);
}

double GSUSInfo::GetInputScale()
{
    return g_input_scale;
}

double GSUSInfo::GetViewScale(bool* is_default)
{
    if (is_default != nullptr)
        *is_default = !g_view_scale_set;
    return g_view_scale;
}

void GSUSInfo::SetViewScale(double scale)
{
    g_view_scale = usable(scale);
    g_view_scale_set = true;
}
