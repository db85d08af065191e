#pragma once

#include "foundation/GString.h"

#include <memory>

/// A compiled pattern (ECMAScript) that matches whole texts, case counting. Matching takes time in
/// proportion to pattern and text. A malformed pattern, one of more than kMaxPattern characters, or
/// one with more than nine digits in a count or in the number of a group, matches nothing and never
/// throws. A value; copies share the compiled form.
class ZMR_GV_API RegularExpression {
public:
    static constexpr unsigned kMaxPattern = 1000;

    /// A pattern that matches only the empty text.
    RegularExpression() : RegularExpression("") {}
    explicit RegularExpression(const char* pattern);

    /// True when the whole of `text` matches. Texts longer than 64 KiB do not match.
    [[nodiscard]] bool operator==(const char* text) const;
    /// False for a pattern that was refused.
    [[nodiscard]] bool valid() const { return compiled_ != nullptr; }
    [[nodiscard]] const GString& pattern() const { return pattern_; }

private:
    struct Compiled;

    GString pattern_;
    std::shared_ptr<const Compiled> compiled_;
};

/// The pattern as its text.
ZMR_GV_API opstream& operator<<(opstream& out, const RegularExpression& expression);
ZMR_GV_API ipstream& operator>>(ipstream& in, RegularExpression& expression);
