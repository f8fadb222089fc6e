#include <algorithm>
#include <array>

#include "Support/LogLine.h"
#include "Terminal/Pieces.h"

namespace orvane::benchmark::Pieces {

void log(Script& script) {
    const int longest = std::min(script.cols() - 1, 160);
    const int shortest = std::min(longest, 60);
    const int length = shortest + script.below(longest - shortest + 1);
    script.put("{}\r\n", logLine(script.next(), static_cast<std::size_t>(length)));
}

void shortLine(Script& script) {
    script.letters(1 + script.below(2));
    script.put("\r\n");
}

void longLine(Script& script) {
    script.letters(script.cols() * 3 + script.below(script.cols() * 5));
    script.put("\r\n");
}

/// As a pager shows a source file with its syntax coloured.
void source(Script& script) {
    int left = 20 + script.below(std::min(script.cols(), 120) - 20);
    script.put("\x1B[38;5;243m{:4} \x1B[0m", script.next() % 10'000);
    script.repeat(" ", script.below(4) * 2);
    for (left -= 11; left > 0;) {
        const int length = 2 + script.below(8);
        script.put("\x1B[{}m", 31 + script.below(6));
        script.letters(length);
        script.put("\x1B[0m ");
        left -= length + 1;
    }
    script.put("\r\n");
}

void cjkLog(Script& script) {
    static constexpr std::array<std::string_view, 6> phrases = {
        "测试完成，没有发现任何问题", "日志输出", "接続を確立しました。", "要求を処理しています",
        "파일을 저장했습니다",        "警告：",
    };
    script.put("12:00:{:02} [{}] ", script.next() % 60, script.below(100));
    const int count = script.cols() / 40 + script.below(3);
    for (int phrase = 0; phrase < count; ++phrase)
        script.put("{} ", phrases[static_cast<std::size_t>(script.below(phrases.size()))]);
    script.put("\r\n");
}

void mixedUnicode(Script& script) {
    static constexpr std::array<std::string_view, 10> words = {
        "👩‍💻", "👨‍👩‍👧‍👦",
        "🇫🇷🇯🇵",        "e\u0301te\u0301",
        "naïve",       "✅ done",
        "❤️",           "👍🏽",
        "Ελληνικά",    "हिन्दी",
    };
    for (int word = 0; word < script.cols() / 8; ++word)
        script.put("{} ", words[static_cast<std::size_t>(script.below(words.size()))]);
    script.put("\r\n");
}

/// As `ls --hyperlink` and a shell that sets the title for each command.
void linksAndTitles(Script& script) {
    script.put("\x1B]0;make target-{}\a", script.next());
    for (int link = 0; link < 4; ++link) {
        const int number = script.below(2000);
        script.put("\x1B]8;;https://example.org/source/file-{0}.cpp\x1B\\file-{0}.cpp\x1B]8;;\x1B\\  ", number);
    }
    script.put("\r\n");
}

}  // namespace orvane::benchmark::Pieces
