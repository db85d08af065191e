// Pictures beside their peers: Qt 6, bare libpng and stb. After the rows of Google Benchmark the
// ratios of the medians are printed, peer over ours. Times are processor time of all threads,
// because Qt scales on several and the others on one.

#include "graphics/ImageCodecs.h"
#include "graphics/Resampling.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <string>

#include <png.h>
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wall"
#pragma GCC diagnostic ignored "-Wextra"
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wpedantic"
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
#pragma GCC diagnostic ignored "-Wunused-function"
#define STB_IMAGE_IMPLEMENTATION
#define STB_IMAGE_STATIC
#include <stb_image.h>
#define STB_IMAGE_RESIZE_IMPLEMENTATION
#define STB_IMAGE_RESIZE_STATIC
#include <stb_image_resize.h>
#pragma GCC diagnostic pop

namespace {

using zmr::PixelBuffer;

/// Something between a photograph and noise, with alpha.
PixelBuffer sample_picture(int side, bool opaque)
{
    std::mt19937 random(3);
    PixelBuffer picture(side, side, 4);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            unsigned char* pixel = picture.pixel(x, y);
            const auto noise = static_cast<int>(random() % 16);
            pixel[0] = static_cast<unsigned char>((x / 3 + noise) & 255);
            pixel[1] = static_cast<unsigned char>((y / 2 + noise) & 255);
            pixel[2] = static_cast<unsigned char>(((x + y) / 4 + noise) & 255);
            pixel[3] = opaque ? 255 : static_cast<unsigned char>((x * y / 64) & 255);
        }
    return picture;
}

const PixelBuffer& large()
{
    static const PixelBuffer picture = sample_picture(2048, false);
    return picture;
}

const PixelBuffer& large_opaque()
{
    static const PixelBuffer picture = sample_picture(2048, true);
    return picture;
}

const std::vector<unsigned char>& file_of(const char* kind)
{
    static std::map<std::string, std::vector<unsigned char>> files;
    std::vector<unsigned char>& file = files[kind];
    if (!file.empty())
        return file;
    const PixelBuffer picture = sample_picture(512, true);
    if (std::strcmp(kind, "png") == 0) {
        file = zmr::encode_png(picture);
    } else if (std::strcmp(kind, "tga") == 0) {
        file = zmr::encode_tga(picture);
    } else if (std::strcmp(kind, "bmp_alpha") == 0) {
        file = zmr::encode_bmp(picture);
    } else {  // 32 bits without masks, of which eight are unused
        constexpr std::ptrdiff_t kHeaders = 14 + 40;
        constexpr std::ptrdiff_t kHeadersWithMasks = 14 + 108;
        file = zmr::encode_bmp(picture);
        file.erase(file.begin() + kHeaders, file.begin() + kHeadersWithMasks);
        file[10] = kHeaders;
        file[14] = 40;
        file[30] = 0;  // no compression
    }
    return file;
}

void shrink_ours(benchmark::State& state, const PixelBuffer& picture)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(zmr::scaled_smooth(picture, 96, 96));
}

void shrink_qt(benchmark::State& state, const PixelBuffer& picture, QImage::Format format)
{
    const QImage image(picture.data(), 2048, 2048, format);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            image.scaled(96, 96, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void shrink_stb(benchmark::State& state)
{
    PixelBuffer to(96, 96, 4);
    for (auto _ : state)
        stbir_resize_uint8(large().data(), 2048, 2048, 0, to.data(), 96, 96, 0, 4);
}

void read_limit(benchmark::State& state)
{
    const PixelBuffer& picture = large();
    for (auto _ : state) {
        std::uint64_t sum = 0;
        for (std::size_t at = 0; at < picture.size_bytes(); at += 8) {
            std::uint64_t word = 0;
            std::memcpy(&word, picture.data() + at, 8);
            sum += word;
        }
        benchmark::DoNotOptimize(sum);
    }
}

void decode_ours(benchmark::State& state, zmr::ImageKind kind, const char* file)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(zmr::decode_image(kind, file_of(file)));
}

void decode_stb(benchmark::State& state, const char* file)
{
    const auto& bytes = file_of(file);
    for (auto _ : state) {
        int width = 0;
        int height = 0;
        int channels = 0;
        unsigned char* pixels = stbi_load_from_memory(bytes.data(), static_cast<int>(bytes.size()),
                                                      &width, &height, &channels, 0);
        benchmark::DoNotOptimize(pixels);
        stbi_image_free(pixels);
    }
}

void decode_qt(benchmark::State& state, const char* file, const char* format)
{
    const auto& bytes = file_of(file);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            QImage::fromData(bytes.data(), static_cast<int>(bytes.size()), format));
}

void feed_png(png_structp png, png_bytep to, std::size_t count)
{
    auto* from = static_cast<const unsigned char**>(png_get_io_ptr(png));
    std::memcpy(to, *from, count);
    *from += count;
}

/// The library with nothing around it: rows as they are stored, into memory made once.
void decode_libpng(benchmark::State& state)
{
    std::vector<unsigned char> pixels(512 * 512 * 4);
    std::vector<png_bytep> rows(512);
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = pixels.data() + y * 512 * 4;
    for (auto _ : state) {
        const unsigned char* from = file_of("png").data();
        png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
        png_infop info = png_create_info_struct(png);
        png_set_read_fn(png, &from, feed_png);
        png_read_info(png, info);
        png_read_image(png, rows.data());
        png_read_end(png, nullptr);
        png_destroy_read_struct(&png, &info, nullptr);
        benchmark::DoNotOptimize(pixels.data());
    }
}

void copy_limit(benchmark::State& state)
{
    const PixelBuffer from = sample_picture(512, true);
    for (auto _ : state)
        benchmark::DoNotOptimize(from.copy());
}

/// Keeps the medians for the ratios.
class MedianReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                medians_[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }
    void print_ratio(const char* peer, const char* ours) const
    {
        const auto peer_time = medians_.find(peer);
        const auto our_time = medians_.find(ours);
        if (peer_time != medians_.end() && our_time != medians_.end())
            std::printf("%-22s / %-22s %6.2f\n", peer, ours, peer_time->second / our_time->second);
    }

private:
    std::map<std::string, double> medians_;
};

void add_all()
{
    const auto add = [](const char* name, auto function) {
        benchmark::RegisterBenchmark(name, function)
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()
            ->Repetitions(9)
            ->ReportAggregatesOnly(true);
    };
    using benchmark::State;
    add("read_2048_once", read_limit);
    add("shrink_alpha", [](State& state) { shrink_ours(state, large()); });
    add("shrink_alpha_qt",
        [](State& state) { shrink_qt(state, large(), QImage::Format_ARGB32_Premultiplied); });
    add("shrink_straight_qt",
        [](State& state) { shrink_qt(state, large(), QImage::Format_ARGB32); });
    add("shrink_opaque", [](State& state) { shrink_ours(state, large_opaque()); });
    add("shrink_opaque_qt",
        [](State& state) { shrink_qt(state, large_opaque(), QImage::Format_RGB32); });
    add("shrink_stb", shrink_stb);
    add("png", [](State& state) { decode_ours(state, zmr::ImageKind::Png, "png"); });
    add("png_libpng", decode_libpng);
    add("png_stb", [](State& state) { decode_stb(state, "png"); });
    add("png_qt", [](State& state) { decode_qt(state, "png", "PNG"); });
    add("copy_512", copy_limit);
    add("tga", [](State& state) { decode_ours(state, zmr::ImageKind::Tga, "tga"); });
    add("tga_stb", [](State& state) { decode_stb(state, "tga"); });
    add("bmp", [](State& state) { decode_ours(state, zmr::ImageKind::Bmp, "bmp"); });
    add("bmp_alpha", [](State& state) { decode_ours(state, zmr::ImageKind::Bmp, "bmp_alpha"); });
    add("bmp_alpha_qt", [](State& state) { decode_qt(state, "bmp_alpha", "BMP"); });
    add("bmp_qt", [](State& state) { decode_qt(state, "bmp", "BMP"); });
    add("bmp_stb", [](State& state) { decode_stb(state, "bmp"); });
}

}  // namespace

int main(int count, char** arguments)
{
    benchmark::Initialize(&count, arguments);
    add_all();
    MedianReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    std::printf("\nratios of medians of processor time, peer over ours\n");
    reporter.print_ratio("shrink_alpha_qt", "shrink_alpha");
    reporter.print_ratio("shrink_straight_qt", "shrink_alpha");
    reporter.print_ratio("shrink_opaque_qt", "shrink_opaque");
    reporter.print_ratio("shrink_stb", "shrink_alpha");
    reporter.print_ratio("png_libpng", "png");
    reporter.print_ratio("png_stb", "png");
    reporter.print_ratio("png_qt", "png");
    reporter.print_ratio("tga_stb", "tga");
    reporter.print_ratio("bmp_qt", "bmp");
    reporter.print_ratio("bmp_stb", "bmp");
    reporter.print_ratio("bmp_alpha_qt", "bmp_alpha");
    return 0;
}
