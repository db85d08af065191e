#include "odb/MovieProcedure.h"

namespace zmr {

bool install_movie_procedure(const char*)
{
    return false;
}

void remove_movie_procedures() {}

std::vector<std::uint32_t> installed_movie_codes()
{
    return {};
}

}  // namespace zmr
