#include "scene_module/SceneMesh.h"

#include "foundation/ClassRegistration.h"
#include "foundation/GException.h"
#include "foundation/ipstream.h"
#include "foundation/opstream.h"

#include <algorithm>
#include <cmath>
#include <utility>

G_DEFINE_CLASS(SceneMesh, GStreamable);

namespace {

constexpr std::uint32_t kPieceItems = 65536;

// Reads `count` items as they lie in memory. The block grows by pieces, so that a false count costs
// no more than the data behind it.
template <class T>
std::vector<T> read_items(ipstream& in, std::uint32_t count, std::uint32_t limit)
{
    static_assert(sizeof(T) == 12, "items are streamed as they lie in memory, without gaps");
    if (count > limit)
        throw GStreamException("A mesh claims more than a mesh may hold.");
    const long left = in.remaining();
    if (left >= 0 && static_cast<unsigned long>(left) / sizeof(T) < count)
        throw GStreamException("A mesh ends before its data does.");
    std::vector<T> items;
    while (items.size() < count) {
        const auto done = static_cast<std::uint32_t>(items.size());
        const std::uint32_t piece = std::min(count - done, kPieceItems);
        items.resize(done + piece);
        const long size = static_cast<long>(piece * sizeof(T));
        if (in.readBytes(items.data() + done, size) != size)
            throw GStreamException("A mesh ends before its data does.");
    }
    return items;
}

template <class T>
void write_items(opstream& out, const std::vector<T>& items)
{
    for (std::size_t done = 0; done < items.size(); done += kPieceItems) {
        const std::size_t piece = std::min<std::size_t>(items.size() - done, kPieceItems);
        out.writeBytes(items.data() + done, static_cast<long>(piece * sizeof(T)));
    }
}

void require_finite(const std::vector<scene::Vector3>& vectors)
{
    for (const scene::Vector3& v : vectors) {
        if (!std::isfinite(v.x) || !std::isfinite(v.y) || !std::isfinite(v.z))
            throw GStreamException("A mesh holds a number that is not finite.");
    }
}

}  // namespace

SceneMesh::SceneMesh(scene::TriangleMesh shape) : shape_(std::move(shape)), bounds_(shape_.bounds())
{
}

void SceneMesh::read(ipstream& in)
{
    if (in.readByte() > kVersion)
        throw GStreamException("This mesh was written by a newer program.");
    GStreamable::read(in);

    GString name;
    in.read_text(name);
    if (name.length() > kMaxNameBytes)
        throw GStreamException("A mesh's name is too long.");
    scene::TriangleMesh shape;
    shape.name = name.view();
    const unsigned char up = in.readByte();
    if (up > static_cast<unsigned char>(scene::UpAxis::Z))
        throw GStreamException("A mesh has an unknown axis.");
    shape.up = static_cast<scene::UpAxis>(up);
    const auto vertex_count = static_cast<std::uint32_t>(in.readDWord());
    const auto triangle_count = static_cast<std::uint32_t>(in.readDWord());
    shape.vertices = read_items<scene::Vector3>(in, vertex_count, shape.kMaxVertices);
    shape.normals = read_items<scene::Vector3>(in, vertex_count, shape.kMaxVertices);
    shape.triangles =
        read_items<scene::TriangleMesh::Triangle>(in, triangle_count, shape.kMaxTriangles);
    require_finite(shape.vertices);
    require_finite(shape.normals);
    for (const auto& triangle : shape.triangles) {
        if (*std::max_element(triangle.begin(), triangle.end()) >= vertex_count)
            throw GStreamException("A mesh names a vertex that it does not have.");
    }

    bounds_ = shape.bounds();
    shape_ = std::move(shape);
}

void SceneMesh::write(opstream& out)
{
    out.writeByte(kVersion);
    GStreamable::write(out);
    out.write_text(shape_.name);
    out.writeByte(static_cast<unsigned char>(shape_.up));
    out.writeDWord(static_cast<std::uint32_t>(shape_.vertices.size()));
    out.writeDWord(static_cast<std::uint32_t>(shape_.triangles.size()));
    write_items(out, shape_.vertices);
    write_items(out, shape_.normals);
    write_items(out, shape_.triangles);
}
