#include "OrvaneShell/View/Painting/ContextGauge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane::ContextGauge {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ContextGaugeTests, TheFormsGrowShorterAndWarnWithoutColours) {
    EXPECT_THAT(forms({.model = "claude-opus-4-5-20251101", .fraction = 0.629}),
                ElementsAre("Opus 4.5 ▕███▏ ▏ 62%", "Opus 4.5 62%", "62%"));
    EXPECT_THAT(forms({.model = "", .fraction = 0.0}), ElementsAre("▕     ▏ 0%", "0%"));
    EXPECT_THAT(forms({.model = "gpt-5.2-codex", .fraction = 0.8}),
                ElementsAre("GPT-5.2 Codex ▕████ ▏ 80%!", "GPT-5.2 Codex 80%!", "80%!"));
    EXPECT_THAT(forms({.model = "", .fraction = 1.7}), ElementsAre("▕█████▏ 100%!", "100%!"));
    EXPECT_THAT(forms({.model = "claude-opus-4-5", .fraction = {}}), ElementsAre("Opus 4.5"));
    EXPECT_THAT(forms({}), IsEmpty());
    EXPECT_FALSE((Facts{.model = "x", .fraction = 0.79}).isWarning());
}

}  // namespace
}  // namespace orvane::ContextGauge
