// Any bytes as an OBJ text: a mesh whose parts fit together, and which survives being written and
// read, or a GLibraryException.
#include "foundation/GException.h"
#include "scene_module/ObjText.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    static_cast<void>(scene::looks_like_obj(text));
    try {
        const scene::TriangleMesh mesh = scene::read_obj(text);
        if (mesh.normals.size() != mesh.vertices.size() || mesh.triangles.empty())
            std::abort();
        for (const auto& triangle : mesh.triangles) {
            for (const std::uint32_t corner : triangle) {
                if (corner >= mesh.vertices.size())
                    std::abort();
            }
        }
        const scene::TriangleMesh again = scene::read_obj(scene::write_obj(mesh));
        if (again.vertices != mesh.vertices || again.triangles != mesh.triangles)
            std::abort();
    } catch (const GLibraryException&) {
    }
    return 0;
}
