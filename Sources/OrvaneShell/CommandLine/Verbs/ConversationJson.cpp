#include "OrvaneShell/CommandLine/Verbs/ConversationJson.h"

namespace orvane {

boost::json::object conversationJson(const SessionRecord& record) {
    return {{"id", record.id},
            {"provider", rawValue(record.provider)},
            {"projectPath", record.projectPath},
            {"projectName", record.projectName()},
            {"title", record.title},
            {"firstPromptAt", record.firstPromptAt.iso8601()},
            {"lastActivityAt", record.lastActivityAt.iso8601()},
            {"messageCount", record.messageCount},
            {"approximateTokens", record.approximateTokens},
            {"filePath", record.filePath},
            {"preview", record.preview}};
}

}  // namespace orvane
