#include "settings/BinaryText.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

TEST(BinaryText, Byte_LowerHalfComesFirst)
{
    const unsigned char byte = 0x3C;

    EXPECT_EQ(zmr::binary_to_text({&byte, 1}), "MD");
}

TEST(BinaryText, AllBytes_ComeBack)
{
    std::vector<unsigned char> bytes(256);
    std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    const std::string text = zmr::binary_to_text(bytes);

    ASSERT_EQ(zmr::binary_size(text), bytes.size());
    std::vector<unsigned char> again(bytes.size());
    zmr::text_to_binary(text, again.data());
    EXPECT_EQ(again, bytes);
}

TEST(BinaryText, OddLength_IsRefused)
{
    EXPECT_EQ(zmr::binary_size("A"), std::nullopt);
    EXPECT_EQ(zmr::binary_size("ABC"), std::nullopt);
}

TEST(BinaryText, LetterOutsideAToP_IsRefused)
{
    for (const char* const text : {"AQ", "a0", "A ", "@A", "Ap", "\xC1\x41"})
        EXPECT_EQ(zmr::binary_size(text), std::nullopt) << text;
    EXPECT_EQ(zmr::binary_size("AP"), 1u);
}

TEST(BinaryText, NoBytes_AreTheEmptyText)
{
    EXPECT_EQ(zmr::binary_to_text({}), "");
    EXPECT_EQ(zmr::binary_size(""), 0u);
}
