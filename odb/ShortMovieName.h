#pragma once

#include "foundation/GString.h"

namespace zmr {

/// A name of a few characters for a movie inside a library, as long as it lives. The AVI layer
/// makes the titles of streams of a file's name; Wine's copies it into 64 characters, also when it
/// is longer, over what comes behind them. Any thread.
class ShortMovieName {
public:
    /// Of the name that ODB_MovieAttribute gives. Any other name stays as it is.
    explicit ShortMovieName(const char* movie_name);
    ~ShortMovieName();
    ShortMovieName(const ShortMovieName&) = delete;
    ShortMovieName& operator=(const ShortMovieName&) = delete;

    [[nodiscard]] const char* text() const { return text_.text; }

    /// The name that `text` is short for; false, with it unchanged, when it is none.
    static bool Find(const char* text, GString& movie_name);

private:
    GString text_;
    bool is_short_ = false;
};

}  // namespace zmr
