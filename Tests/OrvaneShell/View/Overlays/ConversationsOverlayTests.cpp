#include "OrvaneShell/View/Overlays/ConversationsOverlay.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "OrvaneShell/Host/ConversationResume.h"
#include "OrvaneShell/ServicesFixture.h"
#include "OrvaneShell/View/ViewContext.h"

namespace orvane {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ConversationsOverlayTest : public testing::ServicesFixture {
 protected:
    void write(const std::string& name, const std::string& text) {
        std::filesystem::create_directories(std::filesystem::path(folder.path(name)).parent_path());
        folder.write(name, text);
    }

    /// One that was held on that day of January; its messages are the prompt and an answer.
    void converse(const std::string& id, int day, const std::string& prompt, const std::string& answer) {
        const std::string at = R"(","timestamp":"2026-01-0)" + std::to_string(day) + R"(T10:00:00Z",)";
        write(".claude/projects/-w/" + id + ".jsonl",
              R"({"type":"user","uuid":"u1","sessionId":")" + id + R"(","cwd":")" + folder.path("work") + at +
                  R"("message":{"content":")" + prompt + "\"}}\n" + R"({"type":"assistant","uuid":"u2)" + at +
                  R"("message":{"content":[{"type":"text","text":")" + answer + "\"}]}}\n");
    }

    ConversationsOverlay& open() {
        view.open(std::make_unique<ConversationsOverlay>(view));
        return static_cast<ConversationsOverlay&>(*view.overlay);
    }

    /// What the overlay draws, a line for each row.
    std::string drawn(int cols = 120, int rows = 30) {
        Canvas canvas(cols, rows);
        if (view.overlay != nullptr) view.overlay->paint(view, canvas);
        std::string text;
        for (int y = 0; y < rows; ++y) {
            for (const StoredCell& cell : canvas.row(y))
                if (!cell.isRightHalf()) text += cell.isEmpty() ? " " : canvas.clusters().text(cell.code());
            text += '\n';
        }
        return text;
    }

    ::testing::AssertionResult untilDrawn(const std::string& wanted) {
        if (loop.runUntil([&] { return drawn().contains(wanted); })) return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << wanted << " is not in\n" << drawn();
    }

    void press(KeyName name) { type({.name = name}); }
    void control(char32_t letter) { type({.character = letter, .modifiers = {.control = true}}); }
    void type(const std::string& text) {
        for (const char letter : text)
            type(KeyEvent{.character = static_cast<char32_t>(letter)});
    }
    void type(const KeyEvent& key) {
        auto current = std::move(view.overlay);
        if (current->key(view, key) == ViewOverlay::Next::stays && view.overlay == nullptr)
            view.overlay = std::move(current);
    }

    ViewContext view{viewServices(),
                     {.requestFrame = [] {}, .detach = {}, .stopHost = {}, .openProject = {}, .copy = {}}};
};

TEST_F(ConversationsOverlayTest, TheChosenConversationStaysChosenWhileOthersCome) {
    converse("a", 1, "mend the login", "The form is mended.");
    converse("b", 2, "write the tests", "Ten of them.");
    open();
    ASSERT_TRUE(untilDrawn("2 of 2"));
    ASSERT_TRUE(untilDrawn("● Ten of them.")) << "the newest is chosen, and its preview read";
    press(KeyName::down);
    ASSERT_TRUE(untilDrawn("● The form is mended."));
    converse("c", 3, "deploy the rest", "Out.");
    history->refresh();
    ASSERT_TRUE(untilDrawn("3 of 3"));
    EXPECT_THAT(drawn(), HasSubstr("● The form is mended."));

    // A search begins at its best, and what is not found says so.
    type("tests");
    ASSERT_TRUE(untilDrawn("1 of 1"));
    ASSERT_TRUE(untilDrawn("● Ten of them."));
    EXPECT_THAT(drawn(), HasSubstr("best match first"));
    type("q");
    ASSERT_TRUE(untilDrawn("No conversations found."));
    EXPECT_THAT(drawn(), Not(HasSubstr("Ten of them.")));
    control('u');
    ASSERT_TRUE(untilDrawn("3 of 3"));
    control('f');
    control('f');
    ASSERT_TRUE(untilDrawn("C-f codex"));
    ASSERT_TRUE(untilDrawn("0 of 0"));
    control('f');
    control('f');
    control('s');
    ASSERT_TRUE(untilDrawn("by title"));
    ASSERT_TRUE(untilDrawn("● Out.")) << "the first by its title";
    view.overlay->wheel(view, 0, 0, 3);
    ASSERT_TRUE(untilDrawn("● Ten of them."));
    press(KeyName::escape);
    EXPECT_EQ(view.overlay, nullptr);
}

TEST_F(ConversationsOverlayTest, ItFitsAnyTerminal) {
    for (int day = 1; day <= 9; ++day)
        converse("id" + std::to_string(day), day, "日本語の題名 " + std::string(60, 'x'),
                 "answer " + std::to_string(day));
    open();
    ASSERT_TRUE(untilDrawn("9 of 9"));
    ASSERT_TRUE(untilDrawn("answer 9"));
    for (const auto& [cols, rows] : {std::pair(1, 1), {20, 4}, {60, 15}, {99, 24}, {100, 24}, {400, 120}}) {
        const std::string screen = drawn(cols, rows);
        EXPECT_EQ(screen.contains("answer 9"), cols >= ConversationsOverlay::colsForPreview) << cols;
        EXPECT_EQ(screen.contains("claude  日本語"), rows >= 15) << rows;
    }
    press(KeyName::tab);
    EXPECT_THAT(drawn(60, 15), HasSubstr("answer 9"));
    EXPECT_THAT(drawn(60, 15), Not(HasSubstr("claude  日本語")));
    press(KeyName::tab);
    press(KeyName::end);
    ASSERT_TRUE(untilDrawn("answer 1"));
}

TEST_F(ConversationsOverlayTest, EnterResumesOrGoesToWhereItRuns) {
    converse("a", 1, "mend the login", "yes");
    open();
    // Enter before the rows are there takes what they then begin with; a folder that is gone is told.
    type("login");
    press(KeyName::enter);
    ASSERT_TRUE(loop.runUntil([&] { return !view.notice().empty(); }));
    EXPECT_EQ(view.notice(), "The project folder no longer exists: " + folder.path("work"));
    ASSERT_NE(view.overlay, nullptr);
    EXPECT_TRUE(store->sessions().empty());

    std::filesystem::create_directory(folder.path("work"));
    const Uuid elsewhere = store->addProject(folder.path());
    const SessionController* running = store->createSession(
        {.kind = SessionKind::claude, .project = elsewhere, .command = "sleep 1000 # claude --resume a"});
    ASSERT_NE(running, nullptr);
    const SessionController* other =
        store->createSession({.kind = SessionKind::shell, .project = elsewhere, .command = "exec sleep 1000"});
    ASSERT_EQ(store->workspace().selectedSessionID, other->id());
    press(KeyName::enter);
    EXPECT_EQ(view.overlay, nullptr);
    EXPECT_EQ(store->workspace().selectedSessionID, running->id());
    EXPECT_EQ(store->sessions().size(), 2U);
}

}  // namespace
}  // namespace orvane
