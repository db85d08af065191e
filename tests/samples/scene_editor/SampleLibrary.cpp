#include "SampleLibrary.h"

#include "graphics/GIconMaker.h"
#include "odb/ODB_Mediator.h"

#include <cstdio>
#include <memory>

void add_picture(ObjectDatabase& database, const GResourcePath& path, const char* name, int width,
                 int height, bool with_icon)
{
    PixelMap picture(width, height, AbstractImage::Format24, nullptr);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            picture.set_pixel(x, y, RGB_Color{200, 60, 10});
    }
    database.append_object(&picture, path, name, nullptr);
    if (ODB_Mediator* const mediator = database.get_mediator(path, name);
        mediator != nullptr && with_icon)
        mediator->set_icon(GIconMaker::Make(picture, 96));
}

SampleLibrary::SampleLibrary() : file_(folder_.file("sample.odb"))
{
    ObjectDatabase database(file_.c_str(), GIO::OpenReadWrite);
    const GResourcePath root;
    add_picture(database, root, "root a", 200, 100, true);
    add_picture(database, root, "root b", 10, 10, false);
    add_picture(database, root, "Root C", 16, 16, true);
    GResourcePath deeper;
    deeper += "deep";
    deeper += "er";
    add_picture(database, deeper, "one", 8, 8, true);
    add_picture(database, deeper, "two", 8, 8, true);
    GResourcePath plain;
    plain += "Plain";
    add_picture(database, plain, "three", 8, 8, true);
}

SampleLibrary::SampleLibrary(int count, int icon_every) : file_(folder_.file("large.odb"))
{
    ObjectDatabase database(file_.c_str(), GIO::OpenReadWrite);
    const ResourceFile::CommitScope whole(database);
    for (int i = 0; i < count; ++i) {
        char name[32];
        std::snprintf(name, sizeof name, "entry %06d", i);
        add_picture(database, GResourcePath(), name, 4, 4, icon_every != 0 && i % icon_every == 0);
    }
}
