#pragma once

#include "platform/CString.h"
#include "settings/RegistryManager.h"

#include <span>
#include <string>

// How a list of recent files lies among the settings: one entry for each place of the list.
namespace zmr {

/// The entry of a place, by a format that takes one integer ("File%d").
[[nodiscard]] ZMR_GV_API std::string recent_entry(const char* format, int number);
/// Puts the names in the place of the section's entries, numbered from 1. Empty ones have a number
/// and no entry. In an initialisation file that is one update: it is done whole or not at all.
/// False when a name is not kept.
ZMR_GV_API bool write_recent_entries(RegistryManager& settings, const char* section,
                                     const char* format, std::span<const CString> names);
/// Fills each place; those without an entry become empty.
ZMR_GV_API void read_recent_entries(RegistryManager& settings, const char* section,
                                    const char* format, std::span<CString> names);

}  // namespace zmr
