#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/OwnedObject.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMap.h"
#include "scene_module/MeshDrawing.h"
#include "scene_module/SceneMaterial.h"
#include "scene_module/SceneMesh.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <memory>

namespace {

using OwnedObject = zmr::OwnedObject<>;

std::string sample(const char* name)
{
    return std::string(ZMR_TEST_DATA) + "/" + name;
}

OwnedObject read(const std::string& file)
{
    const GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
    return OwnedObject(format == nullptr ? nullptr : format->read_object(file.c_str()));
}

std::string class_in(const std::string& file)
{
    GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
    return format == nullptr ? "" : format->read_object_class_name(file.c_str()).text;
}

class SceneFormats : public testing::Test {
protected:
    std::string make(const char* name, const std::string& bytes) const
    {
        std::ofstream(folder_.file(name), std::ios::binary) << bytes;
        return folder_.file(name);
    }
    TemporaryFolder folder_;
};

// How many pixels can be seen.
std::size_t visible_pixels(const PixelMap& icon)
{
    std::size_t count = 0;
    for (int y = 0; y < icon.get_height(); ++y) {
        for (int x = 0; x < icon.get_width(); ++x)
            count += icon.get_alpha(x, y) > 128 ? 1u : 0u;
    }
    return count;
}

}  // namespace

TEST_F(SceneFormats, Samples_AreRecognisedAndRead)
{
    for (const char* name : {"ring.obj", "vase.stl", "rock.stl"}) {
        EXPECT_EQ(class_in(sample(name)), "SceneMesh");
        const OwnedObject object = read(sample(name));
        const auto* mesh = zmr::class_cast<SceneMesh>(object.get());
        ASSERT_NE(mesh, nullptr) << name;
        EXPECT_GT(mesh->shape().triangles.size(), 300u) << name;
    }
    EXPECT_EQ(class_in(sample("brass.mtl")), "SceneMaterial");
    const OwnedObject object = read(sample("brass.mtl"));
    const auto* material = zmr::class_cast<SceneMaterial>(object.get());
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(material->get_name(), "Brass");
}

TEST_F(SceneFormats, ModelWithoutAName_TakesThatOfItsFile)
{
    const OwnedObject object = read(sample("vase.stl"));

    ASSERT_NE(object, nullptr);
    EXPECT_EQ(zmr::class_cast<SceneMesh>(object.get())->get_name(), "vase");
}

TEST_F(SceneFormats, ForeignFiles_AreNobodys)
{
    EXPECT_EQ(class_in(make("code.obj", std::string("\x64\x86\0\0v 0 0 0", 11))), "");
    EXPECT_EQ(class_in(make("letter.txt", "solid ground under our feet\n")), "");
    EXPECT_EQ(class_in(make("empty.stl", "")), "");
    EXPECT_EQ(class_in(make("empty.obj", "")), "");
    EXPECT_EQ(class_in(folder_.file("missing.stl")), "");
    EXPECT_EQ(class_in(sample("badge.png")), "PixelMap");
    for (GObjectFileFormat* format : GObjectFileFormat::All())
        EXPECT_EQ(format->read_object(make("letter.txt", "Dear reader").c_str()), nullptr);
}

TEST_F(SceneFormats, BinaryStlOfAnyName_IsRecognisedByContent)
{
    std::filesystem::copy_file(sample("vase.stl"), folder_.file("vase.model"));

    EXPECT_EQ(class_in(folder_.file("vase.model")), "SceneMesh");
}

TEST_F(SceneFormats, DamagedFile_ThrowsWithTheReason)
{
    const std::string file = make("cut.stl", "too short");
    GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
    ASSERT_NE(format, nullptr);

    EXPECT_THROW(static_cast<void>(format->read_object(file.c_str())), GLibraryException);
}

TEST_F(SceneFormats, Writing_GoesByTheExtension)
{
    const OwnedObject mesh = read(sample("rock.stl"));
    ASSERT_NE(mesh, nullptr);
    int taken = 0;
    for (const char* name : {"rock.obj", "rock.STL", "rock.txt"}) {
        for (const GObjectFileFormat* format : GObjectFileFormat::All())
            taken += format->write_object(folder_.file(name).c_str(), mesh.get());
    }

    EXPECT_EQ(taken, 2);
    for (const char* name : {"rock.obj", "rock.STL"}) {
        const OwnedObject again = read(folder_.file(name));
        ASSERT_NE(again, nullptr) << name;
        EXPECT_EQ(zmr::class_cast<SceneMesh>(again.get())->shape().triangles.size(),
                  zmr::class_cast<SceneMesh>(mesh.get())->shape().triangles.size());
    }
}

TEST_F(SceneFormats, WritingWhereNothingCanBe_GivesZero)
{
    const OwnedObject mesh = read(sample("rock.stl"));
    for (const GObjectFileFormat* format : GObjectFileFormat::All())
        EXPECT_EQ(format->write_object(folder_.file("none/rock.obj").c_str(), mesh.get()), 0);
}

TEST(SceneIcons, ModelsAndMaterials_FillTheirSquareOnATransparentGround)
{
    for (const char* name : {"ring.obj", "vase.stl", "rock.stl", "brass.mtl"}) {
        const OwnedObject object = read(sample(name));
        ASSERT_NE(object, nullptr);
        const std::unique_ptr<PixelMap> icon(GIconMaker::Make(*object, 64));
        ASSERT_NE(icon, nullptr) << name;
        EXPECT_EQ(icon->get_width(), 64);
        EXPECT_EQ(icon->get_height(), 64);
        EXPECT_EQ(icon->get_format(), AbstractImage::Format32);
        EXPECT_EQ(icon->get_alpha(0, 0), 0) << name;
        EXPECT_GT(visible_pixels(*icon), 64u * 64 / 5) << name;
        EXPECT_LT(visible_pixels(*icon), 64u * 64) << name;
    }
}

TEST(SceneIcons, MeshWithoutASize_HasNone)
{
    scene::TriangleMesh shape;
    EXPECT_EQ(GIconMaker::Make(SceneMesh(shape), 64), nullptr);
    shape.vertices = {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}};
    shape.triangles = {{0, 1, 2}};
    shape.compute_normals();
    EXPECT_EQ(GIconMaker::Make(SceneMesh(shape), 64), nullptr);
}

TEST(SceneIcons, FarAndFlatMeshes_AreDrawn)
{
    scene::TriangleMesh shape;
    shape.vertices = {{-3e38f, -3e38f, 0}, {3e38f, -3e38f, 0}, {0, 3e38f, 0}};
    shape.triangles = {{0, 1, 2}};
    shape.compute_normals();

    const std::unique_ptr<PixelMap> icon(GIconMaker::Make(SceneMesh(shape), 32));

    ASSERT_NE(icon, nullptr);
    EXPECT_GT(visible_pixels(*icon), 100u);
}

TEST(SceneIcons, NearerTriangle_HidesTheOneBehind)
{
    // Two walls, one behind the other and turned round: the order of drawing must not matter.
    scene::TriangleMesh near_only;
    near_only.vertices = {{-1, -1, 1}, {1, -1, 1}, {0, 1, 1}};
    near_only.triangles = {{0, 1, 2}};
    near_only.compute_normals();
    scene::TriangleMesh both = near_only;
    both.vertices.insert(both.vertices.end(), {{-1, -1, -9}, {1, -1, -9}, {0, 1, -9}});
    both.triangles.push_back({3, 5, 4});
    both.compute_normals();
    scene::TriangleMesh turned = both;
    std::swap(turned.triangles[0], turned.triangles[1]);

    EXPECT_EQ(scene::draw_mesh(both, 60).pixels, scene::draw_mesh(turned, 60).pixels);
}

TEST(GIconMaker, Picture_IsFittedAndNeverEnlarged)
{
    const PixelMap wide(300, 100, AbstractImage::Format24, nullptr);
    const PixelMap narrow(1, 5000, AbstractImage::Format32, nullptr);
    const PixelMap small(5, 7, AbstractImage::Format32, nullptr);
    const PixelMap empty(0, 0, AbstractImage::Format24, nullptr);

    const std::unique_ptr<PixelMap> wide_icon(GIconMaker::Make(wide, 96));
    ASSERT_NE(wide_icon, nullptr);
    EXPECT_EQ(wide_icon->get_width(), 96);
    EXPECT_EQ(wide_icon->get_height(), 32);
    const std::unique_ptr<PixelMap> narrow_icon(GIconMaker::Make(narrow, 96));
    ASSERT_NE(narrow_icon, nullptr);
    EXPECT_EQ(narrow_icon->get_width(), 1);
    EXPECT_EQ(narrow_icon->get_height(), 96);
    const std::unique_ptr<PixelMap> small_icon(GIconMaker::Make(small, 96));
    ASSERT_NE(small_icon, nullptr);
    EXPECT_EQ(small_icon->get_width(), 5);
    EXPECT_EQ(small_icon->get_height(), 7);
    EXPECT_EQ(GIconMaker::Make(empty, 96), nullptr);
    EXPECT_EQ(GIconMaker::Make(small, 0), nullptr);
    EXPECT_EQ(GIconMaker::Make(small, GIconMaker::kMaxSize_px + 1), nullptr);
}
