#include "scene_module/SceneMesh.h"

#include "foundation/GException.h"
#include "foundation/mpstream.h"
#include "scene_module/SceneMaterial.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace {

scene::TriangleMesh triangle()
{
    scene::TriangleMesh mesh;
    mesh.name = "Blatt";
    mesh.up = scene::UpAxis::Z;
    mesh.vertices = {{0, 0, 0}, {2, 0, 0}, {0, 3, -1}};
    mesh.triangles = {{0, 1, 2}};
    mesh.compute_normals();
    return mesh;
}

std::string stream_of(GStreamable& object)
{
    ompstream out;
    object.write(out);
    const auto bytes = out.bytes();
    return {bytes.begin(), bytes.end()};
}

void read_from(GStreamable& object, std::string bytes)
{
    impstream in(bytes.data(), static_cast<long>(bytes.size()));
    object.read(in);
}

}  // namespace

TEST(SceneMesh, RoundTrip_KeepsEverything)
{
    SceneMesh mesh(triangle());
    SceneMesh again;

    read_from(again, stream_of(mesh));

    EXPECT_EQ(again.get_name(), "Blatt");
    EXPECT_EQ(again.shape().up, scene::UpAxis::Z);
    EXPECT_EQ(again.shape().vertices, mesh.shape().vertices);
    EXPECT_EQ(again.shape().normals, mesh.shape().normals);
    EXPECT_EQ(again.shape().triangles, mesh.shape().triangles);
    EXPECT_EQ(again.bounds().low, (scene::Vector3{0, 0, -1}));
    EXPECT_EQ(again.bounds().high, (scene::Vector3{2, 3, 0}));
}

TEST(SceneMesh, Clone_IsAnEqualMesh)
{
    SceneMesh mesh(triangle());

    GStreamable* const copy = mesh.clone(true);
    const auto* cloned = zmr::class_cast<SceneMesh>(copy);

    ASSERT_NE(cloned, nullptr);
    EXPECT_EQ(cloned->shape().vertices, mesh.shape().vertices);
    GStreamable::Destroy(copy);
}

TEST(SceneMesh, EveryCutLength_ThrowsAndChangesNothing)
{
    SceneMesh mesh(triangle());
    const std::string bytes = stream_of(mesh);
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        SceneMesh target(triangle());
        EXPECT_THROW(read_from(target, bytes.substr(0, size)), GStreamException) << size;
        EXPECT_EQ(target.shape().vertices.size(), 3u) << size;
    }
}

TEST(SceneMesh, EveryChangedByte_IsReadOrRefused)
{
    SceneMesh mesh(triangle());
    const std::string bytes = stream_of(mesh);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (const char value : {'\x00', '\x7f', '\xff'}) {
            std::string changed = bytes;
            changed[i] = value;
            SceneMesh target;
            try {
                read_from(target, changed);
                EXPECT_EQ(target.shape().normals.size(), target.shape().vertices.size());
                for (const auto& corners : target.shape().triangles)
                    EXPECT_LT(std::max({corners[0], corners[1], corners[2]}),
                              target.shape().vertices.size());
            } catch (const GStreamException& error) {
                EXPECT_STRNE(error.what(), "");
            }
        }
    }
}

TEST(SceneMesh, NumbersThatAreNotFinite_AreRefused)
{
    scene::TriangleMesh shape = triangle();
    shape.vertices[1].y = std::numeric_limits<float>::infinity();
    SceneMesh mesh(shape);
    SceneMesh target;

    EXPECT_THROW(read_from(target, stream_of(mesh)), GStreamException);
}

TEST(SceneMaterial, RoundTrip_KeepsEverything)
{
    scene::MaterialValues values;
    values.name = "Glas";
    values.diffuse = {0.25f, 0.5f, 0.75f};
    values.specular = {1, 0.5f, 0};
    values.shininess = 99;
    values.opacity = 0.125f;
    SceneMaterial material(values);
    SceneMaterial again;

    read_from(again, stream_of(material));

    EXPECT_EQ(again.values(), values);
}

TEST(SceneMaterial, HostileBytes_AreReadOrRefused)
{
    SceneMaterial material;
    const std::string bytes = stream_of(material);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        SceneMaterial target;
        EXPECT_THROW(read_from(target, bytes.substr(0, i)), GStreamException);
        std::string changed = bytes;
        changed[i] = '\xff';
        try {
            read_from(target, changed);
            EXPECT_GE(target.values().opacity, 0);
            EXPECT_LE(target.values().opacity, 1);
            EXPECT_LE(target.values().shininess, 1000);
        } catch (const GStreamException& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
}
