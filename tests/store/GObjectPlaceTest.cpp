#include "StoredText.h"
#include "foundation/GException.h"
#include "foundation/GObjectFileFormat.h"
#include "foundation/mpstream.h"
#include "store/GObjectFilePlacement.h"
#include "store/GObjectPlace.h"
#include "tests/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

std::string read_file(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void write_file(const std::string& name, const std::string& bytes)
{
    std::ofstream(name, std::ios::binary) << bytes;
}

std::string text_of(const GObjectPlace& place)
{
    const std::unique_ptr<GObject> object(place.get(false));
    const auto* const text = zmr::class_cast<StoredText>(object.get());
    return text == nullptr ? "(none)" : text->text.text;
}

/// Files that begin with "text:" hold a StoredText.
class TextFormat : public GObjectFileFormat {
public:
    TextFormat() { Register(*this); }
    ~TextFormat() override { Unregister(*this); }
    unsigned char write_object(const char* file, GStreamable* object) const override
    {
        const auto* const text = zmr::class_cast<StoredText>(object);
        if (text == nullptr)
            return 0;
        write_file(file, std::string("text:") + text->text.text);
        return 1;
    }
    GStreamable* read_object(const char* file) const override
    {
        const std::string bytes = read_file(file);
        return bytes.starts_with("text:") ? new StoredText(bytes.substr(5)) : nullptr;
    }
    GString read_object_class_name(const char* file) override
    {
        return read_file(file).starts_with("text:") ? "StoredText" : "";
    }
};

GFile asked_for;
std::string answer;

bool ask(GFile& file)
{
    asked_for = file;
    file = answer.c_str();
    return !answer.empty();
}

}  // namespace

TEST(GObjectPlace, Empty_AnswersNothing)
{
    const GObjectPlace place;
    StoredText object("x");

    EXPECT_EQ(place.get(false), nullptr);
    EXPECT_FALSE(place.put(&object, false));
    EXPECT_EQ(place.get_class(), nullptr);
    EXPECT_FALSE(place.remove());
    EXPECT_FALSE(place.copy_to(place));
    EXPECT_TRUE(place == GObjectPlace());
}

TEST(GObjectPlace, File_PutGetClassAndRemove)
{
    const TemporaryFolder folder;
    const GObjectPlace place(folder.file("a.lob").c_str(), false, nullptr);
    StoredText object("hello");

    ASSERT_TRUE(place.put(&object, false));

    EXPECT_EQ(text_of(place), "hello");
    EXPECT_EQ(place.get_class(), &StoredText::metaclass_);
    EXPECT_TRUE(place.remove());
    EXPECT_EQ(text_of(place), "(none)");
    EXPECT_EQ(place.get_class(), nullptr);
    EXPECT_FALSE(place.remove());
}

TEST(GObjectPlace, File_PutReplacesInOneStepAndLeavesNothingElse)
{
    const TemporaryFolder folder;
    const GObjectPlace place(folder.file("a.lob").c_str(), false, nullptr);
    StoredText first("first");
    StoredText second("second");

    ASSERT_TRUE(place.put(&first, false));
    ASSERT_TRUE(place.put(&second, false));

    EXPECT_EQ(text_of(place), "second");
    const std::filesystem::directory_iterator files(folder.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(GObjectPlace, File_PutThatFails_LeavesTheFormerObject)
{
    struct Throwing : StoredText {
        void write(opstream&) override { throw GLibraryException("no"); }
    };
    const TemporaryFolder folder;
    const GObjectPlace place(folder.file("a.lob").c_str(), false, nullptr);
    StoredText first("first");
    Throwing second;
    ASSERT_TRUE(place.put(&first, false));

    EXPECT_FALSE(place.put(&second, false));

    EXPECT_EQ(text_of(place), "first");
    const std::filesystem::directory_iterator files(folder.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
}

TEST(GObjectPlace, File_InAMissingDirectory_PutFails)
{
    const TemporaryFolder folder;
    const GObjectPlace place(folder.file("none/a.lob").c_str(), false, nullptr);
    StoredText object("x");

    EXPECT_FALSE(place.put(&object, false));
}

TEST(GObjectPlace, File_CutAtEveryLengthOrForeign_GivesNull)
{
    const TemporaryFolder folder;
    const std::string name = folder.file("a.lob");
    const GObjectPlace place(name.c_str(), false, nullptr);
    StoredText object("hello");
    ASSERT_TRUE(place.put(&object, false));
    const std::string whole = read_file(name);

    for (std::size_t length = 0; length < whole.size(); ++length) {
        write_file(name, whole.substr(0, length));
        EXPECT_EQ(text_of(place), "(none)") << length;
    }
    write_file(name, "something else entirely");

    EXPECT_EQ(text_of(place), "(none)");
    EXPECT_EQ(place.get_class(), nullptr);
}

TEST(GObjectPlace, Recognise_AsksTheRegisteredFormatsFirst)
{
    const TemporaryFolder folder;
    const TextFormat format;
    write_file(folder.file("a.txt"), "text:from a format");
    const GObjectPlace recognising(folder.file("a.txt").c_str(), true, nullptr);
    const GObjectPlace plain(folder.file("a.txt").c_str(), false, nullptr);

    EXPECT_EQ(text_of(recognising), "from a format");
    EXPECT_EQ(recognising.get_class(), &StoredText::metaclass_);
    EXPECT_EQ(text_of(plain), "(none)");
}

TEST(GObjectPlace, GivenFormat_IsUsedAlsoByCopies)
{
    const TemporaryFolder folder;
    const TextFormat format;
    const GObjectPlace place(folder.file("a.txt").c_str(), false, &format);
    const GObjectPlace copy(place);
    StoredText object("x");

    ASSERT_TRUE(copy.put(&object, false));

    EXPECT_EQ(read_file(folder.file("a.txt")), "text:x");
    EXPECT_EQ(text_of(place), "x");
    EXPECT_TRUE(place == copy);
    EXPECT_NE(place.placement, copy.placement);
}

TEST(GObjectPlace, CopyTo_CopiesTheStoredObject)
{
    const TemporaryFolder folder;
    const GObjectPlace from(folder.file("a.lob").c_str(), false, nullptr);
    const GObjectPlace to(folder.file("b.lob").c_str(), false, nullptr);
    StoredText object("x");
    ASSERT_TRUE(from.put(&object, false));

    EXPECT_TRUE(from.copy_to(to));

    EXPECT_EQ(text_of(to), "x");
    EXPECT_FALSE(GObjectPlace(folder.file("none").c_str(), false, nullptr).copy_to(to));
}

TEST(GObjectPlace, GetShared_GivesTheSameObjectWhileItLives)
{
    const TemporaryFolder folder;
    const GObjectPlace place(folder.file("a.lob").c_str(), false, nullptr);
    StoredText object("x");
    ASSERT_TRUE(place.put(&object, false));
    std::unique_ptr<GObject> first(place.get(true));

    EXPECT_EQ(place.get(true), first.get());

    GObject* const old = first.release();
    GStreamable::Destroy(zmr::class_cast<GStreamable>(old));
    const std::unique_ptr<GObject> second(place.get(true));
    EXPECT_NE(second, nullptr);
}

TEST(GObjectPlace, MissingFile_AskFunctionMayNameAnother)
{
    const TemporaryFolder folder;
    const GObjectPlace there(folder.file("b.lob").c_str(), false, nullptr);
    StoredText object("x");
    ASSERT_TRUE(there.put(&object, false));
    const GObjectPlace missing(folder.file("a.lob").c_str(), false, nullptr);
    GObjectFilePlacement::s_AskFunction = &ask;

    answer.clear();
    const std::string refused = text_of(missing);
    answer = folder.file("b.lob");
    const std::string given = text_of(missing);
    GObjectFilePlacement::s_AskFunction = nullptr;

    EXPECT_EQ(refused, "(none)");
    EXPECT_EQ(given, "x");
    EXPECT_EQ(asked_for.compare(folder.file("a.lob").c_str()), 0);
    EXPECT_EQ(missing.placement->get_filename().compare(answer.c_str()), 0);
}

TEST(GObjectFilePlacement, Stream_KeepsNameAndRecognition)
{
    GObjectFilePlacement placement("dir/a.lob", true, nullptr);
    ompstream out;
    out.writePointer(&placement);
    impstream in(out.bytes());

    const std::unique_ptr<GObjectFilePlacement> back(in.read_pointer<GObjectFilePlacement>());

    ASSERT_NE(back, nullptr);
    EXPECT_TRUE(back->compare_items(placement));
    GString text;
    back->get_readable_form(text);
    EXPECT_EQ(text, "dir/a.lob");
}

TEST(GObjectPlace, UnequalPlaces_AreUnequal)
{
    const GObjectPlace a("a.lob", false, nullptr);

    EXPECT_FALSE(a == GObjectPlace("b.lob", false, nullptr));
    EXPECT_FALSE(a == GObjectPlace());
}
