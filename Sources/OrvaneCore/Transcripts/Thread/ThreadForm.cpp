#include "OrvaneCore/Transcripts/Thread/ThreadForm.h"

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Transcripts/Thread/Markdown.h"
#include "OrvaneCore/Transcripts/Thread/PlainText.h"

namespace orvane::ThreadText {

namespace {

constexpr std::string_view indent = "  ";

class PlainForm : public PieceForm {
 public:
    std::string heading(std::string_view title, const std::vector<Fact>& facts) const override {
        std::string text = Text::oneLine(title);
        for (const auto& [label, value] : facts)
            text.append("\n").append(label).append(": ").append(Text::oneLine(value));
        return text;
    }

    std::string turn(std::string_view speaker, std::string_view when) const override {
        return std::string(speaker) + (when.empty() ? "" : " · ") + std::string(when);
    }

    std::string message(std::string_view text) const override { return PlainText::lines(text); }

    std::string aside(std::string_view label, std::string_view text) const override {
        return std::string(label) + ": " + PlainText::lines(text);
    }

    std::string run(std::string_view text) const override { return std::string(indent) + Text::oneLine(text); }

    std::string call(std::string_view tool, std::string_view target, std::string_view outcome) const override {
        return std::string(indent) + PlainText::call(tool, target, outcome);
    }

    std::string_view behindTurn() const override { return "\n"; }
};

class MarkdownForm : public PieceForm {
 public:
    std::string heading(std::string_view title, const std::vector<Fact>& facts) const override {
        std::string text = "# " + Markdown::escaped(title) + "\n";
        for (const auto& [label, value] : facts)
            text.append("\n- ").append(label).append(": ").append(Markdown::escaped(value));
        return text;
    }

    std::string turn(std::string_view speaker, std::string_view when) const override {
        return "## " + Markdown::escaped(speaker) + (when.empty() ? "" : " · ") + std::string(when);
    }

    std::string message(std::string_view text) const override { return Markdown::closed(PlainText::lines(text)); }

    std::string aside(std::string_view label, std::string_view text) const override {
        return Markdown::quoted("**" + std::string(label) + ":** " + PlainText::lines(text));
    }

    std::string run(std::string_view text) const override { return "- " + Markdown::escaped(text); }

    std::string call(std::string_view tool, std::string_view target, std::string_view outcome) const override {
        std::string line = "- **" + Markdown::escaped(tool) + "**";
        if (!target.empty()) line += " " + Markdown::code(target);
        if (!outcome.empty()) line += " — " + Markdown::escaped(outcome);
        return line;
    }

    std::string_view behindTurn() const override { return "\n\n"; }
};

}  // namespace

std::unique_ptr<PieceForm> PieceForm::of(Form form) {
    if (form == Form::markdown) return std::make_unique<MarkdownForm>();
    return std::make_unique<PlainForm>();
}

}  // namespace orvane::ThreadText
