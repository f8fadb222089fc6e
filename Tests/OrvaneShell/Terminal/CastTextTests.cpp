#include "OrvaneShell/Terminal/CastText.h"

#include <gtest/gtest.h>

#include "OrvaneCore/Support/Json.h"

namespace orvane {
namespace {

using Time = CastText::Time;

TEST(CastTextTest, OutputIsWholeWhereverItIsCut) {
    const std::string bytes = "a\x1b[1mé€𝄞\r\n\"\\ e\xCC\x81 \xFF \xE2\x82 b \xF0\x9F";
    const std::string shown = "a\x1b[1mé€𝄞\r\n\"\\ e\xCC\x81 \xEF\xBF\xBD \xEF\xBF\xBD b \xEF\xBF\xBD";
    for (std::size_t first = 0; first <= bytes.size(); ++first) {
        for (std::size_t second = first; second <= bytes.size(); ++second) {
            CastText cast;
            std::string lines = cast.output(Time(0.5), bytes.substr(0, first));
            lines += cast.output(Time(1), bytes.substr(first, second - first));
            lines += cast.output(Time(1.5), bytes.substr(second));
            lines += cast.finish(Time(2));
            std::string all;
            for (std::size_t at = 0; at < lines.size();) {
                const std::size_t end = lines.find('\n', at);
                const auto event = Json::parse(lines.substr(at, end - at));
                ASSERT_TRUE(event && event->is_array()) << lines;
                EXPECT_EQ(event->as_array().at(1).as_string(), "o");
                all += event->as_array().at(2).as_string();
                at = end + 1;
            }
            EXPECT_EQ(all, shown) << first << " " << second;
        }
    }
}

TEST(CastTextTest, EventsHaveTheFormOfTheFormatsVersionTwo) {
    CastText cast;
    EXPECT_EQ(CastText::header(80, 24),
              "{\"version\": 2, \"width\": 80, \"height\": 24, \"env\": {\"TERM\": \"xterm-256color\"}}\n");
    EXPECT_EQ(cast.output(Time(1.25), "x\x1b[m"), "[1.250, \"o\", \"x\\u001b[m\"]\n");
    EXPECT_EQ(cast.output(Time(2), "\xC3"), "");
    EXPECT_EQ(CastText::resize(Time(0), 100, 50), "[0.000, \"r\", \"100x50\"]\n");
    EXPECT_EQ(CastText::marker(Time(61.0004), "an agent asks"), "[61.000, \"m\", \"an agent asks\"]\n");
}

}  // namespace
}  // namespace orvane
