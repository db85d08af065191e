// turning_movie MODULE MODEL MOVIE: writes a movie of the model, which turns once. The module
// brings the classes of models and scenes, and the formats of their files.
#include "foundation/GDynamicLinkLibrary.h"
#include "foundation/GException.h"
#include "odb/ObjectImport.h"
#include "responder/GResponder.h"
#include "scene_editor/core/SceneDocument.h"
#include "scene_interface/SceneItem.h"
#include "turning_movie/MovieWriter.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

constexpr int kWidth_px = 200;
constexpr int kHeight_px = 150;
constexpr int kFrames = 36;
constexpr std::uint32_t kFramesASecond = 12;
constexpr int kDotsPerInch = 96;

int refuse(const char* what, const char* why)
{
    std::fprintf(stderr, "turning_movie: %s: %s\n", what, why);
    return 1;
}

std::string film(scene::SceneRoot& root, scene::SceneItem& item)
{
    std::vector<std::uint32_t> pixels(std::size_t{kWidth_px} * kHeight_px);
    MovieWriter movie(kWidth_px, kHeight_px, kFramesASecond);
    for (int frame = 0; frame < kFrames; ++frame) {
        scene::Place place = item.place();
        place.turn_deg = 360.0 * frame / kFrames;
        item.set_place(place);
        root.draw({pixels.data(), kWidth_px, kHeight_px});
        movie.add(pixels);
    }
    return movie.bytes();
}

int write_movie(const char* model_file, const char* movie_file)
{
    auto [model, reason] = zmr::import_object(model_file);
    if (model == nullptr)
        return refuse(model_file, reason.c_str());
    editor::SceneDocument document([] {});
    if (!document.begin_new())
        return refuse(model_file, "the module brings no scenes");
    document.scene()->set_view_size(kWidth_px, kHeight_px, kDotsPerInch);
    GResponder* const added = document.scene()->add_model(model.get(), "model");
    auto* const item = dynamic_cast<scene::SceneItem*>(added);
    if (item == nullptr)
        return refuse(model_file, "it is no model");
    static_cast<void>(model.release());  // the scene's now
    document.scene()->view_all();
    document.root()->set_current(nullptr);  // no outline
    const std::string movie = film(*document.scene(), *item);
    std::ofstream out(movie_file, std::ios::binary);
    out.write(movie.data(), static_cast<std::streamsize>(movie.size()));
    return out.flush() ? 0 : refuse(movie_file, "it can't be written");
}

}  // namespace

int main(int count, char** words)
{
    if (count != 4) {
        std::fputs("turning_movie MODULE MODEL MOVIE\n", stderr);
        return 2;
    }
    const GDynamicLinkLibrary module(words[1], 0);
    if (module.module == nullptr)
        return refuse(words[1], GDynamicLinkLibrary::LastError().text);
    try {
        return write_movie(words[2], words[3]);
    } catch (const GException& failure) {
        return refuse(words[2], failure.what());
    }
}
