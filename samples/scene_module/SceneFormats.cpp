// The file formats that this module gives to every program that loads it. They register as the
// module loads and leave as it unloads.
#include "foundation/GFile.h"
#include "foundation/GObjectFileFormat.h"
#include "scene_module/MtlText.h"
#include "scene_module/ObjText.h"
#include "scene_module/SceneMaterial.h"
#include "scene_module/SceneMesh.h"
#include "scene_module/SourceFile.h"
#include "scene_module/StlData.h"

#include <utility>

namespace {

using namespace scene;

// A model without a name of its own gets that of its file.
GStreamable* make_mesh(TriangleMesh shape, const char* file)
{
    if (shape.name.empty()) {
        GFile name(file);
        name.just_name();
        name.replace_extension("");
        shape.name = name.view();
    }
    return new SceneMesh(std::move(shape));
}

// Wavefront OBJ. The text has no mark of its own, so that the name decides, unless the content
// can't be text: object files of compilers have the same extension.
class ObjFormat final : public GObjectFileFormat {
public:
    ObjFormat() { Register(*this); }

    unsigned char write_object(const char* file, GStreamable* object) const override
    {
        const auto* mesh = zmr::class_cast<SceneMesh>(object);
        if (mesh == nullptr || !has_extension(file, "obj"))
            return 0;
        return write_whole_file(file, write_obj(mesh->shape())) ? 1 : 0;
    }
    GStreamable* read_object(const char* file) const override
    {
        return recognises(file) ? make_mesh(read_obj(read_whole_file(file)), file) : nullptr;
    }
    GString read_object_class_name(const char* file) override
    {
        return recognises(file) ? SceneMesh::metaclass_.name : "";
    }

private:
    static bool recognises(const char* file)
    {
        return has_extension(file, "obj") && looks_like_obj(read_file_head(file).bytes);
    }
};

// STL of both kinds, recognised by content. A file that is named so and holds neither is a damaged
// one: the binary kind has no mark but its size.
class StlFormat final : public GObjectFileFormat {
public:
    StlFormat() { Register(*this); }

    unsigned char write_object(const char* file, GStreamable* object) const override
    {
        const auto* mesh = zmr::class_cast<SceneMesh>(object);
        if (mesh == nullptr || !has_extension(file, "stl"))
            return 0;
        return write_whole_file(file, write_stl(mesh->shape())) ? 1 : 0;
    }
    GStreamable* read_object(const char* file) const override
    {
        return recognises(file) ? make_mesh(read_stl(read_whole_file(file)), file) : nullptr;
    }
    GString read_object_class_name(const char* file) override
    {
        return recognises(file) ? SceneMesh::metaclass_.name : "";
    }

private:
    static bool recognises(const char* file)
    {
        const FileHead head = read_file_head(file);
        if (has_extension(file, "stl"))
            return !head.bytes.empty();
        return recognise_stl(head.bytes, head.file_bytes) == StlKind::Binary ||
               (recognise_stl(head.bytes, head.file_bytes) == StlKind::Text &&
                head.bytes.find("facet") != std::string::npos);
    }
};

// Wavefront MTL with one material.
class MtlFormat final : public GObjectFileFormat {
public:
    MtlFormat() { Register(*this); }

    unsigned char write_object(const char*, GStreamable*) const override { return 0; }
    GStreamable* read_object(const char* file) const override
    {
        return recognises(file) ? new SceneMaterial(read_mtl(read_whole_file(file))) : nullptr;
    }
    GString read_object_class_name(const char* file) override
    {
        return recognises(file) ? SceneMaterial::metaclass_.name : "";
    }

private:
    static bool recognises(const char* file)
    {
        const FileHead head = read_file_head(file);
        return looks_like_mtl(head.bytes) ||
               (has_extension(file, "mtl") && !head.bytes.empty() && is_plain_text(head.bytes));
    }
};

ObjFormat obj_format;
StlFormat stl_format;
MtlFormat mtl_format;

}  // namespace
