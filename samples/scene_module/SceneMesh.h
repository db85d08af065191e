#pragma once

#include "foundation/GStreamable.h"
#include "foundation/GString.h"
#include "scene_module/TriangleMesh.h"

/// A model of a scene: a surface of triangles, in scene units. User-interface thread.
class SceneMesh : public GStreamable {
    G_DECLARE_CLASS(SceneMesh)

public:
    SceneMesh() = default;
    explicit SceneMesh(scene::TriangleMesh shape);

    [[nodiscard]] const scene::TriangleMesh& shape() const { return shape_; }
    [[nodiscard]] GString get_name() const { return GString(std::string_view(shape_.name)); }
    [[nodiscard]] const scene::Bounds& bounds() const { return bounds_; }

    /// Throws GStreamException, with nothing changed, for a later version, and for data that is no
    /// mesh: an index beyond the vertices, a number that is not finite, more than the limits of
    /// TriangleMesh. Memory grows with the bytes that come, not with what they claim.
    void read(ipstream& in) override;
    void write(opstream& out) override;

    static constexpr unsigned char kVersion = 1;
    static constexpr std::uint32_t kMaxNameBytes = 65536;  ///< Longer names are malformed.

private:
    scene::TriangleMesh shape_;
    scene::Bounds bounds_;
};
