#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GMetaClass.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/GStreamable.h"
#include "graphics/GIconMaker.h"
#include "graphics/PixelMap.h"
#include "responder/GResponder.h"
#include "scene_interface/SceneItem.h"
#include "scene_interface/SceneRoot.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

const std::string kRing = std::string(ZMR_TEST_DATA) + "/ring.obj";

}  // namespace

TEST(SceneModule, Loaded_GivesClassesFormatsAndIcons)
{
    const GDynamicLinkLibrary module(ZMR_SCENE_MODULE, 0);
    ASSERT_NE(module.module, nullptr) << GDynamicLinkLibrary::LastError().text;

    const GMetaClass* const mesh_class = GMetaClass::FindByName("SceneMesh");
    ASSERT_NE(mesh_class, nullptr);
    EXPECT_EQ(mesh_class->get_module(), module.module);
    EXPECT_NE(GMetaClass::FindByName("SceneMaterial"), nullptr);
    const GObjectFileFormat* const format = GObjectFileFormat::Find(kRing.c_str());
    ASSERT_NE(format, nullptr);
    GStreamable* const object = format->read_object(kRing.c_str());
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->getMetaClass(), mesh_class);
    EXPECT_NE(std::unique_ptr<PixelMap>(GIconMaker::Make(*object, 32)), nullptr);
    GStreamable::Destroy(object);
}

TEST(SceneModule, SceneBuiltByName_OffersItsInterfacesToAHostThatDoesNotLinkIt)
{
    const GDynamicLinkLibrary module(ZMR_SCENE_MODULE, 0);
    ASSERT_NE(module.module, nullptr) << GDynamicLinkLibrary::LastError().text;
    const GMetaClass* const scene_class = GMetaClass::FindByName("SceneSpace");
    ASSERT_NE(scene_class, nullptr);
    auto* const responder = zmr::class_cast<GResponder>(scene_class->buildObject());
    ASSERT_NE(responder, nullptr);
    auto* const root = dynamic_cast<scene::SceneRoot*>(responder);
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(dynamic_cast<scene::SceneItem*>(responder), nullptr);

    const GObjectFileFormat* const format = GObjectFileFormat::Find(kRing.c_str());
    ASSERT_NE(format, nullptr);
    GResponder* const added = root->add_model(format->read_object(kRing.c_str()), "ring");
    ASSERT_NE(added, nullptr);
    auto* const item = dynamic_cast<scene::SceneItem*>(added);
    ASSERT_NE(item, nullptr);
    EXPECT_GT(item->triangle_count(), 100u);
    EXPECT_EQ(responder->get_current(), added);
    GStreamable::Destroy(responder);
}

TEST(SceneModule, Unloaded_LeavesNothingBehind)
{
    const std::size_t formats_before = GObjectFileFormat::All().size();
    {
        const GDynamicLinkLibrary module(ZMR_SCENE_MODULE, 0);
        ASSERT_NE(module.module, nullptr) << GDynamicLinkLibrary::LastError().text;
        EXPECT_EQ(GObjectFileFormat::All().size(), formats_before + 3);
    }

    EXPECT_EQ(GMetaClass::FindByName("SceneMesh"), nullptr);
    EXPECT_EQ(GMetaClass::FindByName("SceneMaterial"), nullptr);
    EXPECT_EQ(GMetaClass::FindByName("SceneSpace"), nullptr);
    EXPECT_EQ(GObjectFileFormat::All().size(), formats_before);
    EXPECT_EQ(GObjectFileFormat::Find(kRing.c_str()), nullptr);
}
