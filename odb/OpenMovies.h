#pragma once

#include "odb/MovieReader.h"

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

namespace zmr {

/// The movies that are open, by a number that fits where a pointer does not. Any thread.
class OpenMovies {
public:
    /// Takes the movie in and gives its number, never 0; 0 for null.
    [[nodiscard]] std::uint32_t add(std::unique_ptr<MovieReader> movie);
    /// Null when there is none of that number. A movie that is removed while another thread reads
    /// it lives until that is done.
    [[nodiscard]] std::shared_ptr<MovieReader> find(std::uint32_t number) const;
    void remove(std::uint32_t number);
    [[nodiscard]] std::size_t count() const;

private:
    mutable std::mutex mutex_;
    std::map<std::uint32_t, std::shared_ptr<MovieReader>> movies_;
    std::uint32_t last_number_ = 0;
};

}  // namespace zmr
