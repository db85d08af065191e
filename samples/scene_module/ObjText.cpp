#include "scene_module/ObjText.h"

#include "foundation/GException.h"
#include "scene_module/TextScanner.h"
#include "scene_module/VertexTable.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace scene {

namespace {

constexpr std::uint32_t kNone = 0xffffffffu;
constexpr std::size_t kMaxNameBytes = 1024;  ///< Longer ones are cut.

struct Corner {
    std::uint32_t position = kNone;
    std::uint32_t normal = kNone;
};

class ObjReader {
public:
    explicit ObjReader(std::string_view text) : in_(text, TextScanner::Comments::Hash) {}

    TriangleMesh read()
    {
        while (in_.next_line())
            read_statement(in_.word());
        check_forward(last_position_, positions_.size(), "vertex");
        check_forward(last_normal_, normals_.size(), "normal");
        if (corners_.empty())
            throw GLibraryException("it holds no faces");
        return build();
    }

private:
    // The highest index that was named, and where.
    struct Last {
        std::uint32_t index = 0;
        std::uint64_t line = 0;
    };

    void read_statement(std::string_view keyword)
    {
        if (keyword == "v") {
            if (positions_.size() == TriangleMesh::kMaxVertices)
                in_.fail("more than %u vertices", TriangleMesh::kMaxVertices);
            positions_.push_back(read_vector("a coordinate"));
        } else if (keyword == "vn") {
            if (normals_.size() == TriangleMesh::kMaxVertices)
                in_.fail("more than %u normals", TriangleMesh::kMaxVertices);
            normals_.push_back(read_vector("a normal"));
        } else if (keyword == "f") {
            read_face();
        } else if (keyword == "o" && name_.empty()) {
            name_ = in_.rest_of_line().substr(0, kMaxNameBytes);
        } else if (!is_plain_text(keyword)) {
            in_.fail("\"%s\" is no text", Quoted(keyword).text());
        }
    }

    Vector3 read_vector(const char* what)
    {
        Vector3 vector;
        vector.x = in_.number(what);
        vector.y = in_.number(what);
        vector.z = in_.number(what);
        return vector;
    }

    void read_face()
    {
        Corner first;
        Corner previous;
        std::uint64_t count = 0;
        for (std::string_view word = in_.word(); !word.empty(); word = in_.word()) {
            const Corner corner = read_corner(word);
            ++count;
            if (count == 1)
                first = corner;
            if (count > 2) {
                if (corners_.size() == std::size_t{3} * TriangleMesh::kMaxTriangles)
                    in_.fail("more than %u triangles", TriangleMesh::kMaxTriangles);
                corners_.insert(corners_.end(), {first, previous, corner});
            }
            previous = corner;
        }
        if (count < 3)
            in_.fail("a face has %llu corners, it needs 3 or more",
                     static_cast<unsigned long long>(count));
    }

    // "7", "7/1", "7//3" or "7/1/3".
    Corner read_corner(std::string_view word)
    {
        const std::string_view all = word;
        Corner corner;
        corner.position = read_index(word, all, positions_.size(), last_position_);
        if (word.empty())
            return corner;
        word.remove_prefix(1);
        Last texture;
        if (!word.empty() && word.front() != '/')
            static_cast<void>(read_index(word, all, kNone, texture));
        if (word.empty())
            return corner;
        word.remove_prefix(1);
        corner.normal = read_index(word, all, normals_.size(), last_normal_);
        if (!word.empty())
            fail_corner(all);
        return corner;
    }

    // Takes an index off the front of `word`, which then is empty or begins with "/". An index may
    // name what comes later in the file; only the end will tell whether it does.
    std::uint32_t read_index(std::string_view& word, std::string_view all, std::size_t count,
                             Last& last)
    {
        std::int64_t index = 0;
        const auto [end, code] = std::from_chars(word.data(), word.data() + word.size(), index);
        if (code != std::errc() && code != std::errc::result_out_of_range)
            fail_corner(all);
        word.remove_prefix(static_cast<std::size_t>(end - word.data()));
        if (!word.empty() && word.front() != '/')
            fail_corner(all);
        const auto limit = std::int64_t{TriangleMesh::kMaxVertices};
        if (code != std::errc() || index == 0 || index > limit || index < -limit)
            in_.fail("the index in \"%s\" is out of range", Quoted(all).text());
        if (index < 0) {
            index += static_cast<std::int64_t>(count);
            if (index < 0)
                in_.fail("the index in \"%s\" reaches back before the first", Quoted(all).text());
            return static_cast<std::uint32_t>(index);
        }
        if (index > last.index)
            last = {static_cast<std::uint32_t>(index), in_.line()};
        return static_cast<std::uint32_t>(index - 1);
    }

    [[noreturn]] void fail_corner(std::string_view word) const
    {
        in_.fail("\"%s\" is no corner of a face", Quoted(word).text());
    }

    static void check_forward(const Last& last, std::size_t count, const char* what)
    {
        if (last.index <= count)
            return;
        GLibraryException error;
        error.message("line %llu: a face names %s %u, the file has %llu",
                      static_cast<unsigned long long>(last.line), what, last.index,
                      static_cast<unsigned long long>(count));
        throw error;
    }

    TriangleMesh build();

    TextScanner in_;
    std::string name_;
    std::vector<Vector3> positions_;
    std::vector<Vector3> normals_;
    std::vector<Corner> corners_;
    Last last_position_;
    Last last_normal_;
};

// A position keeps its number with the normal that it is first used with; each further normal makes
// another vertex behind all positions.
TriangleMesh ObjReader::build()
{
    constexpr std::uint32_t kUnused = kNone - 1;
    TriangleMesh mesh;
    mesh.name = name_;
    const auto position_count = static_cast<std::uint32_t>(positions_.size());
    std::vector<std::uint32_t> normal_of(position_count, kUnused);
    VertexTable further;

    mesh.triangles.resize(corners_.size() / 3);
    for (std::size_t i = 0; i < corners_.size(); ++i) {
        const Corner& corner = corners_[i];
        std::uint32_t vertex = corner.position;
        if (normal_of[vertex] == kUnused)
            normal_of[vertex] = corner.normal;
        if (normal_of[vertex] != corner.normal)
            vertex = position_count + further.find_or_add({corner.position, corner.normal, 0});
        if (vertex >= TriangleMesh::kMaxVertices)
            throw GLibraryException("its corners make too many vertices");
        mesh.triangles[i / 3][i % 3] = vertex;
    }
    corners_ = {};

    mesh.vertices = std::move(positions_);
    for (const VertexTable::Key& key : further.keys()) {
        mesh.vertices.push_back(mesh.vertices[key[0]]);
        normal_of.push_back(key[1]);
    }
    const Vector3 nowhere;
    std::vector<std::uint8_t> missing(mesh.vertices.size(), 1);
    mesh.normals.resize(mesh.vertices.size());
    for (std::size_t i = 0; i < normal_of.size(); ++i) {
        if (normal_of[i] >= kUnused)
            continue;
        mesh.normals[i] = normalized(normals_[normal_of[i]], nowhere);
        missing[i] = mesh.normals[i] == nowhere ? 1 : 0;
    }
    mesh.compute_normals(missing);
    return mesh;
}

void append_vectors(std::string& text, const char* keyword, const std::vector<Vector3>& vectors)
{
    for (const Vector3& vector : vectors) {
        text += keyword;
        for (const float part : {vector.x, vector.y, vector.z}) {
            text += ' ';
            append_number(text, part);
        }
        text += '\n';
    }
}

}  // namespace

TriangleMesh read_obj(std::string_view text)
{
    return ObjReader(text).read();
}

std::string write_obj(const TriangleMesh& mesh)
{
    std::string text;
    if (!mesh.name.empty()) {
        text = "o " + mesh.name;
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\\'; },
            '_');
        text += '\n';
    }
    append_vectors(text, "v", mesh.vertices);
    append_vectors(text, "vn", mesh.normals);
    for (const TriangleMesh::Triangle& triangle : mesh.triangles) {
        text += 'f';
        for (const std::uint32_t corner : triangle) {
            const std::string index = std::to_string(corner + 1);
            text.append(" ").append(index).append("//").append(index);
        }
        text += '\n';
    }
    return text;
}

bool looks_like_obj(std::string_view head)
{
    return !head.empty() && is_plain_text(head);
}

bool is_plain_text(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte >= ' ' && byte != 127) || (byte >= '\t' && byte <= '\r');
    });
}

void append_number(std::string& text, float value)
{
    char digits[32];
    const auto [end, code] = std::to_chars(digits, digits + sizeof(digits), value);
    text.append(digits, code == std::errc() ? end : digits);
}

}  // namespace scene
