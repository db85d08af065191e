#pragma once

#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GObjectFileFormat.h"
#include "scene_editor/core/SceneDocument.h"
#include "scene_interface/SceneItem.h"

#include <stdexcept>
#include <string>

/// A new scene with the module that brings its classes, as the program has them.
class LoadedScene {
public:
    LoadedScene()
    {
        if (!document.begin_new())
            throw std::runtime_error("the module has brought no scene");
        document.scene()->set_view_size(400, 300, 96);
        changes = 0;
    }

    /// Adds a sample model there.
    GResponder* add(const char* label, double x, double y)
    {
        const std::string file = std::string(ZMR_TEST_DATA) + "/ring.obj";
        const GObjectFileFormat* const format = GObjectFileFormat::Find(file.c_str());
        GResponder* const added =
            document.scene()->add_model(format->read_object(file.c_str()), label);
        scene::Place place = item(added).place();
        place.x = x;
        place.y = y;
        item(added).set_place(place);
        return added;
    }
    [[nodiscard]] static scene::SceneItem& item(GResponder* responder)
    {
        return dynamic_cast<scene::SceneItem&>(*responder);
    }

    const GDynamicLinkLibrary module{ZMR_SCENE_MODULE, 0};
    int changes = 0;
    editor::SceneDocument document{[this] { ++changes; }};
};
