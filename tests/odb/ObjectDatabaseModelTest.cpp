// ZMR_ODB_OPERATIONS sets how much random work is done, ZMR_ODB_SEED where it begins.

#include "DatabaseModel.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

long number_of(const char* variable, long fallback)
{
    const char* const text = std::getenv(variable);
    return text == nullptr ? fallback : std::atol(text);
}

}  // namespace

TEST(ObjectDatabaseModel, RandomWork_IsAsTheModelSays)
{
    const long operations = number_of("ZMR_ODB_OPERATIONS", 20'000);
    const auto seed = static_cast<std::uint32_t>(number_of("ZMR_ODB_SEED", 1));
    DatabaseModel model(seed);
    for (long i = 1; i <= operations; ++i) {
        std::string difference = model.step();
        if (difference.empty() && i % 1000 == 0)
            difference = model.check_all();
        ASSERT_EQ(difference, "") << "operation " << i << " of seed " << seed << ": "
                                  << model.last_step();
    }
    EXPECT_EQ(model.reopen(), "");
    EXPECT_EQ(model.check_all(), "");
}
