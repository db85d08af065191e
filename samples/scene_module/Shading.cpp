#include "scene_module/Shading.h"

#include <algorithm>
#include <cmath>

namespace scene {

namespace {

struct Light {
    Vector3 direction;  ///< Towards the light, of length 1.
    Vector3 color;      ///< Linear.
    bool highlights;
};

float dot(const Vector3& a, const Vector3& b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// sRGB to linear light and back, by the power that is near enough for an icon.
float to_linear(float value)
{
    return std::pow(value, 2.2f);
}

std::uint8_t to_byte(float linear)
{
    const float value = std::pow(std::clamp(linear, 0.0f, 1.0f), 1 / 2.2f);
    return static_cast<std::uint8_t>(value * 255 + 0.5f);
}

// Bends bright values towards 1, so that highlights keep their colour.
float tone(float linear)
{
    return linear < 0.6f ? linear : 0.6f + 0.4f * (1 - std::exp(-(linear - 0.6f) / 0.4f));
}

}  // namespace

void shade(const Vector3& normal, const MaterialValues& material, std::uint8_t* color)
{
    static const Vector3 up{0, 1, 0};
    static const Light lights[] = {
        {normalized({-0.55f, 0.75f, 0.65f}, up), {0.95f, 0.92f, 0.86f}, true},
        {normalized({0.85f, 0.15f, 0.45f}, up), {0.20f, 0.24f, 0.31f}, false},
        {normalized({0.35f, 0.45f, -0.65f}, up), {0.30f, 0.32f, 0.36f}, true},
    };
    const Vector3 base{to_linear(material.diffuse.x), to_linear(material.diffuse.y),
                       to_linear(material.diffuse.z)};
    const float sky = 0.5f + 0.5f * normal.y;
    const Vector3 ambient{0.10f + 0.10f * sky, 0.10f + 0.12f * sky, 0.11f + 0.15f * sky};
    Vector3 sum{base.x * ambient.x, base.y * ambient.y, base.z * ambient.z};
    for (const Light& light : lights) {
        const float facing = std::max(dot(normal, light.direction), 0.0f);
        sum.x += base.x * light.color.x * facing;
        sum.y += base.y * light.color.y * facing;
        sum.z += base.z * light.color.z * facing;
        if (!light.highlights || material.shininess <= 0)
            continue;
        const Vector3 half = normalized(
            {light.direction.x, light.direction.y, light.direction.z + 1}, light.direction);
        const float glint = std::pow(std::max(dot(normal, half), 0.0f), material.shininess);
        sum.x += material.specular.x * light.color.x * glint;
        sum.y += material.specular.y * light.color.y * glint;
        sum.z += material.specular.z * light.color.z * glint;
    }
    color[0] = to_byte(tone(sum.z));
    color[1] = to_byte(tone(sum.y));
    color[2] = to_byte(tone(sum.x));
}

}  // namespace scene
