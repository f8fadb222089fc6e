#include "OrvaneCore/Transcripts/ThreadText.h"

#include <algorithm>
#include <variant>

#include "OrvaneCore/Agents/AgentTool.h"
#include "OrvaneCore/Support/Calendar.h"
#include "OrvaneCore/Support/Json.h"
#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Scan/TranscriptText.h"
#include "OrvaneCore/Transcripts/Thread/ThreadForm.h"

namespace orvane::ThreadText {

namespace {

using TranscriptFeed::Entry;
using TranscriptFeed::Role;
using TranscriptFeed::ThreadItem;

std::string_view agentName(TranscriptProvider provider) {
    const auto* const tool = std::ranges::find(agentTools, rawValue(provider), &AgentTool::id);
    return tool == agentTools.end() ? rawValue(provider) : tool->displayName;
}

/// "Read 3, Bash 2": the most used first, then in the order of their first use.
std::string toolCounts(const std::vector<Entry>& tools) {
    std::vector<std::pair<std::string, int>> counts;
    for (const Entry& entry : tools) {
        const std::string name = entry.tool.value_or("");
        const auto known = std::ranges::find(counts, name, &std::pair<std::string, int>::first);
        if (known == counts.end()) {
            counts.emplace_back(name, 1);
        } else {
            ++known->second;
        }
    }
    std::ranges::stable_sort(counts, std::ranges::greater(), &std::pair<std::string, int>::second);
    std::string list;
    for (const auto& [name, count] : counts)
        list += (list.empty() ? "" : ", ") + name + " " + std::to_string(count);
    return list;
}

/// Writes the items one behind the other and knows what has to stand between them.
class Writer {
 public:
    Writer(const Look& look, std::string_view agent)
        : look_(look), agent_(agent), form_(PieceForm::of(look.form)), calendar_(look.timeZone) {}

    void write(const Heading& heading) {
        std::vector<PieceForm::Fact> facts;
        const auto add = [&](const char* key, std::string value) {
            if (!value.empty()) facts.emplace_back(look_.l10n.text(key), std::move(value));
        };
        add("thread.agent", std::string(agent_));
        add("thread.project", heading.projectPath);
        add("thread.conversation", heading.id);
        add("thread.time", span(heading.from, heading.to));
        put(Piece::heading, form_->heading(heading.title, facts));
    }

    void write(const ThreadItem& item) {
        std::visit(Overloaded{[this](const ThreadItem::Single& single) { message(single.entry); },
                              [this](const ThreadItem::Activity& activity) { run(activity.entries); },
                              [this](const ThreadItem::Agent& agent) { subagent(agent.entry); }},
                   item.item);
    }

    std::string result() && { return std::move(text_) + "\n"; }

 private:
    enum class Piece { none, heading, turn, message, line };
    enum class Speaker { nobody, person, agent };

    void message(const Entry& entry) {
        switch (entry.role) {
            case Role::user:
                turn(Speaker::person, entry.at);
                break;
            case Role::error:
                return put(Piece::message, form_->aside(look_.l10n.text("thread.error"), entry.text));
            case Role::notice:
                return put(Piece::message, form_->aside(look_.l10n.text("thread.notice"), noticeText(entry.text)));
            case Role::assistant:
            case Role::tool:
            case Role::thinking:
                turn(Speaker::agent, entry.at);
                break;
        }
        if (!entry.text.empty()) put(Piece::message, form_->message(entry.text));
        for (const auto& attachment : entry.attachments)
            call(look_.l10n.text("thread.attachment"), attachment.path.empty() ? attachment.name : attachment.path, {});
    }

    void run(const std::vector<Entry>& entries) {
        turn(Speaker::agent, entries.front().at);
        std::vector<Entry> tools;
        std::ranges::copy_if(entries, std::back_inserter(tools),
                             [](const Entry& entry) { return entry.role != Role::thinking; });
        if (look_.tools == Tools::unfolded) return each(entries);
        if (tools.empty()) return put(Piece::line, form_->run(look_.l10n.text("thread.thinking")));
        if (tools.size() == 1) return each(tools);
        const auto failed = std::ranges::count(tools, Role::error, &Entry::role);
        std::string line = look_.l10n.plural("thread.tools", std::ssize(tools), toolCounts(tools));
        if (failed > 0) line = look_.l10n.text("thread.toolsFailed", line, failed);
        put(Piece::line, form_->run(line));
    }

    void each(const std::vector<Entry>& entries) {
        for (const Entry& entry : entries) {
            const bool isThought = entry.role == Role::thinking;
            if (isThought) {
                call(look_.l10n.text("thread.thinking"), Text::truncated(entry.text, TranscriptText::maximumDetail),
                     {});
            } else {
                call(entry.tool.value_or(""), entry.target.value_or(""), outcome(entry));
            }
        }
    }

    void subagent(const Entry& entry) {
        turn(Speaker::agent, entry.at);
        call(look_.l10n.text("thread.subagent"), entry.target.value_or(""), outcome(entry));
    }

    void call(std::string_view tool, std::string_view target, std::string_view outcome) {
        put(Piece::line, form_->call(tool, target, outcome));
    }

    /// Empty for a call that went well.
    std::string outcome(const Entry& entry) const {
        if (entry.role != Role::error) return {};
        return entry.text.empty() ? look_.l10n.text("thread.failed")
                                  : look_.l10n.text("thread.failedBecause", entry.text);
    }

    /// The agents' programs have words of their own for what happened.
    std::string noticeText(const std::string& text) const {
        constexpr std::string_view aborted = "turn_aborted";
        if (text == "context_compacted") return look_.l10n.text("thread.compacted");
        if (!text.starts_with(aborted)) return text;
        const std::string_view reason = std::string_view(text).substr(aborted.size());
        return look_.l10n.text("thread.interrupted") + std::string(reason == ": interrupted" ? "." : reason);
    }

    /// A person's words begin a turn each; the agent's next one begins when it has the word again.
    void turn(Speaker speaker, std::optional<Date> at) {
        if (speaker == Speaker::agent && speaker_ == speaker) return;
        speaker_ = speaker;
        const std::string name = speaker == Speaker::person ? look_.l10n.text("thread.you") : std::string(agent_);
        put(Piece::turn, form_->turn(name, at ? when(*at) : std::string()));
    }

    /// The day is told when it is another one than before.
    std::string when(Date at) {
        const Calendar::Reading reading = calendar_.reading(at);
        if (reading.day == day_) return reading.time;
        day_ = reading.day;
        return reading.day + " " + reading.time;
    }

    std::string span(Date from, Date to) const {
        if (to == Date{}) return {};
        const Calendar::Reading last = calendar_.reading(to);
        std::string end = last.day + " " + last.time;
        const Calendar::Reading first = from == Date{} ? last : calendar_.reading(from);
        const std::string start = first.day + " " + first.time;
        if (start == end) return end;
        return start + " – " + (first.day == last.day ? last.time : end);
    }

    void put(Piece piece, const std::string& text) {
        if (last_ == Piece::turn) {
            text_ += form_->behindTurn();
        } else if (last_ != Piece::none) {
            text_ += last_ == Piece::line && piece == Piece::line ? "\n" : "\n\n";
        }
        text_ += text;
        last_ = piece;
    }

    const Look& look_;
    std::string_view agent_;
    std::unique_ptr<PieceForm> form_;
    Calendar calendar_;
    std::string text_;
    Piece last_ = Piece::none;
    Speaker speaker_ = Speaker::nobody;
    std::string day_;
};

}  // namespace

std::string text(const Heading& heading, const std::vector<Entry>& entries, const Look& look) {
    Writer writer(look, agentName(heading.provider));
    writer.write(heading);
    for (const ThreadItem& item : TranscriptFeed::threadItems(entries))
        writer.write(item);
    return std::move(writer).result();
}

std::vector<Entry> newestWithin(std::vector<Entry> entries, std::size_t sizeInBytes) {
    std::size_t size = 0;
    auto first = entries.end();
    while (first != entries.begin()) {
        // With the comma behind it.
        size += Json::write(std::prev(first)->encode()).size() + 1;
        if (size > sizeInBytes) break;
        --first;
    }
    entries.erase(entries.begin(), first);
    return entries;
}

}  // namespace orvane::ThreadText
