#include "OrvaneShell/Terminal/TypedBytes.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(TypedBytesTest, readsWhatPeopleWriteForKeys) {
    using namespace std::string_literals;
    EXPECT_EQ(TypedBytes::parse(R"(ls -l\r\e[A\t\\\x00\xfFé)"), "ls -l\r\x1b[A\t\\\0\xff"s + "é");
    for (const char* wrong : {"\\q", "\\", "a\\x", "\\x1", "\\xg0", "\\x-1"})
        EXPECT_FALSE(TypedBytes::parse(wrong)) << wrong;
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all += static_cast<char>(byte);
    EXPECT_EQ(TypedBytes::parse(TypedBytes::write(all)), all);
}

}  // namespace
}  // namespace orvane
