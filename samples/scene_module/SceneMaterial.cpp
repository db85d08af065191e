#include "scene_module/SceneMaterial.h"

#include "foundation/ClassRegistration.h"
#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <utility>

G_DEFINE_CLASS(SceneMaterial, GStreamable);

namespace {

// What is no number becomes 0.
float within(float value, float high)
{
    if (!(value > 0))
        return 0;
    return value < high ? value : high;
}

void clamp_color(scene::Vector3& color)
{
    color = {within(color.x, 1), within(color.y, 1), within(color.z, 1)};
}

scene::Vector3 read_color(ipstream& in)
{
    scene::Vector3 color;
    color.x = in.readFloat();
    color.y = in.readFloat();
    color.z = in.readFloat();
    return color;
}

void write_color(opstream& out, const scene::Vector3& color)
{
    out.writeFloat(color.x);
    out.writeFloat(color.y);
    out.writeFloat(color.z);
}

}  // namespace

void scene::MaterialValues::clamp()
{
    clamp_color(diffuse);
    clamp_color(specular);
    shininess = within(shininess, 1000);
    opacity = within(opacity, 1);
}

SceneMaterial::SceneMaterial(scene::MaterialValues values) : values_(std::move(values))
{
    values_.clamp();
}

void SceneMaterial::read(ipstream& in)
{
    if (in.readByte() > kVersion)
        throw GStreamException("This material was written by a newer program.");
    GStreamable::read(in);
    GString name;
    in.read_text(name);
    scene::MaterialValues values;
    values.name = name.view();
    values.diffuse = read_color(in);
    values.specular = read_color(in);
    values.shininess = in.readFloat();
    values.opacity = in.readFloat();
    values.clamp();
    values_ = std::move(values);
}

void SceneMaterial::write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out.write_text(values_.name);
    write_color(out, values_.diffuse);
    write_color(out, values_.specular);
    out.writeFloat(values_.shininess);
    out.writeFloat(values_.opacity);
}
