#include "odb/OpenMovies.h"

#include <utility>

namespace zmr {

std::uint32_t OpenMovies::add(std::unique_ptr<MovieReader> movie)
{
    if (movie == nullptr)
        return 0;
    const std::lock_guard locked(mutex_);
    do
        ++last_number_;
    while (last_number_ == 0 || movies_.contains(last_number_));
    movies_.emplace(last_number_, std::move(movie));
    return last_number_;
}

std::shared_ptr<MovieReader> OpenMovies::find(std::uint32_t number) const
{
    const std::lock_guard locked(mutex_);
    const auto found = movies_.find(number);
    return found == movies_.end() ? nullptr : found->second;
}

void OpenMovies::remove(std::uint32_t number)
{
    std::shared_ptr<MovieReader> movie;  // ends when the lock is open again: it may close a file
    const std::lock_guard locked(mutex_);
    const auto found = movies_.find(number);
    if (found == movies_.end())
        return;
    movie = std::move(found->second);
    movies_.erase(found);
}

std::size_t OpenMovies::count() const
{
    const std::lock_guard locked(mutex_);
    return movies_.size();
}

}  // namespace zmr
