#include "OrvaneCore/Transcripts/LiveTrace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using ::testing::ElementsAre;

ToolEvent call(const std::string& id, const std::string& name, const std::string& target, double at,
               std::optional<bool> succeeded = true) {
    return {.id = id,
            .name = name,
            .category = ToolTrace::category(name),
            .target = target,
            .timestamp = at,
            .succeeded = succeeded,
            .inputDetail = "long"};
}

std::vector<std::string> ids(const std::vector<ToolEvent>& events) {
    std::vector<std::string> all;
    for (const ToolEvent& event : events)
        all.push_back(event.id);
    return all;
}

TEST(LiveTraceTest, WhatIsNewestStandsFirst) {
    const std::vector<ToolEvent> events = {call("1", "Read", "/w/a.c", 1),
                                           call("2", "Edit", "/w/b.c", 2),
                                           call("3", "Bash", "sudo make install", 3, false),
                                           call("4", "Edit", "/w/a.c", 4),
                                           call("5", "Read", "/etc/hosts", 3),
                                           call("6", "Bash", "curl https://x", 5, std::nullopt),
                                           call("7", "Bash", "make", 6, false),
                                           call("8", "Bash", "make test", 7, std::nullopt)};
    const LiveTrace report = LiveTrace::of(events, "/w");
    EXPECT_THAT(ids(report.running), ElementsAre("8", "6"));
    EXPECT_THAT(ids(report.failures), ElementsAre("7", "3"));
    EXPECT_THAT(ids(report.sensitive), ElementsAre("6", "3"));
    std::vector<std::string> files;
    for (const FileTouch& file : report.files)
        files.push_back(file.path + " " + std::to_string(file.edits));
    EXPECT_THAT(files, ElementsAre("a.c 1", "/etc/hosts 0", "b.c 1"));
    EXPECT_EQ(report.summary.total, 8);
    EXPECT_FALSE(report.failures.front().inputDetail) << "it may be long";
}

}  // namespace
}  // namespace orvane
