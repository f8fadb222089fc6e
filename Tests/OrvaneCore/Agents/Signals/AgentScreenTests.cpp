// Screens in the agents' grammar with other words, widths and hints than those that were recorded.

#include "OrvaneCore/Agents/Signals/AgentScreen.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "OrvaneCore/Agents/Signals/ClaudePromptSignals.h"
#include "OrvaneCore/Agents/Signals/CodexSignals.h"

namespace orvane {
namespace {

using Rows = std::vector<std::string>;

/// "~" is a no-break space, "@" at the beginning of a row makes it faint, "-----" and "=====" are lines across.
AgentScreen screenOf(SessionKind kind, int columns, const std::string& title, const std::string& text) {
    AgentScreen screen{.kind = kind, .rows = {}, .dimmed = {}, .title = title, .columns = columns};
    std::istringstream lines(text.substr(1));
    for (std::string row; std::getline(lines, row);) {
        screen.dimmed.push_back(row.starts_with('@'));
        if (row.starts_with('@')) row.erase(0, 1);
        const std::map<std::string, std::string> lineGlyphs = {{"-----", "─"}, {"=====", "▄"}, {"_____", "▀"}};
        if (const auto glyph = lineGlyphs.find(row); glyph != lineGlyphs.end()) {
            row.clear();
            for (int col = 0; col < columns; ++col)
                row += glyph->second;
        }
        for (std::size_t at = row.find('~'); at != std::string::npos; at = row.find('~'))
            row.replace(at, 1, "\u00A0");
        screen.rows.push_back(row);
    }
    return screen;
}

/// "status: question | 1 label; *2 label (words) | draft".
std::string told(const AgentScreenReading& reading) {
    const std::map<SilenceVerdict, std::string> names = {{SilenceVerdict::needsUser, "waiting"},
                                                         {SilenceVerdict::working, "working"},
                                                         {SilenceVerdict::finished, "idle"},
                                                         {SilenceVerdict::unknown, "unknown"}};
    std::string text = names.at(reading.verdict);
    if (!reading.question.empty()) text += ": " + reading.question;
    for (const PrintedOption& option : reading.options) {
        text += &option == &reading.options.front() ? " | " : "; ";
        text += option.selected ? "*" : "";
        text += std::to_string(option.number) + " " + option.label + (option.freeText ? " (words)" : "");
        if (option.isTicked) text += *option.isTicked ? " [x]" : " [ ]";
        if (!option.detail.empty()) text += " -- " + option.detail;
    }
    if (reading.draft) text += " <" + *reading.draft + ">";
    return text;
}

struct Case {
    std::string name, expected;
    int columns;
    std::string title, screen;
};

void check(SessionKind kind, const std::vector<Case>& cases) {
    for (const Case& each : cases) {
        AgentScreen screen = screenOf(kind, each.columns, each.title, each.screen);
        const AgentScreenReading reading = screen.read();
        EXPECT_EQ(told(reading), each.expected) << each.name;
        // Without the width, which the pure functions do not know, at least the state is the same.
        screen.columns = 0;
        EXPECT_EQ(screen.read().verdict, reading.verdict) << each.name;
    }
}

TEST(AgentScreenTest, readsClaudesDialogs) {
    check(
        SessionKind::claude,
        {{"narrow, wrapped, without a hint",
          "waiting: Do you want to proceed with this command in the folder? | *1 Yes; 2 Yes, and don't ask again for "
          "npm run commands in /home/ann/site; 3 No, and tell Claude what to do differently (esc)",
          40, "✳ site", R"(
❯ build it
● Bash(npm run build)
  ⎿  Running…
-----
 Bash command

   npm run build && echo really?
   Build the site

 Do you want to proceed with this
 command in the folder?
 ❯ 1. Yes
   2. Yes, and don't ask again for npm
      run commands in /home/ann/site
   3. No, and tell Claude what to do
      differently (esc)
)"},
         {"in a box", "waiting: Do you want to proceed? | 1 Yes; *2 No, and tell Claude what to do differently (esc)",
          60, "", R"(
╭──────────────────────────────────────────────────────────╮
│ Tool use                                                 │
│                                                          │
│   weather - forecast(city: "Rome") (MCP)                 │
│                                                          │
│ Do you want to proceed?                                  │
│   1. Yes                                                 │
│ ❯ 2. No, and tell Claude what to do differently (esc)    │
│                                                          │
╰──────────────────────────────────────────────────────────╯
)"},
         {"a plan with numbers of its own",
          "waiting: Claude has written up a plan and is ready to execute. Would you like to proceed? | *1 Yes, and "
          "auto-accept edits; 2 Yes, and manually approve edits; 3 Type here to tell Claude what to change (words)",
          120, "✳ plan", R"(
● Here is Claude's plan:
╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌
 1. Read the file
 2. Change it… and ask whether it is right?
╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌╌
 Claude has written up a plan and is ready to execute. Would you like to proceed?

 ❯ 1. Yes, and auto-accept edits
   2. Yes, and manually approve edits
   3. Type here to tell Claude what to change

 ctrl-g to edit in Vim · ~/.claude/plans/plan.md
)"},
         {"another language, wrapped without blanks",
          "waiting: 背景色はどれにしますか、ご希望の色を選んでください？ | *1 赤色にする -- 暖かい; 2 青色; 3 Type "
          "something. (words)",
          40, "✳ 色", R"(
-----
 ☐ 色

背景色はどれにしますか、ご希望の色を選
んでください？

❯ 1. 赤色にする
     暖かい
  2. 青色
  3. Type something.

Enter to select · ↑/↓ to navigate · Esc
)"},
         {"its beginning is cut off", "waiting | *2 Blue; 3 Green; 4 Chat about this (words)", 80, "✳ x", R"(
❯ 2. Blue
  3. Green
-----
  4. Chat about this

Enter to select · Tab/Arrow keys to navigate · Esc to cancel
)"},
         {"several may be taken, the button is selected",
          "waiting: Which targets should be built? | 1 Desktop [x] -- The window; 2 Server [ ]; 3 Type something "
          "(words) [ ]",
          80, "✳ x", R"(
-----
←  ☒ Colour  ☒ Targets  ✔ Submit  →

Which targets should be built?

  1. [x] Desktop
         The window
  2. [ ] Server
  3. [ ] Type something
❯    Submit

Enter to select · Esc to cancel
)"},
         {"a question without a question mark, tabs", "waiting: Pick a store. | *1 Files; 2 SQLite (fast)", 200, "✳ x",
          R"(
● A list from before:
  1. one
  2. two
-----
←  ☐ Store  ☐ Format  ✔ Submit  →

Pick a store.

❯ 1. Files
  2. SQLite (fast) ✔

Enter to select · Esc to cancel
)"},
         {"only a key to press", "waiting", 80, "", R"(
 Login successful. Press Enter to continue…
)"},
         {"options without numbers", "waiting: Do you trust it? | 0 Yes, continue; *0 No, exit", 80, "", R"(
-----
 Do you trust it?

   Yes, continue
 ❯ No, exit

 Enter to confirm · Esc to cancel
)"}});
}

TEST(AgentScreenTest, doesNotTakeClaudesTextAndDraftsForSignals) {
    check(SessionKind::claude,
          {{"a printed list", "idle <>", 80, "✳ x", R"(
● Do you want one of these?

  1. Run the tests…
  2. Press Enter to continue

  While it runs, press esc to interrupt.
-----
❯~
-----
  ⏵⏵ accept edits on (shift+tab to cycle)
)"},
           {"a draft with numbers and dots", "idle <1. first…\n2. second\n\n> 3. esc to interrupt>", 80, "✳ x", R"(
● Which?
-----
❯~1. first…
  2. second

  > 3. esc to interrupt
-----
  ⏸ manual mode on
)"},
           {"the same, drawn with plain blanks in a box", "idle <1. yes\n2. no>", 60, "", R"(
> what now?

⏺ Do you want to proceed?

╭──────────────────────────────────────────────────────────╮
│ > 1. yes                                                 │
│   2. no                                                  │
╰──────────────────────────────────────────────────────────╯
  ? for shortcuts
)"},
           {"the last words end in dots", "idle <>", 80, "✳ x", R"(
● I am thinking about it...
  and so on…
-----
@❯~Try "fix lint errors"
-----
  ? for shor…
)"},
           {"a shell command is typed", "idle <ls -l>", 80, "✳ x", R"(
✻ Worked for 3s
-----
! ls -l
-----
  ! for shell mode
)"},
           {"asked whether to end", "idle <>", 80, "✳ x", R"(
-----
❯~
-----
  Press Ctrl-C again to exit
)"},
           {"busy, with steps below the spinner", "working <>", 80, "", R"(
● Let me see.

✻ Pondering… (12s · ↑ 1.2k tokens)
  ⎿  ☒ Read the file
     ☐ Change it
     ☐ Test it

-----
❯~
-----
  ⏸ plan mode on (shift+tab to cycle)
)"},
           {"busy, an older spinner, a draft", "working <1. wait>", 60, "", R"(
⏺ Reading.

✽ Herding… (5s · esc to interrupt)

╭──────────────────────────────────────────────────────────╮
│ > 1. wait                                                │
╰──────────────────────────────────────────────────────────╯
)"},
           {"busy, by a hint that is cut", "working <>", 40, "", R"(
● Words that fill the row and go on an…
-----
❯~
-----
  ⏵⏵ bypass permissions on · esc to int…
)"},
           {"busy by its title", "working <>", 80, "◒ x", "\n● a\n-----\n❯~\n-----\n  x\n"},
           {"nothing", "unknown", 80, "", "\n\n\n"}});
}

TEST(AgentScreenTest, readsCodex) {
    check(SessionKind::codex,
          {{"facts that look like questions",
            "waiting: Would you like to make the following edits? | *1 Yes, proceed (y); 2 No, and tell Codex what to "
            "do differently (esc)",
            80, "[ . ] Action Required | site", R"(
› change it

• Shall I ask whether
  this is right?

  Would you like to make the following edits?

  Reason: May the file be
  changed?

  notes.txt (+1 -1)

    1 -what?
    1 +why?

› 1. Yes, proceed (y)
  2. No, and tell Codex what to do differently (esc)

  Press enter to confirm or esc to cancel
)"},
           {"a form",
            "waiting: Which colour should the button have? | *1 Red (Recommended) -- A warm colour that "
            "everybody likes.; 2 None of the above -- Add details in notes.",
            80, "site", R"(
  Question 1/2 (2 unanswered)
  Which colour should the button have?

  › 1. Red (Recommended)  A warm colour that everybody
                          likes.
    2. None of the above  Add details in notes.

  tab to add notes | enter to submit answer | esc to interrupt
)"},
           {"an older trust question",
            "waiting: Do you trust the contents of this directory? | *1 Yes, continue; 2 No, quit", 120, "", R"(
> You are in /home/ann/site

  Do you trust the contents of this directory? Working with untrusted contents comes with higher risk.

> 1. Yes, continue
  2. No, quit

  Press enter to continue
)"},
           {"its hint is cut off", "waiting: Would you like to run it? | 1 Yes; *2 No", 40, "", R"(
• Running it

  Would you like to run it?

  1. Yes
› 2. No
)"},
           {"asks by its title alone", "waiting", 80, "[ ! ] Action Required | site", "\n  Something new\n"},
           {"a draft with numbers", "idle <1. fix it…\n2. test it\n\n3. esc>", 80, "site", R"(
• Would you like it?

› 1. fix it…
  2. test it

  3. esc

  gpt-6 default · ~/site
)"},
           {"a prompt with numbers that was sent", "idle <>", 80, "site", R"(
› 1. fix it
  2. test it

• Working (7s • esc to interrupt) is what I print while busy.

@› Ask Codex to do anything

  gpt-6 default · ~/site
  ? for shortcuts
)"},
           {"busy with queued prompts", "working <1. next>", 80, "site", R"(
• Reading it.

◦ Working (1m 07s • esc to interrupt)

• Queued follow-up inputs
  ↳ queued words

› 1. next

  gpt-6 default · ~/site
)"},
           {"busy by its title", "working <>", 80, "⠙ site", "\n• a\n\n@› Ask\n\n  gpt-6 · ~/site\n"}});
}

TEST(AgentScreenTest, readsGemini) {
    check(
        SessionKind::gemini,
        {{"narrow and wrapped",
          "waiting: Allow execution of the following commands in this folder? | *1 Allow once; 2 Allow for this "
          "session, and do not ask again; 3 No (esc)",
          40, "✋  Action Required (site)", R"(
⠏ Waiting for user confirmation...
╭──────────────────────────────────────╮
│ ? Shell  rm -r build && echo sure?   │
│ ╭──────────────────────────────────╮ │
│ │ rm -r build && echo sure?        │ │
│ ╰──────────────────────────────────╯ │
│ Allow execution of the following     │
│ commands in this folder?             │
│                                      │
│ ● 1. Allow once                      │
│   2. Allow for this session, and do  │
│      not ask again                   │
│   3. No (esc)                        │
╰──────────────────────────────────────╯
)"},
         {"a dialog while the title is behind", "waiting: Welches Theme? | 1 Dunkel; *2 Hell", 60, "◇  Ready (site)",
          R"(
=====
 > 1. a prompt
   2. with numbers
_____
╭──────────────────────────────────────────────────────────╮
│ Welches Theme?                                           │
│                                                          │
│   1. Dunkel                                              │
│ ● 2. Hell                                                │
╰──────────────────────────────────────────────────────────╯
)"},
         {"a draft with numbers below an answer with a list", "idle <1. one...\n2. two>", 80, "◇  Ready (site)", R"(
✦ Choose:

  1. a
  2. b
-----
 Shift+Tab to accept edits
=====
 > 1. one...
   2. two
_____
 ~/site        main
)"},
         {"shell mode, busy", "working <ls>", 80, "", R"(
 ⠴ Fetching the answer… (esc to cancel, 1m 5s)            ? for shortcuts
-----
=====
 ! ls
_____
)"},
         {"its placeholder", "idle <>", 80, "", "\n=====\n *   Type your message or @path/to/file\n_____\n ~/site\n"}});
}

TEST(AgentScreenTest, offersOnlyWhatItsDigitAnswers) {
    const auto request = [](const std::string& text) {
        return *screenOf(SessionKind::claude, 80, "", text).read().request;
    };
    using Kind = ApprovalPolicy::Request::Kind;
    EXPECT_EQ(request("\nWhich?\n\n❯ 1. A\n  2. B\n  3. Type something\n").options, (Rows{"A", "B"}));
    const auto several = request("\n☒ A  ☐ B\n\nWhich?\n\n❯ 1. [ ] A\n  2. [ ] B\n\nEnter to select\n");
    EXPECT_EQ(several.kind, Kind::revealOnly);
    EXPECT_EQ(several.options, Rows());
    EXPECT_EQ(std::pair(several.questionIndex, several.questionCount), std::pair(std::optional(2), std::optional(2)));
    EXPECT_EQ(request("\nWhich?\n\n  2. A\n❯ 3. B\n").kind, Kind::revealOnly);
    EXPECT_EQ(request("\nWhich?\n\n❯ 1. Type something.\n  2. Chat about this\n").kind, Kind::freeform);
    EXPECT_EQ(request("\nWhat?\n\n❯ 1. A\n  2. B\n").kind, Kind::choice);
    EXPECT_EQ(request("\nDo you want to go on?\n❯ 1. A\n  2. B\n").kind, Kind::approval);
}

TEST(ClaudePromptSignalsTest, looksAtTheLastThreeRows) {
    for (const Rows& rows : {Rows{"✻ Thinking…", "", "│ > │", ""}, Rows{"Working...", "a", "b"},
                             Rows{"✽ Musing (esc to interrupt)"}, Rows{"✻ A…", "❯ x…", "? for shortcuts"}})
        EXPECT_TRUE(ClaudePromptSignals::isBusy(rows)) << rows.front();
    for (const Rows& rows : {Rows{"✻ Thinking…", "a", "b", "c"}, Rows{"> wait…"}, Rows{"❯ 1. Wait…"}, Rows{"2. Wait…"},
                             Rows{"Enter to select… · Esc to cancel"}, Rows{}})
        EXPECT_FALSE(ClaudePromptSignals::isBusy(rows)) << (rows.empty() ? "" : rows.front());
    EXPECT_TRUE(ClaudePromptSignals::awaitsUser(Rows{"Press y to accept"}));
    EXPECT_FALSE(ClaudePromptSignals::awaitsUser(Rows{"1. Yes", "2. No"}));
    EXPECT_FALSE(ClaudePromptSignals::request(Rows{"❯ 1. Yes", "  2. No"}));
}

TEST(CodexNotificationSignalsTest, readsJoinedRows) {
    const auto request = CodexNotificationSignals::request(
        "╭────────────╮\n│ Question 2/3 │\n│ environment: local │\n│ Which one? │\n│ › 1. A │\n│ 2. B │\n│ add notes "
        "│\n"
        "│ enter to submit answer │\n╰────────────╯\n");
    ASSERT_TRUE(request);
    EXPECT_EQ(request->detail, "Which one?");
    EXPECT_EQ(request->questionIndex, 2);
    EXPECT_EQ(request->questionCount, 3);
    EXPECT_FALSE(CodexNotificationSignals::request("Which?\n1. A\n2. B\n"));
}

}  // namespace
}  // namespace orvane
