#include "settings/IniStore.h"

#include "platform/ByteText.h"
#include "settings/BinaryText.h"
#include "settings/IniEncoding.h"
#include "settings/IniLines.h"

#include <utility>

namespace zmr {
namespace {

/// A file's bytes as text; `is_damaged` when it must not be written. Zeros are what a file holds
/// whose length reached the disk before its contents did.
std::string text_of(std::string bytes, bool& is_damaged)
{
    bool is_whole = true;
    std::string text = decode_ini(std::move(bytes), is_whole);
    is_damaged = !is_whole || text.find('\0') != std::string::npos;
    return text;
}

unsigned digit_of(char letter)
{
    if (letter >= '0' && letter <= '9')
        return static_cast<unsigned>(letter - '0');
    const char lower = lower_ascii(letter);
    return lower >= 'a' && lower <= 'f' ? static_cast<unsigned>(lower - 'a') + 10 : 16;
}

/// Takes the mark of a base off `text`.
unsigned take_base(std::string_view& text)
{
    if (text.size() < 2 || text[0] != '0')
        return 10;
    const unsigned base = text[1] == 'x' ? 16 : text[1] == 'o' ? 8 : text[1] == 'b' ? 2 : 10;
    if (base != 10)
        text.remove_prefix(2);
    return base;
}

}  // namespace

std::uint32_t ini_number(std::string_view text)
{
    while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ')
        text.remove_prefix(1);
    const bool is_negative = text.starts_with('-');
    if (is_negative || text.starts_with('+'))
        text.remove_prefix(1);
    const unsigned base = take_base(text);
    std::uint32_t number = 0;
    for (const char letter : text) {
        const unsigned digit = digit_of(letter);
        if (digit >= base)
            break;
        number = number * base + digit;
    }
    return is_negative ? 0u - number : number;
}

bool IniStore::Change::apply(IniText& text) const
{
    if (!entry) {
        text.remove_section(section);
        return true;
    }
    if (!value) {
        text.remove_entry(section, *entry);
        return true;
    }
    return text.set(section, *entry, *value);
}

IniStore::Batch::Batch(std::string utf8, bool may_be_written)
    : text(std::move(utf8)), is_writable(may_be_written)
{
}

template <class Use>
bool IniStore::with_value(const char* section, const char* entry, Use use) const
{
    if (batch_ != nullptr) {
        const auto value = batch_->text.find(section, entry);
        return value && use(*value);
    }
    bool is_damaged = false;
    const IniText text(text_of(file_.load().bytes, is_damaged));
    const auto value = text.find(section, entry);
    return value && use(*value);
}

bool IniStore::read_int(const char* section, const char* entry, std::uint32_t& value)
{
    return with_value(section, entry, [&](std::string_view text) {
        if (text.empty())
            return false;
        value = ini_number(text);
        return true;
    });
}

bool IniStore::read_text(const char* section, const char* entry, std::string& text)
{
    return with_value(section, entry, [&](std::string_view value) {
        value = value.substr(0, value.find('\0'));
        text = value.substr(0, cut_length(value, kMostTextBytes));
        return true;
    });
}

bool IniStore::read_binary(const char* section, const char* entry, SettingsBytes& bytes,
                           unsigned& size)
{
    return with_value(section, entry, [&](std::string_view value) {
        const auto count = binary_size(value);
        if (!count || *count == 0)
            return false;
        bytes = allocate_settings_bytes(*count);
        text_to_binary(value, bytes.get());
        size = static_cast<unsigned>(*count);
        return true;
    });
}

bool IniStore::write_int(const char* section, const char* entry, std::int32_t value)
{
    return change({section, entry, std::to_string(value)});
}

bool IniStore::write_text(const char* section, const char* entry, const char* text)
{
    return change({section, entry, text});
}

bool IniStore::write_binary(const char* section, const char* entry,
                            std::span<const unsigned char> bytes)
{
    if (bytes.size() > SettingsFile::kMostBytes / 2)
        return false;
    return change({section, entry, binary_to_text(bytes)});
}

bool IniStore::remove_entry(const char* section, const char* entry)
{
    return change({section, entry, std::nullopt});
}

bool IniStore::remove_section(const char* section)
{
    return change({section, std::nullopt, std::nullopt});
}

void IniStore::begin()
{
    SettingsFileContent content = file_.load();
    bool is_damaged = false;
    std::string text = text_of(std::move(content.bytes), is_damaged);
    batch_ = std::make_unique<Batch>(std::move(text),
                                     !is_damaged && content.state != SettingsFileState::Damaged);
}

bool IniStore::commit()
{
    const auto batch = std::move(batch_);
    return batch == nullptr || batch->changes.empty() || apply(batch->changes);
}

bool IniStore::change(Change change)
{
    if (batch_ == nullptr)
        return apply({&change, 1});
    if (!batch_->is_writable || !change.apply(batch_->text))
        return false;
    batch_->changes.push_back(std::move(change));
    return true;
}

bool IniStore::apply(std::span<const Change> changes) const
{
    return file_.update([&](std::string& bytes) {
        const IniEncoding encoding = ini_encoding(bytes);
        bool is_damaged = false;
        IniText text(text_of(bytes, is_damaged));
        const std::size_t mark = utf8_mark_length(text.bytes());
        if (is_damaged)
            return false;
        for (const Change& change : changes)
            if (!change.apply(text))
                return false;
        std::optional<std::string> changed = encode_ini(text.bytes(), encoding);
        // A name may look like the mark of another encoding when it comes to stand in front.
        if (!changed || ini_encoding(*changed) != encoding ||
            utf8_mark_length(text.bytes()) != mark)
            return false;
        bytes = std::move(*changed);
        return true;
    });
}

}  // namespace zmr
