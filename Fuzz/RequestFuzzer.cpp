#include <algorithm>
#include <utility>

#include "Fuzzing.h"
#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneShell/Host/RequestRouter.h"
#include "Platform/FileDescriptor.h"
#include "Platform/ManualMainLoop.h"
#include "Support/TemporaryFolder.h"

using namespace orvane;
using fuzzing::require;

namespace {

/// A client that asked one thing. Its end unsubscribes what follows events.
class Asking final : public LineServer::Connection {
 public:
    ~Asking() override {
        if (onClose_) onClose_();
    }
    void reply(std::string_view line) override {
        const auto json = Json::parse(line);
        require(json && JSONObject(*json).contains("ok") && !line.contains('\n'), "a reply is one line of JSON");
        if (!std::exchange(isStreaming_, false)) ++answers_;
    }
    void beginStream() override {
        isStreaming_ = true;
        ++answers_;
    }
    void stream(std::string_view line) override { require(Json::parse(line).has_value(), "an event is JSON"); }
    void onInput(std::function<void(std::string_view line)>) override {}
    std::vector<FileDescriptor> takeDescriptors() override { return {}; }
    void onClose(std::function<void()> callback) override { onClose_ = std::move(callback); }
    int answers() const { return answers_; }

 private:
    int answers_ = 0;
    bool isStreaming_ = false;
    std::function<void()> onClose_;
};

/// Ids are random, so an input cannot name them: '@' stands for the first pane shown and '#' for its tab.
std::string withIDs(std::string_view line, const WorkspaceModel& workspace) {
    const auto active = workspace.activeSurfaceID.find(workspace.selectedProjectID.value_or(Uuid()));
    const auto tree = active == workspace.activeSurfaceID.end() ? workspace.surfaceTrees.end()
                                                                : workspace.surfaceTrees.find(active->second);
    std::string text;
    for (const char byte : line) {
        if ((byte != '@' && byte != '#') || tree == workspace.surfaceTrees.end()) {
            text += byte;
        } else {
            text += (byte == '@' ? tree->second.leafIDs().front() : tree->first).lowerText();
        }
    }
    return text;
}

}  // namespace

/// A host's requests, one a line. Its folder is missing, so every write fails at once: nothing waits for a disk. So is
/// its shell: no input runs anything.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    static ManualMainLoop loop;
    static BackgroundPool pool(1);
    SerialQueue queue(pool);
    PreferencesStore preferences(loop, queue, folder.path("missing/preferences.json"), [](const SystemError&) {});
    StateFile stateFile(loop, queue, folder.path("missing/state.json"), [](const SystemError&) {});
    CustomAgentStore agents(loop, queue, preferences, folder.path("missing/agents.json"), [](const SystemError&) {});
    const auto store =
        std::make_shared<AppStore>(AppStore::Services{.loop = loop,
                                                      .pool = pool,
                                                      .preferences = preferences,
                                                      .stateFile = stateFile,
                                                      .l10n = L10n(),
                                                      .customAgent = [&](const Uuid& id) { return agents.spec(id); }});
    store->load();
    ShellSetup shell{.environment = {{"HOME", folder.path()}}, .shell = folder.path("missing/shell")};
    const LoginCapture login(loop, shell);
    const auto tools = std::make_shared<ToolsManager>(
        ToolsManager::Services{.loop = loop, .pool = pool, .l10n = L10n(), .shell = shell, .loginCapture = login});
    const auto history =
        std::make_shared<HistoryService>(HistoryService::Services{.loop = loop,
                                                                  .pool = pool,
                                                                  .fileQueue = queue,
                                                                  .home = "/nonexistent",
                                                                  .indexPath = "/nonexistent/history.json"});
    RequestRouter router(
        {.store = *store, .agents = agents, .tools = *tools, .history = *history, .preferences = preferences}, L10n(),
        [] {});
    std::string_view input = fuzzing::asText(data, size);
    while (!input.empty()) {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const auto client = std::make_shared<Asking>();
        router.handle(client, withIDs(input.substr(0, end), store->workspace()));
        require(loop.runUntil([&] { return client->answers() > 0; }), "a request has an answer");
        loop.runPosted();
        require(client->answers() == 1, "a request has one answer");
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    return 0;
}
