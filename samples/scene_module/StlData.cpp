#include "scene_module/StlData.h"

#include "foundation/GException.h"
#include "scene_module/ObjText.h"
#include "scene_module/TextScanner.h"
#include "scene_module/VertexTable.h"

#include <bit>
#include <cmath>
#include <cstring>
#include <utility>

namespace scene {

namespace {

constexpr std::size_t kHeaderBytes = 84;
constexpr std::size_t kTriangleBytes = 50;

static_assert(std::endian::native == std::endian::little, "STL numbers are read as they lie");

template <class T>
T value_at(std::string_view data, std::size_t position)
{
    T value;
    std::memcpy(&value, data.data() + position, sizeof(T));
    return value;
}

// Joins equal corners into vertices and collects the triangles.
class StlBuilder {
public:
    void add_corner(Vector3 corner)
    {
        // Adding 0 turns -0 into 0, so that both are one place.
        corner = {corner.x + 0.0f, corner.y + 0.0f, corner.z + 0.0f};
        triangle_[corners_] = table_.find_or_add({std::bit_cast<std::uint32_t>(corner.x),
                                                  std::bit_cast<std::uint32_t>(corner.y),
                                                  std::bit_cast<std::uint32_t>(corner.z)});
        if (++corners_ < 3)
            return;
        mesh_.triangles.push_back(triangle_);
        corners_ = 0;
    }
    [[nodiscard]] bool is_full() const
    {
        return mesh_.triangles.size() >= TriangleMesh::kMaxTriangles ||
               table_.keys().size() + 3 > TriangleMesh::kMaxVertices;
    }
    [[nodiscard]] std::size_t triangle_count() const { return mesh_.triangles.size(); }
    [[nodiscard]] TriangleMesh finish(std::string name)
    {
        mesh_.name = std::move(name);
        mesh_.up = UpAxis::Z;
        mesh_.vertices.reserve(table_.keys().size());
        for (const VertexTable::Key& key : table_.keys())
            mesh_.vertices.push_back({std::bit_cast<float>(key[0]), std::bit_cast<float>(key[1]),
                                      std::bit_cast<float>(key[2])});
        mesh_.compute_normals();
        return std::move(mesh_);
    }

private:
    TriangleMesh mesh_;
    VertexTable table_;
    TriangleMesh::Triangle triangle_{};
    std::size_t corners_ = 0;
};

[[noreturn]] void fail_at(std::size_t position, const char* what)
{
    GLibraryException error;
    error.message("byte %llu: %s", static_cast<unsigned long long>(position), what);
    throw error;
}

TriangleMesh read_binary(std::string_view data)
{
    const std::size_t count = (data.size() - kHeaderBytes) / kTriangleBytes;
    StlBuilder builder;
    for (std::size_t i = 0; i < count; ++i) {
        if (builder.is_full())
            fail_at(kHeaderBytes + i * kTriangleBytes, "more triangles than a mesh may hold");
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const std::size_t at = kHeaderBytes + i * kTriangleBytes + 12 * (corner + 1);
            const auto vertex = value_at<Vector3>(data, at);
            if (!std::isfinite(vertex.x) || !std::isfinite(vertex.y) || !std::isfinite(vertex.z))
                fail_at(at, "a coordinate is no number");
            builder.add_corner(vertex);
        }
    }
    return builder.finish({});
}

class StlTextReader {
public:
    explicit StlTextReader(std::string_view text) : in_(text, TextScanner::Comments::None) {}

    TriangleMesh read()
    {
        std::string name;
        bool open = false;
        for (std::string_view word = in_.word_of_text(); !word.empty(); word = in_.word_of_text()) {
            if (!open && word == "solid") {
                const std::string_view title = in_.rest_of_line().substr(0, 1024);
                if (name.empty())
                    name = title;
                open = true;
            } else if (open && word == "endsolid") {
                static_cast<void>(in_.rest_of_line());
                open = false;
            } else if (open && word == "facet") {
                read_facet();
            } else {
                in_.fail("\"%s\" stands where a facet is expected", Quoted(word).text());
            }
        }
        if (open)
            in_.fail("the text ends before \"endsolid\"");
        if (builder_.triangle_count() == 0)
            throw GLibraryException("it holds no facets");
        return builder_.finish(std::move(name));
    }

private:
    void read_facet()
    {
        if (builder_.is_full())
            in_.fail("more facets than a mesh may hold");
        expect("normal");
        for (int i = 0; i < 3; ++i)
            static_cast<void>(in_.word_of_text());  // some programs write no numbers here
        expect("outer");
        expect("loop");
        for (int i = 0; i < 3; ++i) {
            expect("vertex");
            Vector3 corner;
            corner.x = coordinate();
            corner.y = coordinate();
            corner.z = coordinate();
            builder_.add_corner(corner);
        }
        expect("endloop");
        expect("endfacet");
    }
    void expect(const char* keyword)
    {
        const std::string_view word = in_.word_of_text();
        if (word.empty())
            in_.fail("the text ends where \"%s\" is expected", keyword);
        if (word != keyword)
            in_.fail("\"%s\" stands where \"%s\" is expected", Quoted(word).text(), keyword);
    }
    float coordinate()
    {
        const std::string_view word = in_.word_of_text();
        float value = 0;
        if (word.empty())
            in_.fail("the text ends where a coordinate is expected");
        if (!parse_number(word, value))
            in_.fail("\"%s\" is no coordinate", Quoted(word).text());
        return value;
    }

    TextScanner in_;
    StlBuilder builder_;
};

template <class T>
void append_value(std::string& data, const T& value)
{
    char bytes[sizeof(T)];
    std::memcpy(bytes, &value, sizeof(T));
    data.append(bytes, sizeof(T));
}

}  // namespace

StlKind recognise_stl(std::string_view head, std::uint64_t file_bytes)
{
    if (head.size() >= kHeaderBytes) {
        const std::uint64_t count = value_at<std::uint32_t>(head, 80);
        if (count > 0 && file_bytes == kHeaderBytes + count * kTriangleBytes)
            return StlKind::Binary;
    }
    TextScanner in(head, TextScanner::Comments::None);
    return is_plain_text(head) && in.word_of_text() == "solid" ? StlKind::Text : StlKind::None;
}

TriangleMesh read_stl(std::string_view data)
{
    switch (recognise_stl(data, data.size())) {
        case StlKind::Binary:
            return read_binary(data);
        case StlKind::Text:
            return StlTextReader(data).read();
        case StlKind::None:
            break;
    }
    // A text with a byte that no text has is told from a binary one by its first words.
    if (data.substr(0, 6) == "solid " && data.substr(0, 2048).find("facet") != data.npos)
        throw GLibraryException("the text holds bytes that are no text");
    if (data.size() < kHeaderBytes)
        fail_at(data.size(), "the file ends inside its header");
    const std::uint64_t count = value_at<std::uint32_t>(data, 80);
    GLibraryException error;
    error.message("byte 80: %llu triangles need %llu bytes, the file has %llu",
                  static_cast<unsigned long long>(count),
                  static_cast<unsigned long long>(kHeaderBytes + count * kTriangleBytes),
                  static_cast<unsigned long long>(data.size()));
    throw error;
}

std::string write_stl(const TriangleMesh& mesh)
{
    std::string data = "binary STL: " + mesh.name;
    data.resize(80, ' ');
    data.reserve(kHeaderBytes + mesh.triangles.size() * kTriangleBytes);
    append_value(data, static_cast<std::uint32_t>(mesh.triangles.size()));
    for (const TriangleMesh::Triangle& triangle : mesh.triangles) {
        const Vector3& a = mesh.vertices[triangle[0]];
        const Vector3& b = mesh.vertices[triangle[1]];
        const Vector3& c = mesh.vertices[triangle[2]];
        const auto normal = area_normal(a, b, c);
        const double length = std::hypot(normal[0], normal[1], normal[2]);
        for (const double part : normal)
            append_value(data, length > 0 ? static_cast<float>(part / length) : 0.0f);
        for (const Vector3& corner : {a, b, c})
            append_value(data, corner);
        append_value(data, std::uint16_t{0});
    }
    return data;
}

}  // namespace scene
