#include "scene_module/ObjText.h"

#include "foundation/GException.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <fstream>
#include <iterator>

using scene::TriangleMesh;

namespace {

std::string message_of(const std::string& text)
{
    try {
        static_cast<void>(scene::read_obj(text));
        return "none";
    } catch (const GLibraryException& error) {
        return error.what();
    }
}

const std::string kSquare = "v 0 0 0\nv 1 0 0\nv 1 1 0\nv 0 1 0\n";

}  // namespace

TEST(ObjText, AllFormsOfCorners_GiveTheSameTriangles)
{
    const std::string head = kSquare + "vt 0 0\nvn 0 0 1\n";
    for (const char* face : {"f 1 2 3", "f 1/1 2/1 3/1", "f 1//1 2//1 3//1", "f 1/1/1 2/1/1 3/1/1",
                             "f -4 -3 -2", "f -4//-1 -3//-1 -2//-1"}) {
        const TriangleMesh mesh = scene::read_obj(head + face + "\n");
        ASSERT_EQ(mesh.triangles.size(), 1u) << face;
        EXPECT_EQ(mesh.triangles[0], (TriangleMesh::Triangle{0, 1, 2})) << face;
        EXPECT_EQ(mesh.vertices.size(), 4u) << face;
        EXPECT_EQ(mesh.normals[0], (scene::Vector3{0, 0, 1})) << face;
    }
}

TEST(ObjText, Polygon_IsCutIntoAFan)
{
    const TriangleMesh mesh = scene::read_obj(kSquare + "f 1 2 3 4\n");

    ASSERT_EQ(mesh.triangles.size(), 2u);
    EXPECT_EQ(mesh.triangles[0], (TriangleMesh::Triangle{0, 1, 2}));
    EXPECT_EQ(mesh.triangles[1], (TriangleMesh::Triangle{0, 2, 3}));
}

TEST(ObjText, PositionWithTwoNormals_BecomesTwoVertices)
{
    const TriangleMesh mesh =
        scene::read_obj(kSquare + "vn 0 0 1\nvn 0 0 -1\nf 1//1 2//1 3//1\nf 3//2 2//2 1//2\n");

    EXPECT_EQ(mesh.vertices.size(), 7u);
    const auto& back = mesh.triangles[1];
    EXPECT_EQ(mesh.vertices[back[0]], mesh.vertices[2]);
    EXPECT_EQ(mesh.normals[back[0]], (scene::Vector3{0, 0, -1}));
    EXPECT_EQ(mesh.normals[mesh.triangles[0][0]], (scene::Vector3{0, 0, 1}));
}

TEST(ObjText, MissingNormals_AreWeightedByArea)
{
    // The large triangle faces z, the small one x; they share the first vertex.
    const TriangleMesh mesh =
        scene::read_obj("v 0 0 0\nv 10 0 0\nv 0 10 0\nv 0 1 0\nv 0 0 1\nf 1 2 3\nf 1 4 5\n");

    EXPECT_NEAR(mesh.normals[0].z, 100 / std::hypot(100, 1), 1e-5);
    EXPECT_NEAR(mesh.normals[0].x, 1 / std::hypot(100, 1), 1e-5);
}

TEST(ObjText, CommentsGroupsAndLineEnds_ArePassedOver)
{
    const TriangleMesh mesh = scene::read_obj(
        "# a comment\r\nmtllib x.mtl\r\no My model\r\n\r\ng a b\rs off\nusemtl red\n" + kSquare +
        "f 1 2 \\\n 3 # here too\nl 1 2\n");

    EXPECT_EQ(mesh.name, "My model");
    EXPECT_EQ(mesh.triangles.size(), 1u);
}

TEST(ObjText, Numbers_AreReadTheSameInEveryLocale)
{
    const char* const changed = std::setlocale(LC_ALL, "de_DE.UTF-8");  // there or not
    static_cast<void>(changed);
    const TriangleMesh mesh =
        scene::read_obj("v +1.5 -2.25e1 .5\nv 1 0 0\nv 1e-400 1 0\nf 1 2 3\n");
    std::setlocale(LC_ALL, "C");

    EXPECT_EQ(mesh.vertices[0], (scene::Vector3{1.5f, -22.5f, 0.5f}));
    EXPECT_EQ(mesh.vertices[2].x, 0.0f);
}

TEST(ObjText, DamagedFiles_AreRefusedWithTheLine)
{
    EXPECT_EQ(message_of("v 1 2\n"), "line 1: a coordinate is missing");
    EXPECT_EQ(message_of("\nv 1 2 x\n"), "line 2: \"x\" is no number that a coordinate can have");
    EXPECT_EQ(message_of("v 1 2 nan\n"), "line 1: \"nan\" is no number that a coordinate can have");
    EXPECT_EQ(message_of("v 1 2 1e39\n"),
              "line 1: \"1e39\" is no number that a coordinate can have");
    EXPECT_EQ(message_of(kSquare + "f 1 2\n"), "line 5: a face has 2 corners, it needs 3 or more");
    EXPECT_EQ(message_of(kSquare + "f 1 2 0\n"), "line 5: the index in \"0\" is out of range");
    EXPECT_EQ(message_of(kSquare + "f 1 2 -5\n"),
              "line 5: the index in \"-5\" reaches back before the first");
    EXPECT_EQ(message_of(kSquare + "f 1 2 9\n"), "line 5: a face names vertex 9, the file has 4");
    EXPECT_EQ(message_of(kSquare + "f 1//1 2//1 3//1\n"),
              "line 5: a face names normal 1, the file has 0");
    EXPECT_EQ(message_of(kSquare + "f 1 2 3x\n"), "line 5: \"3x\" is no corner of a face");
    EXPECT_EQ(message_of(kSquare + "f 1/1/1/1 2 3\n"),
              "line 5: \"1/1/1/1\" is no corner of a face");
    EXPECT_EQ(message_of(kSquare + "f 99999999999999999999 2 3\n"),
              "line 5: the index in \"99999999999999999999\" is out of range");
    EXPECT_EQ(message_of(kSquare), "it holds no faces");
    EXPECT_EQ(message_of(""), "it holds no faces");
}

TEST(ObjText, FaceBeforeItsVertices_IsRead)
{
    EXPECT_EQ(scene::read_obj("f 1 2 3\n" + kSquare).triangles.size(), 1u);
}

TEST(ObjText, EveryCutLength_IsReadOrRefused)
{
    const std::string text = "o cut\n" + kSquare + "vn 0 0 1\nvn 0 1 0\nf 1//1 2//2 3//1 -1//-1\n";
    for (std::size_t size = 0; size < text.size(); ++size) {
        try {
            const TriangleMesh mesh = scene::read_obj(text.substr(0, size));
            for (const auto& triangle : mesh.triangles)
                EXPECT_LT(triangle[2], mesh.vertices.size());
            EXPECT_EQ(mesh.normals.size(), mesh.vertices.size());
        } catch (const GLibraryException& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
}

TEST(ObjText, WrittenMesh_ReadsBackTheSame)
{
    std::ifstream in(std::string(ZMR_TEST_DATA) + "/ring.obj", std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    const TriangleMesh mesh = scene::read_obj(text);
    ASSERT_EQ(mesh.triangles.size(), 44u * 22 * 2);

    const TriangleMesh again = scene::read_obj(scene::write_obj(mesh));

    EXPECT_EQ(again.name, "Ring");
    EXPECT_EQ(again.vertices, mesh.vertices);
    EXPECT_EQ(again.triangles, mesh.triangles);
    for (std::size_t i = 0; i < mesh.normals.size(); ++i)
        EXPECT_NEAR(again.normals[i].x, mesh.normals[i].x, 1e-6);
}
