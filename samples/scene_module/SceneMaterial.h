#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"
#include "scene_module/TriangleMesh.h"

namespace scene {

/// How a surface answers to light. Colours are red, green and blue in x, y and z, each 0 to 1.
struct MaterialValues {
    std::string name;
    Vector3 diffuse{0.8f, 0.8f, 0.8f};
    Vector3 specular{0, 0, 0};
    float shininess = 0;  ///< Exponent of the highlight, 0 to 1,000.
    float opacity = 1;    ///< 0 can be seen through, 1 can't.
    friend bool operator==(const MaterialValues&, const MaterialValues&) = default;

    /// Brings every value into its range.
    void clamp();
};

}  // namespace scene

/// A material of a scene. User-interface thread.
class SceneMaterial : public GStreamable {
    G_DECLARE_CLASS(SceneMaterial)

public:
    SceneMaterial() = default;
    /// Values outside their ranges are brought into them.
    explicit SceneMaterial(scene::MaterialValues values);

    [[nodiscard]] const scene::MaterialValues& values() const { return values_; }
    [[nodiscard]] GString get_name() const { return GString(std::string_view(values_.name)); }

    /// Throws GStreamException, with nothing changed, for a later version and for data that ends
    /// early. Values outside their ranges, and such that are no numbers, are brought into them.
    void read(ipstream& in) override;
    void write(opstream& out) override;

    static constexpr unsigned char kVersion = 1;

private:
    scene::MaterialValues values_;
};
