#pragma once

#include "platform/Windows.h"

#include <string>
#include <vector>

/// The words as one line that CommandLineToArgvW takes apart into the same words.
[[nodiscard]] std::wstring command_line_of(const std::vector<std::wstring>& words);

/// CreateProcessW of a line with these flags. A loaded machine under Wine now and then refuses to
/// start a process, which says nothing of the program: then it is tried again.
[[nodiscard]] bool start_process(std::wstring line, DWORD flags, STARTUPINFOW& start,
                                 PROCESS_INFORMATION& process);
