// Writes the golden libraries into a folder: make_golden FOLDER

#include "GoldenLibraries.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

int main(int count, char** words)
{
    if (count != 2) {
        std::fputs("make_golden FOLDER\n", stderr);
        return 2;
    }
    for (const GoldenLibrary& library : golden_libraries()) {
        const auto written = write_golden(library);
        for (std::size_t i = 0; i < written.size(); ++i) {
            std::ofstream file(std::filesystem::path(words[1]) / library.files[i],
                               std::ios::binary);
            file.write(written[i].data(), static_cast<std::streamsize>(written[i].size()));
            if (!file.flush()) {
                std::fprintf(stderr, "%s can't be written\n", library.files[i]);
                return 1;
            }
        }
    }
    return 0;
}
