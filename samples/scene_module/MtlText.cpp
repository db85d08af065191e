#include "scene_module/MtlText.h"

#include "foundation/GException.h"
#include "scene_module/ObjText.h"
#include "scene_module/TextScanner.h"

namespace scene {

namespace {

Vector3 read_color(TextScanner& in, const char* what)
{
    Vector3 color;
    color.x = in.number(what);
    // One number is a grey.
    const std::string_view second = in.word();
    if (second.empty())
        return {color.x, color.x, color.x};
    if (!parse_number(second, color.y))
        in.fail("\"%s\" is no number that %s can have", Quoted(second).text(), what);
    color.z = in.number(what);
    return color;
}

// "d -halo 0.5" is a kind of opacity too.
float read_opacity(TextScanner& in)
{
    const std::string_view word = in.word();
    float value = 1;
    if (word == "-halo")
        return in.number("the opacity");
    if (word.empty() || !parse_number(word, value))
        in.fail("\"%s\" is no opacity", Quoted(word).text());
    return value;
}

// A colour may be given as a spectrum file or in another colour space, by a word in place of
// numbers.
bool is_other_color(TextScanner in)
{
    const std::string_view word = in.word();
    return word == "spectral" || word == "xyz";
}

}  // namespace

MaterialValues read_mtl(std::string_view text)
{
    TextScanner in(text, TextScanner::Comments::Hash);
    MaterialValues values;
    int count = 0;
    while (in.next_line()) {
        const std::string_view keyword = in.word();
        if (keyword == "newmtl") {
            if (++count > 1)
                in.fail("a second material begins; one file can give one object");
            values.name = in.rest_of_line().substr(0, 1024);
            continue;
        }
        if (!is_plain_text(keyword))
            in.fail("\"%s\" is no text", Quoted(keyword).text());
        if (count == 0)
            in.fail("\"%s\" stands before \"newmtl\"", Quoted(keyword).text());
        if (keyword == "Kd" && !is_other_color(in))
            values.diffuse = read_color(in, "a colour");
        else if (keyword == "Ks" && !is_other_color(in))
            values.specular = read_color(in, "a colour");
        else if (keyword == "Ns")
            values.shininess = in.number("the shininess");
        else if (keyword == "d")
            values.opacity = read_opacity(in);
        else if (keyword == "Tr")
            values.opacity = 1 - in.number("the transparency");
    }
    if (count == 0)
        throw GLibraryException("it holds no material");
    values.clamp();
    return values;
}

bool looks_like_mtl(std::string_view head)
{
    TextScanner in(head, TextScanner::Comments::Hash);
    return is_plain_text(head) && in.next_line() && in.word() == "newmtl";
}

}  // namespace scene
