// Any bytes as a library file: opened for reading, listed, read, verified, then opened for writing
// and changed. The checksums of what the input changes are made to fit, because otherwise nearly
// all inputs would end at the first of them.
#include "MemoryFile.h"
#include "store/LibraryFile.h"
#include "store/LibraryFormat.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace zmr;

constexpr LibraryTuning kSmall{4000, 40'000, 40'000, 300};

void put_u64(std::string& bytes, std::size_t at, std::uint64_t value)
{
    std::string text;
    ByteWriter(text).u64(value);
    bytes.replace(at, text.size(), text);
}

/// Makes the sectors' checksums fit, and the frames' and the payload's of every commit.
void mend(std::string& bytes)
{
    for (const std::uint64_t at : {std::uint64_t{0}, kSlotPosition[0], kSlotPosition[1]})
        if (bytes.size() >= at + kSectorBytes)
            put_u64(bytes, static_cast<std::size_t>(at) + kSectorBytes - 8,
                    checksum_of(std::string_view(bytes).substr(static_cast<std::size_t>(at),
                                                               kSectorBytes - 8)));
    const std::string magic = encode_frame({FrameKind::Commit, 0}, 0).substr(0, 8);
    for (std::size_t at = bytes.find(magic); at != std::string::npos;
         at = bytes.find(magic, at + 1)) {
        if (bytes.size() - at < kFrameBytes)
            break;
        put_u64(bytes, at + 16, checksum_of(std::string_view(bytes).substr(at, 16), at));
        const std::uint64_t length = load_u64(bytes.data() + at + 8);
        const std::size_t payload = at + kFrameBytes;
        if (length < 8 || length > bytes.size() - payload)
            continue;
        const auto size = static_cast<std::size_t>(length);
        const std::uint64_t sum = checksum_of(std::string_view(bytes).substr(payload, size - 8));
        put_u64(bytes, payload + size - 8, sum);
        for (const std::uint64_t slot : kSlotPosition)
            if (load_u64(bytes.data() + slot + 16) == at)
                put_u64(bytes, static_cast<std::size_t>(slot) + 32, sum);
    }
    for (const std::uint64_t at : kSlotPosition)
        if (bytes.size() >= at + kSectorBytes)
            put_u64(bytes, static_cast<std::size_t>(at) + kSectorBytes - 8,
                    checksum_of(std::string_view(bytes).substr(static_cast<std::size_t>(at),
                                                               kSectorBytes - 8)));
}

void read_all(const LibraryFile& file, const LibraryPath& path, int& left)
{
    std::string bytes;
    for (const std::string& type : file.types(path)) {
        const LibraryEntryList list = file.list(path, type);
        for (std::size_t i = 0; i < list.size() && left > 0; ++i, --left)
            static_cast<void>(file.get(path, std::string(list[i].name), type, bytes));
        std::size_t visited = 0;
        file.visit(path, type, [&](const LibraryEntryView&) { return ++visited < list.size(); });
    }
    for (const std::string& name : file.directories(path)) {
        LibraryPath below = path;
        if (left-- <= 0 || !below.append(name))
            return;
        read_all(file, below, left);
    }
}

void use(const std::string& bytes)
{
    MemoryFileSystem files;
    files.bytes("lib") = bytes;
    LibraryFile file(files, kSmall);
    if (file.open("lib", LibraryAccess::Read).status == LibraryOpenStatus::Ok) {
        int left = 2000;
        read_all(file, {}, left);
        static_cast<void>(file.types());
        static_cast<void>(file.verify({}));
        if (files.bytes("lib") != bytes)
            std::abort();  // reading writes nothing
    }
    if (file.open("lib", LibraryAccess::Write).status != LibraryOpenStatus::Ok)
        return;
    const std::string small(300, 'x');
    const auto span = std::as_bytes(std::span(small));
    for (int i = 0; i < 30; ++i)
        static_cast<void>(file.put({}, std::to_string(i), "t", ContentKind::Raw, "", span));
    static_cast<void>(file.commit());
    static_cast<void>(file.pack());
    std::string got;
    if (!file.error() && (!file.get({}, "7", "t", got) || got != small))
        std::abort();  // what was just put must be there
    static_cast<void>(file.close());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string bytes(reinterpret_cast<const char*>(data), size);
    use(bytes);
    if (bytes.size() > kDataStart) {
        mend(bytes);
        use(bytes);
    }
    return 0;
}
