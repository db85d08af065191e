#include "responder/KeyTables.h"

#include <array>

namespace zmr {

namespace {

using Codes = std::array<std::uint8_t, 256>;

struct KeyAndCode {
    std::uint8_t key;
    std::uint8_t code;
};

constexpr KeyAndCode kSingleKeys[] = {
    {0x08, 0x08},                // Backspace
    {0x09, 0x09},                // Tab
    {0x0D, 0x0D},                // Return
    {0x1B, 0x1B},                // Escape
    {0x20, 0x20},                // Space
    {0x21, 0x0B}, {0x22, 0x0C},  // Page Up, Page Down
    {0x23, 0x04}, {0x24, 0x01},  // End, Home
    {0x25, 0x1C}, {0x26, 0x1E},  // Left, Up
    {0x27, 0x1D}, {0x28, 0x1F},  // Right, Down
    {0x2D, 0x05}, {0x2E, 0x7F},  // Insert, Delete
    {0x6A, '*'},  {0x6B, '+'},   // on the numeric pad, as the next two rows
    {0x6C, '/'},  {0x6D, '-'},   // the separator, minus
    {0x6E, '.'},  {0x6F, '/'},   // decimal point, division
    {0xBA, ';'},  {0xBB, '='},  {0xBC, ','},  {0xBD, '-'}, {0xBE, '.'}, {0xBF, '/'},
    {0xC0, '`'},  {0xDB, '['},  {0xDC, '\\'}, {0xDD, ']'},  // and none for the quote key, 0xDE
};

constexpr Codes make_codes()
{
    Codes codes{};
    for (const KeyAndCode& pair : kSingleKeys)
        codes[pair.key] = pair.code;
    for (unsigned digit = 0; digit < 10; ++digit) {
        codes[0x30 + digit] = static_cast<std::uint8_t>('0' + digit);
        codes[0x60 + digit] = static_cast<std::uint8_t>('0' + digit);  // numeric pad
    }
    for (unsigned letter = 0; letter < 26; ++letter)
        codes[0x41 + letter] = static_cast<std::uint8_t>('a' + letter);
    for (unsigned function = 0; function < 16; ++function)
        codes[0x70 + function] = static_cast<std::uint8_t>(0xF0 + function);
    return codes;
}

constexpr Codes kCodes = make_codes();

struct ShiftPair {
    char plain;
    char shifted;
};

constexpr ShiftPair kShiftPairs[] = {
    {'`', '~'}, {'1', '!'}, {'2', '@'},  {'3', '#'}, {'4', '$'}, {'5', '%'}, {'6', '^'},
    {'7', '&'}, {'8', '*'}, {'9', '('},  {'0', ')'}, {'-', '_'}, {'=', '+'}, {'[', '{'},
    {']', '}'}, {';', ':'}, {'\'', '"'}, {',', '<'}, {'.', '>'}, {'/', '?'}, {'\\', '|'},
};

}  // namespace

std::uint32_t key_code(unsigned virtual_key)
{
    return virtual_key < kCodes.size() ? kCodes[virtual_key] : 0;
}

std::uint32_t shifted_character(std::uint32_t code)
{
    for (const ShiftPair& pair : kShiftPairs) {
        if (code == static_cast<unsigned char>(pair.plain))
            return static_cast<unsigned char>(pair.shifted);
    }
    return code >= 'a' && code <= 'z' ? code - ('a' - 'A') : 0;
}

}  // namespace zmr
