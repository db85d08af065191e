#include "scene_module/SnapToGrid.h"

#include "foundation/ClassRegistration.h"
#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"
#include "scene_interface/SceneEvents.h"

#include <cmath>

G_DEFINE_CLASS(SnapToGrid, GBehaviour);

namespace {

// The point of the grid that is meant by `wanted`: one further on in the direction of a step.
double snapped(double wanted, int direction, double step)
{
    const double at = wanted / step;
    if (direction > 0)
        return std::ceil(at - 1e-9) * step;
    if (direction < 0)
        return std::floor(at + 1e-9) * step;
    return std::round(at) * step;
}

}  // namespace

void SnapToGrid::handle_event(GEvent& event)
{
    if (event.what != scene::kMoving || event.info_long == 0)
        return;
    auto& move = *reinterpret_cast<scene::Move*>(event.info_long);
    move.x = snapped(move.x, move.step_x, step_);
    move.y = snapped(move.y, move.step_y, step_);
}

void SnapToGrid::read(ipstream& in)
{
    GBehaviour::read(in);
    if (in.readByte() > kVersion)
        throw GStreamException("This behaviour was written by a newer program.");
    const double step = in.readDouble();
    step_ = step >= kLeastStep && step <= kMostStep ? step : kUsualStep;
}

void SnapToGrid::write(opstream& out)
{
    GBehaviour::write(out);
    out.writeByte(kVersion);
    out.writeDouble(step_);
}
