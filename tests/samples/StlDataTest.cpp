#include "scene_module/StlData.h"

#include "foundation/GException.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>

using scene::StlKind;
using scene::TriangleMesh;

namespace {

std::string sample(const char* name)
{
    std::ifstream in(std::string(ZMR_TEST_DATA) + "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::string message_of(const std::string& data)
{
    try {
        static_cast<void>(scene::read_stl(data));
        return "none";
    } catch (const GLibraryException& error) {
        return error.what();
    }
}

TriangleMesh tetrahedron()
{
    TriangleMesh mesh;
    mesh.name = "Corner";
    mesh.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    mesh.triangles = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
    mesh.compute_normals();
    return mesh;
}

const std::string kText =
    "solid corner\n facet normal 0 0 1\n  outer loop\n   vertex 0 0 0\n   vertex 1 0 0\n"
    "   vertex 0 1 0\n  endloop\n endfacet\nendsolid corner\n";

}  // namespace

TEST(StlData, BinaryFile_JoinsEqualCorners)
{
    const TriangleMesh mesh = scene::read_stl(scene::write_stl(tetrahedron()));

    EXPECT_EQ(mesh.vertices.size(), 4u);
    EXPECT_EQ(mesh.triangles.size(), 4u);
    EXPECT_EQ(mesh.normals.size(), 4u);
    EXPECT_EQ(mesh.up, scene::UpAxis::Z);
}

TEST(StlData, BinaryThatBeginsWithSolid_IsBinary)
{
    std::string data = scene::write_stl(tetrahedron());
    std::memcpy(data.data(), "solid facet ", 12);

    EXPECT_EQ(scene::recognise_stl(data.substr(0, 84), data.size()), StlKind::Binary);
    EXPECT_EQ(scene::read_stl(data).triangles.size(), 4u);
}

TEST(StlData, TextFile_GivesNameAndTriangles)
{
    const TriangleMesh mesh = scene::read_stl(kText);

    EXPECT_EQ(mesh.name, "corner");
    EXPECT_EQ(mesh.triangles.size(), 1u);
    EXPECT_EQ(mesh.normals[0], (scene::Vector3{0, 0, 1}));
}

TEST(StlData, Samples_AreClosedSurfaces)
{
    // On a closed surface without borders each edge belongs to two triangles: 2 E = 3 F, V - E + F
    // = 2.
    for (const char* name : {"vase.stl", "rock.stl"}) {
        const TriangleMesh mesh = scene::read_stl(sample(name));
        EXPECT_EQ(mesh.triangles.size() + 4, mesh.vertices.size() * 2) << name;
    }
}

TEST(StlData, DamagedFiles_AreRefusedWithThePlace)
{
    EXPECT_EQ(message_of(""), "byte 0: the file ends inside its header");
    EXPECT_EQ(message_of(std::string(83, 'x')), "byte 83: the file ends inside its header");
    std::string data = scene::write_stl(tetrahedron());
    EXPECT_EQ(message_of(data.substr(0, 200)),
              "byte 80: 4 triangles need 284 bytes, the file has 200");
    EXPECT_EQ(message_of(data + "x"), "byte 80: 4 triangles need 284 bytes, the file has 285");
    std::memcpy(data.data() + 84 + 50 + 12, "\0\0\xc0\x7f", 4);
    EXPECT_EQ(message_of(data), "byte 146: a coordinate is no number");
    EXPECT_EQ(message_of("solid a\nendsolid a\n"), "it holds no facets");
    EXPECT_EQ(message_of("solid a\n facet normal 0 0 1\n outer lop\n"),
              "line 3: \"lop\" stands where \"loop\" is expected");
    EXPECT_EQ(message_of(kText.substr(0, kText.find("endsolid"))),
              "line 9: the text ends before \"endsolid\"");
    EXPECT_EQ(message_of("solid a\nvertex 0 0 0\n"),
              "line 2: \"vertex\" stands where a facet is expected");
}

TEST(StlData, ClaimOfManyTriangles_CostsNothing)
{
    std::string data(84, ' ');
    std::memcpy(data.data() + 80, "\xff\xff\xff\xff", 4);

    EXPECT_EQ(message_of(data),
              "byte 80: 4294967295 triangles need 214748364834 bytes, the file has 84");
}

TEST(StlData, EveryCutLength_IsRefused)
{
    const std::string data = scene::write_stl(tetrahedron());
    for (std::size_t size = 0; size < data.size(); ++size)
        EXPECT_THROW(static_cast<void>(scene::read_stl(data.substr(0, size))), GLibraryException)
            << size;
    for (std::size_t size = 0; size + 10 < kText.size(); ++size)
        EXPECT_THROW(static_cast<void>(scene::read_stl(kText.substr(0, size))), GLibraryException)
            << size;
}

TEST(StlData, ForeignStarts_AreNone)
{
    EXPECT_EQ(scene::recognise_stl("", 0), StlKind::None);
    EXPECT_EQ(scene::recognise_stl("v 0 0 0\n", 8), StlKind::None);
    EXPECT_EQ(scene::recognise_stl(std::string(84, '\0'), 84), StlKind::None);
}
