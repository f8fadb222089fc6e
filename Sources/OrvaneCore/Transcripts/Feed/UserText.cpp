#include "OrvaneCore/Transcripts/Feed/UserText.h"

#include <optional>
#include <utility>

#include "OrvaneCore/Chat/ConversationHandoff.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"

namespace orvane::TranscriptFeed::UserText {

namespace {

constexpr std::size_t maximumCommand = 96;
constexpr std::string_view hiddenCommand = "/model";

std::string_view withoutMode(std::string_view text) {
    constexpr std::string_view closing = "</orvane-mode>";
    const std::string_view begun = Text::trimmed(text);
    const std::size_t end = begun.starts_with("<orvane-mode") ? begun.find(closing) : std::string_view::npos;
    return end == std::string_view::npos ? text : Text::trimmed(begun.substr(end + closing.size()));
}

/// The prompt with its attachments; none when it has neither.
std::optional<Message> enveloped(std::string_view text) {
    auto payload = ChatPromptEnvelope::unpack(text);
    if (!payload || payload->attachments.empty()) return std::nullopt;
    return Message{.text = TranscriptText::message(withoutMode(payload->message)),
                   .attachments = std::move(payload->attachments)};
}

std::vector<Message> handedOver(const ConversationHandoff::Payload& payload) {
    std::vector<Message> all;
    for (const ConversationHandoff::Message& turn : payload.messages) {
        std::string text = TranscriptText::message(turn.text);
        if (text.empty()) continue;
        const Role role = turn.role == rawValue(Role::assistant) ? Role::assistant : Role::user;
        all.push_back({.role = role, .text = std::move(text), .isHandedOver = true});
    }
    const std::string_view request = withoutMode(payload.currentRequest);
    Message last = enveloped(request).value_or(Message{.text = TranscriptText::message(request)});
    if (!last.text.empty() || !last.attachments.empty()) all.push_back(std::move(last));
    return all;
}

std::string cutCommand(std::string_view text) {
    return std::string(Text::prefix(TranscriptText::oneLine(text), maximumCommand));
}

std::vector<Message> notice(std::string text) {
    if (text.empty()) return {};
    return {Message{.role = Role::notice, .text = std::move(text)}};
}

std::vector<Message> taggedCommand(std::string_view text) {
    const auto name = TranscriptText::between(text, "<command-name>", "</command-name>");
    if (!name) return {};
    std::string shown = cutCommand(*name);
    if (shown == hiddenCommand) return {};
    const std::string arguments =
        cutCommand(TranscriptText::between(text, "<command-args>", "</command-args>").value_or(""));
    if (!arguments.empty()) shown.append(" ").append(arguments);
    return notice(std::move(shown));
}

std::vector<Message> slashCommand(std::string_view text) {
    std::string shown = cutCommand(text.substr(1));
    if (hiddenCommand.substr(1) == std::string_view(shown).substr(0, shown.find(' '))) return {};
    return notice(std::move(shown));
}

/// Agents put the name or a message first.
bool isTaggedCommand(std::string_view text) {
    return text.starts_with("<command-name>") || text.starts_with("<command-message>");
}

bool isOfAgent(std::string_view text) {
    return text.starts_with('<') || text.starts_with('[') || text.starts_with("Caveat:");
}

}  // namespace

std::vector<Message> messages(std::string_view text, CommandForm form) {
    const std::string_view spoken = withoutMode(text);
    if (auto payload = ConversationHandoff::unpack(spoken)) return handedOver(*payload);
    if (auto message = enveloped(spoken)) return {std::move(*message)};
    std::string cleaned = TranscriptText::message(spoken);
    if (form == CommandForm::tag && isTaggedCommand(cleaned)) return taggedCommand(cleaned);
    if (form == CommandForm::slash && cleaned.starts_with('/')) return slashCommand(cleaned);
    if (cleaned.empty() || isOfAgent(cleaned)) return {};
    return {Message{.text = std::move(cleaned)}};
}

}  // namespace orvane::TranscriptFeed::UserText
