#pragma once

#include "odb/KeyedText.h"
#include "platform/CString.h"

#include <string_view>

namespace zmr {

/// The texts that were contributed to NamesMapper, and the answers that they give. One thread at a
/// time.
class NamesText {
public:
    /// Takes the text in as names, categories or both; false when it is of neither form.
    bool add(std::string_view text);
    /// The name for people of that class; the class's own when none is known.
    [[nodiscard]] CString user_name_for(std::string_view class_name);
    /// The category of that class or category; empty when there is none.
    [[nodiscard]] CString category_name_for(std::string_view name);

private:
    static constexpr std::string_view kNameMarker = "=(";
    static constexpr std::string_view kCategoryMarker = "]:";

    KeyedText names_{kNameMarker};
    KeyedText categories_{",", kCategoryMarker};
};

}  // namespace zmr
