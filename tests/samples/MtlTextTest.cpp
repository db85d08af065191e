#include "scene_module/MtlText.h"

#include "foundation/GException.h"

#include <gtest/gtest.h>

namespace {

std::string message_of(const std::string& text)
{
    try {
        static_cast<void>(scene::read_mtl(text));
        return "none";
    } catch (const GLibraryException& error) {
        return error.what();
    }
}

}  // namespace

TEST(MtlText, Material_GivesItsValues)
{
    const auto values = scene::read_mtl(
        "# brass\r\nnewmtl Old brass\r\nKd 0.5 .25 1\nKs 0.125\nNs 55\nd 0.5\nmap_Kd wood.png\n");

    EXPECT_EQ(values.name, "Old brass");
    EXPECT_EQ(values.diffuse, (scene::Vector3{0.5f, 0.25f, 1}));
    EXPECT_EQ(values.specular, (scene::Vector3{0.125f, 0.125f, 0.125f}));
    EXPECT_EQ(values.shininess, 55);
    EXPECT_EQ(values.opacity, 0.5f);
}

TEST(MtlText, OtherWaysToTell_AreUnderstoodOrPassedOver)
{
    EXPECT_EQ(scene::read_mtl("newmtl a\nTr 0.75\n").opacity, 0.25f);
    EXPECT_EQ(scene::read_mtl("newmtl a\nd -halo 0.25\n").opacity, 0.25f);
    EXPECT_EQ(scene::read_mtl("newmtl a\nKd spectral x.rfl 1\n").diffuse,
              scene::MaterialValues().diffuse);
    EXPECT_EQ(scene::read_mtl("newmtl a\nKd 7 -1 0\nNs 5000\n").diffuse, (scene::Vector3{1, 0, 0}));
}

TEST(MtlText, DamagedFiles_AreRefusedWithTheLine)
{
    EXPECT_EQ(message_of(""), "it holds no material");
    EXPECT_EQ(message_of("Kd 1 1 1\n"), "line 1: \"Kd\" stands before \"newmtl\"");
    EXPECT_EQ(message_of("newmtl a\nKd 1 1\n"), "line 2: a colour is missing");
    EXPECT_EQ(message_of("newmtl a\nNs x\n"),
              "line 2: \"x\" is no number that the shininess can have");
}

TEST(MtlText, SeveralMaterials_AreRefusedBecauseOneWouldBeLost)
{
    EXPECT_EQ(message_of("newmtl a\nNs 1\nnewmtl b\n"),
              "line 3: a second material begins; one file can give one object");
}
