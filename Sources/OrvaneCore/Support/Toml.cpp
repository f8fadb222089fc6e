#include "OrvaneCore/Support/Toml.h"

#include <algorithm>
#include <boost/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "OrvaneCore/Support/Text.h"
#include "OrvaneCore/Support/TomlCursor.h"
#include "OrvaneCore/Support/TomlText.h"
#include "OrvaneCore/Support/TomlValue.h"

namespace orvane::Toml {

namespace {

class Reader {
 public:
    explicit Reader(std::string_view text) : text_(text), cursor_(text) {}

    Document read() {
        for (cursor_.skipFiller(); !cursor_.isAtEnd(); cursor_.skipFiller())
            readStatement();
        return {.root = std::move(root_), .skippedLines = std::move(skippedLines_)};
    }

 private:
    /// Where it ends is not known of a malformed statement that runs over several lines, so the line behind its first
    /// is tried. After this many the rest of them goes too, or a hostile text would be read once for every line.
    static constexpr int maximumRetries = 32;

    void readStatement() {
        const TomlCursor start = cursor_;
        if (cursor_.isAt("[")) {
            table_ = nullptr;
            auto header = readHeader();
            if (!header) return recover(start);
            table_ = open(*header);
            if (table_ == nullptr) note(start);
            return;
        }
        auto member = TomlMember::read(cursor_, 0);
        if (!member || !cursor_.takeLineEnd()) return recover(start);
        if (table_ == nullptr || !std::move(*member).insert(*table_)) note(start);
    }

    struct Header {
        std::vector<std::string> key;
        bool startsElement = false;  ///< of an array of tables
    };

    std::optional<Header> readHeader() {
        const bool startsElement = cursor_.take("[[");
        if (!startsElement) cursor_.take("[");
        auto key = readTomlKey(cursor_);
        if (!key || !cursor_.take(startsElement ? "]]" : "]") || !cursor_.takeLineEnd()) return std::nullopt;
        return Header{.key = *std::move(key), .startsElement = startsElement};
    }

    /// The table that a header names, or null when something else stands in its way.
    boost::json::object* open(Header& header) {
        const std::string last = std::move(header.key.back());
        header.key.pop_back();
        boost::json::object* table = &root_;
        for (const std::string& part : header.key) {
            table = existing(*table, part);
            if (table == nullptr) return nullptr;
        }
        return header.startsElement ? newElement(*table, last) : existing(*table, last);
    }

    /// In an array of tables the one opened last.
    static boost::json::object* existing(boost::json::object& table, const std::string& key) {
        JsonValue* value = table.if_contains(key);
        JsonArray* array = value == nullptr ? nullptr : value->if_array();
        if (array == nullptr) return tomlSubtable(table, key);
        return array->empty() ? nullptr : array->back().if_object();
    }

    static boost::json::object* newElement(boost::json::object& table, const std::string& key) {
        JsonArray* array = table.emplace(key, JsonArray()).first->value().if_array();
        if (array == nullptr || (!array->empty() && !array->back().is_object())) return nullptr;
        return &array->emplace_back(boost::json::object()).get_object();
    }

    /// Goes on behind the first line of a malformed statement, or behind all of it.
    void recover(const TomlCursor& start) {
        note(start);
        TomlCursor next = start;
        next.skipToNextLine();
        const bool isLonger = cursor_.position() > next.position();
        if (isLonger && ++retries_ > maximumRetries) {
            cursor_.skipToNextLine();
        } else {
            cursor_ = next;
        }
    }

    void note(const TomlCursor& start) {
        if (skippedLines_.size() == maximumSkippedLines) return;
        line_ +=
            static_cast<std::size_t>(std::ranges::count(text_.substr(counted_, start.position() - counted_), '\n'));
        counted_ = start.position();
        skippedLines_.push_back(line_);
    }

    std::string_view text_;
    TomlCursor cursor_;
    boost::json::object root_;
    /// Where the lines below the last header go; null when that was none.
    boost::json::object* table_ = &root_;
    std::vector<std::size_t> skippedLines_;
    /// The line of the byte at `counted_`.
    std::size_t line_ = 1;
    std::size_t counted_ = 0;
    int retries_ = 0;
};

}  // namespace

Document read(std::string_view text) {
    if (text.size() > maximumSize) return {.root = boost::json::object(), .skippedLines = {1}};
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    return Text::isValidUtf8(text) ? Reader(text).read() : Reader(Text::sanitizedUtf8(text)).read();
}

}  // namespace orvane::Toml
