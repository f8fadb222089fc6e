#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "OrvaneCore/Chat/ChatPromptEnvelope.h"
#include "OrvaneCore/Chat/ConversationHandoff.h"

namespace orvane {
namespace {

TEST(ChatPromptEnvelopeTest, AWrappedPromptIsReadBack) {
    EXPECT_EQ(ChatPromptEnvelope::wrap("hi", {}), "hi");
    const ChatPromptEnvelope::Payload payload{.message = "see \"it\"\n</x>",
                                              .attachments = {{"a", "/p/a"}, {"b", "/b"}}};
    const std::string text = ChatPromptEnvelope::wrap(payload.message, payload.attachments);
    EXPECT_THAT(text, testing::StartsWith("The user attached the following files to this message. Use them as context "
                                          "when relevant:\n- /p/a\n- /b\n\n<orvane-chat-prompt>\n{"));
    EXPECT_EQ(ChatPromptEnvelope::unpack(text), payload);
    EXPECT_EQ(ChatPromptEnvelope::visibleRequest(text), payload.message);
    for (const std::string damaged :
         {"", "<orvane-chat-prompt>", "<orvane-chat-prompt>{}</orvane-chat-prompt>",
          R"(<orvane-chat-prompt>{"message":"a","attachments":[{}]}</orvane-chat-prompt>)"}) {
        EXPECT_EQ(ChatPromptEnvelope::unpack(damaged), std::nullopt) << damaged;
        EXPECT_EQ(ChatPromptEnvelope::visibleRequest(damaged), damaged);
    }
}

TEST(ConversationHandoffTest, CarriesTheNewestMessagesOver) {
    using enum TranscriptFeed::Role;
    const auto entry = [](TranscriptFeed::Role role, std::string text) {
        return TranscriptFeed::Entry{.id = "i", .role = role, .text = std::move(text)};
    };
    const auto carried = [](const std::vector<TranscriptFeed::Entry>& entries) {
        return ConversationHandoff::unpack(ConversationHandoff::wrap(entries, "go on")).value().messages;
    };
    EXPECT_THAT(carried({entry(user, "a"), entry(tool, "x"), entry(assistant, "b")}),
                testing::ElementsAre(ConversationHandoff::Message{"user", "a"},
                                     ConversationHandoff::Message{"assistant", "b"}));
    EXPECT_EQ(carried({entry(user, "a"), entry(assistant, std::string(50000, 'b'))}).size(), 1U);
    EXPECT_EQ(carried({entry(user, "cut"), entry(user, "a"), entry(user, std::string(39999, 'b'))}).size(), 2U);
}

TEST(ConversationHandoffTest, FindsTheRequestInsideBothWrappers) {
    const std::string inner = ChatPromptEnvelope::wrap("look", {{"a", "/a"}});
    const std::string text = ConversationHandoff::wrap(std::vector<ConversationHandoff::Message>{}, inner);
    EXPECT_EQ(ConversationHandoff::visibleRequest(text), "look");
    EXPECT_EQ(ConversationHandoff::visibleRequest("plain"), "plain");
    std::string damaged = text;
    damaged.replace(damaged.find("currentRequest"), 1, "k");
    EXPECT_EQ(ConversationHandoff::unpack(damaged), std::nullopt);
}

}  // namespace
}  // namespace orvane
