#include "LibraryModel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace zmr {
namespace {

LibraryPath random_path(Random& random)
{
    LibraryPath path;
    const unsigned depth = random() % 3;
    for (unsigned i = 0; i < depth; ++i)
        EXPECT_TRUE(path.append(std::string(1, static_cast<char>('a' + random() % 3))));
    return path;
}

std::string random_name(Random& random)
{
    static const std::string odd[] = {"", std::string("zero\0inside", 11), "\xFF\xFE", "a/b"};
    return random() % 8 == 0 ? odd[random() % 4] : "n" + std::to_string(random() % 12);
}

std::string random_type(Random& random)
{
    return "type " + std::to_string(random() % 3);
}

std::string random_bytes(Random& random)
{
    const unsigned kind = random() % 20;
    std::size_t size = random() % 300;
    if (kind > 11)
        size = random() % 6000;
    if (kind == 19)
        size = 60'000 + random() % 90'000;
    return random() % 2 == 0 ? text_bytes(size, random()) : noise_bytes(size, random());
}

void add_all(const LibraryFile& file, const LibraryPath& path, LibraryModel& model, int& unreadable)
{
    for (const std::string& type : file.types(path)) {
        file.visit(path, type, [&](const LibraryEntryView& view) {
            LibraryModel::Entry entry{view.kind, std::string(view.label), {}};
            const std::string name(view.name);
            if (!file.get(path, name, type, entry.bytes)) {
                ++unreadable;
                return true;
            }
            if (view.has_bytes) {
                EXPECT_TRUE(std::ranges::equal(view.bytes, as_span(entry.bytes)));
            }
            EXPECT_EQ(view.length, entry.bytes.size());
            model.entries[{path.key(), type, name}] = std::move(entry);
            return true;
        });
    }
    for (const std::string& name : file.directories(path)) {
        LibraryPath below = path;
        if (below.append(name))
            add_all(file, below, model, unreadable);
    }
}

}  // namespace

std::string text_bytes(std::size_t size, unsigned number)
{
    const std::string line = "line " + std::to_string(number % 100'000) + " of a text\n";
    std::string bytes;
    while (bytes.size() < size)
        bytes += line;
    bytes.resize(size);
    return bytes;
}

std::string noise_bytes(std::size_t size, unsigned seed)
{
    Random random(seed);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

std::span<const std::byte> as_span(const std::string& bytes)
{
    return std::as_bytes(std::span(bytes));
}

LibraryPath path_of(std::initializer_list<std::string_view> levels)
{
    LibraryPath path;
    for (const std::string_view level : levels)
        EXPECT_TRUE(path.append(level));
    return path;
}

LibraryModel LibraryModel::Of(const LibraryFile& file, int* unreadable)
{
    LibraryModel model;
    int count = 0;
    model.file_kind = file.file_kind();
    add_all(file, {}, model, count);
    if (unreadable != nullptr)
        *unreadable = count;
    else
        EXPECT_EQ(count, 0);
    return model;
}

void LibraryModel::change(LibraryFile& file, Random& random)
{
    const unsigned choice = random() % 100;
    if (choice < 50)
        put(file, random);
    else if (choice < 58)
        put_raw(file, random);
    else if (choice < 78)
        remove(file, random);
    else if (choice < 90)
        rename(file, random);
    else if (choice < 96)
        rename_directory(file, random);
    else if (choice < 98)
        change_kind(file, random);
    else if (choice == 98 && file.clear())
        entries.clear();
}

void LibraryModel::change_kind(LibraryFile& file, Random& random)
{
    const std::string kind = "kind " + std::to_string(random() % 9);
    if (file.set_file_kind(kind))
        file_kind = kind;
}

void LibraryModel::put(LibraryFile& file, Random& random)
{
    const LibraryPath path = random_path(random);
    const std::string name = random_name(random);
    const std::string type = random_type(random);
    const Entry entry{random() % 4 == 0 ? ContentKind::Raw : ContentKind::Streamable,
                      "Class" + std::to_string(random() % 3), random_bytes(random)};
    if (file.put(path, name, type, entry.kind, entry.label, as_span(entry.bytes)))
        entries[{path.key(), type, name}] = entry;
}

void LibraryModel::put_raw(LibraryFile& file, Random& random)
{
    const LibraryPath path = random_path(random);
    const std::string name = random_name(random);
    const Entry entry{ContentKind::Raw, "Movie", random_bytes(random)};
    std::size_t at = 0;
    const auto source = [&](void* data, std::size_t size, std::size_t& done) {
        done = std::min({size, entry.bytes.size() - at, std::size_t{7000}});
        std::copy_n(entry.bytes.data() + at, done, static_cast<char*>(data));
        at += done;
        return true;
    };
    if (file.put_from(path, name, "movie", entry.label, source))
        entries[{path.key(), "movie", name}] = entry;
}

void LibraryModel::put_many(LibraryFile& file, Random& random, int count)
{
    const LibraryPath path = random_path(random);
    for (int i = 0; i < count; ++i) {
        const std::string name = "many " + std::to_string(random() % 200);
        const Entry entry{ContentKind::Streamable, "Many", noise_bytes(480, random())};
        if (file.put(path, name, "many", entry.kind, entry.label, as_span(entry.bytes)))
            entries[{path.key(), "many", name}] = entry;
    }
}

void LibraryModel::remove(LibraryFile& file, Random& random)
{
    if (entries.empty())
        return;
    auto place = entries.begin();
    std::advance(place, random() % entries.size());
    const auto [key, type, name] = place->first;
    LibraryPath path;
    ASSERT_TRUE(path.assign_key(key));
    if (file.remove(path, name, type))
        entries.erase(place);
}

void LibraryModel::rename(LibraryFile& file, Random& random)
{
    if (entries.empty())
        return;
    auto place = entries.begin();
    std::advance(place, random() % entries.size());
    const auto [key, type, name] = place->first;
    LibraryPath path;
    ASSERT_TRUE(path.assign_key(key));
    const LibraryPath to_path = random_path(random);
    const std::string to_name = random_name(random);
    const std::string to_type = random() % 3 == 0 ? random_type(random) : type;
    if (!file.rename(path, name, type, to_path, to_name, to_type))
        return;
    Entry entry = place->second;
    entries.erase(place);
    entries[{to_path.key(), to_type, to_name}] = std::move(entry);
}

void LibraryModel::rename_directory(LibraryFile& file, Random& random)
{
    const LibraryPath from = random_path(random);
    const LibraryPath to = random_path(random);
    if (!file.rename_directory(from, to))
        return;
    std::map<Key, Entry> moved;
    for (auto& [key, entry] : entries) {
        auto [path, type, name] = key;
        if (path.starts_with(from.key()))
            path = to.key() + path.substr(from.key().size());
        moved[{path, type, name}] = std::move(entry);
    }
    entries = std::move(moved);
}

}  // namespace zmr
