#include "ToolListing.h"

#include "tests/tools/ToolProcess.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

std::vector<std::string> names_in(const std::string& library)
{
    const ToolResult listed = run_tool({"list", library, "-r", "--json"});
    EXPECT_EQ(listed.code, 0) << listed.err;
    std::vector<std::string> names;
    for (const auto& entry : nlohmann::json::parse(listed.out))
        names.push_back(entry.at("path").get<std::string>());
    return names;
}
