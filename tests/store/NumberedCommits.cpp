#include "NumberedCommits.h"

#include "LibraryModel.h"

namespace zmr {
namespace {

constexpr std::uint64_t kNames = 40;

/// The content that commit `number` puts; long ones now and then.
std::string content_of(std::uint64_t number)
{
    const std::size_t size = number % 17 == 0 ? 120'000 : 100 + number * 37 % 5000;
    return noise_bytes(size, static_cast<unsigned>(number));
}

}  // namespace

std::uint64_t NumberedCommits::Last(const LibraryFile& file)
{
    std::string text;
    return file.get({}, "number", "t", text) ? std::stoull(text) : 0;
}

bool NumberedCommits::Put(LibraryFile& file, std::uint64_t number)
{
    const LibraryCommitScope scope(file);
    const std::string bytes = content_of(number);
    const std::string text = std::to_string(number);
    return file.put({}, std::to_string(number % kNames), "t", ContentKind::Raw, "",
                    as_span(bytes)) &&
           file.put({}, "number", "t", ContentKind::Streamable, "", as_span(text)) && file.commit();
}

std::string NumberedCommits::Check(const LibraryFile& file)
{
    const std::uint64_t last = Last(file);
    for (std::uint64_t number = last; number > 0 && number + kNames > last; --number) {
        std::string bytes;
        if (!file.get({}, std::to_string(number % kNames), "t", bytes) ||
            bytes != content_of(number))
            return "the content of commit " + std::to_string(number) + " is not there";
    }
    std::string damage;
    const bool whole = file.verify([&damage](const LibraryDamage& found) {
        damage += found.name.name + ": " + found.text + "; ";
    });
    return whole ? "" : "verify found damage: " + damage;
}

}  // namespace zmr
