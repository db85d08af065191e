#include "store/ProcessFacts.h"

#include "platform/Windows.h"

#include <array>

namespace zmr {
namespace {

std::string utf8(const wchar_t* text)
{
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 1)
        return "?";
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (::WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes.data(), size, nullptr, nullptr) != size)
        return "?";
    bytes.pop_back();
    return bytes;
}

}  // namespace

ProcessFacts process_facts()
{
    ProcessFacts facts{"?", "?", ::GetCurrentProcessId()};
    std::array<wchar_t, 257> text{};
    DWORD size = static_cast<DWORD>(text.size());
    if (::GetUserNameW(text.data(), &size))
        facts.user = utf8(text.data());
    size = static_cast<DWORD>(text.size());
    if (::GetComputerNameW(text.data(), &size))
        facts.host = utf8(text.data());
    return facts;
}

}  // namespace zmr
