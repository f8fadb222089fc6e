#include "OrvaneCore/Support/Json.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/json.hpp>
#include <boost/json/basic_parser_impl.hpp>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <vector>

#include "OrvaneCore/Support/Text.h"

namespace orvane::Json {

namespace {

class Writer {
 public:
    explicit Writer(Layout layout) : layout_(layout) {}

    void write(const JsonValue& value) {
        switch (value.kind()) {
            case boost::json::kind::null:
                text_ += "null";
                break;
            case boost::json::kind::bool_:
                text_ += value.get_bool() ? "true" : "false";
                break;
            case boost::json::kind::int64:
                append(value.get_int64());
                break;
            case boost::json::kind::uint64:
                append(value.get_uint64());
                break;
            case boost::json::kind::double_:
                writeNumber(value.get_double());
                break;
            case boost::json::kind::string:
                writeString(value.get_string());
                break;
            case boost::json::kind::array:
                writeArray(value.get_array());
                break;
            case boost::json::kind::object:
                writeObject(value.get_object());
                break;
        }
    }

    std::string take() { return std::move(text_); }

 private:
    template <typename Number>
    void append(Number number) {
        fmt::format_to(std::back_inserter(text_), "{}", number);
    }

    void writeNumber(double number) {
        if (!std::isfinite(number)) {
            text_ += "null";
            return;
        }
        append(number);
    }

    void writeString(std::string_view string) {
        // File names and what agents print need not be UTF-8. The document must be, or nobody could read it again.
        if (!Text::isValidUtf8(string)) return writeString(Text::sanitizedUtf8(string));
        text_ += '"';
        for (const char byte : string) {
            switch (byte) {
                case '"':
                    text_ += "\\\"";
                    break;
                case '\\':
                    text_ += "\\\\";
                    break;
                case '\n':
                    text_ += "\\n";
                    break;
                case '\r':
                    text_ += "\\r";
                    break;
                case '\t':
                    text_ += "\\t";
                    break;
                default:
                    writeByte(byte);
            }
        }
        text_ += '"';
    }

    void writeByte(char byte) {
        const auto code = static_cast<unsigned char>(byte);
        if (code < 0x20 || code == 0x7F) {
            fmt::format_to(std::back_inserter(text_), "\\u{:04x}", code);
        } else {
            text_ += byte;
        }
    }

    void writeArray(const boost::json::array& array) {
        open('[');
        for (const JsonValue& element : array) {
            next();
            write(element);
        }
        close(']');
    }

    void writeObject(const boost::json::object& object) {
        std::vector<const boost::json::key_value_pair*> members;
        members.reserve(object.size());
        for (const auto& member : object)
            members.push_back(&member);
        std::ranges::sort(members, {}, [](const auto* member) { return std::string_view(member->key()); });
        open('{');
        for (const auto* member : members) {
            next();
            writeString(member->key());
            text_ += layout_ == Layout::indented ? ": " : ":";
            write(member->value());
        }
        close('}');
    }

    void open(char bracket) {
        text_ += bracket;
        ++depth_;
        first_ = true;
    }

    void next() {
        if (!first_) text_ += ',';
        first_ = false;
        newLine();
    }

    void close(char bracket) {
        --depth_;
        if (!first_) newLine();
        first_ = false;
        text_ += bracket;
    }

    void newLine() {
        if (layout_ == Layout::compact) return;
        text_ += '\n';
        text_.append(2 * depth_, ' ');
    }

    Layout layout_;
    std::string text_;
    std::size_t depth_ = 0;
    bool first_ = true;
};

/// Builds the value as boost::json::parse does, but for numbers with a fraction: the library (1.81) reads them with an
/// error of up to a few units in the last place, and a state file must read back what was written.
class Builder {
 public:
    using Text = boost::json::string_view;
    using Error = boost::system::error_code;

    static constexpr std::size_t max_object_size = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t max_array_size = max_object_size;
    static constexpr std::size_t max_key_size = boost::json::string::max_size();
    static constexpr std::size_t max_string_size = max_key_size;

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_object_begin(Error&) { return true; }
    bool on_object_end(std::size_t count, Error&) { return stack_.push_object(count), true; }
    bool on_array_begin(Error&) { return true; }
    bool on_array_end(std::size_t count, Error&) { return stack_.push_array(count), true; }
    bool on_key_part(Text part, std::size_t, Error&) { return stack_.push_chars(part), true; }
    bool on_key(Text end, std::size_t, Error&) { return stack_.push_key(end), true; }
    bool on_string_part(Text part, std::size_t, Error&) { return stack_.push_chars(part), true; }
    bool on_string(Text end, std::size_t, Error&) { return stack_.push_string(end), true; }
    bool on_number_part(Text, Error&) { return true; }  // only for a document that comes in pieces
    bool on_int64(std::int64_t number, Text, Error&) { return stack_.push_int64(number), true; }
    bool on_uint64(std::uint64_t number, Text, Error&) { return stack_.push_uint64(number), true; }
    bool on_double(double number, Text text, Error&) {
        std::from_chars(text.data(), text.data() + text.size(), number);  // out of range keeps the library's number
        // An infinity could not be written again, and nobody who reads a number expects one.
        if (!std::isfinite(number)) number = std::copysign(std::numeric_limits<double>::max(), number);
        return stack_.push_double(number), true;
    }
    bool on_bool(bool value, Error&) { return stack_.push_bool(value), true; }
    bool on_null(Error&) { return stack_.push_null(), true; }
    bool on_comment_part(Text, Error&) { return true; }
    bool on_comment(Text, Error&) { return true; }

    JsonValue take() { return stack_.release(); }

 private:
    boost::json::value_stack stack_;
};

}  // namespace

std::optional<JsonValue> parse(std::string_view text) {
    boost::json::parse_options options;
    options.max_depth = maximumDepth;
    boost::system::error_code error;
    try {
        boost::json::basic_parser<Builder> parser(options);
        const std::size_t read = parser.write_some(false, text.data(), text.size(), error);
        if (error || read != text.size()) return std::nullopt;
        return parser.handler().take();
    } catch (const std::exception&) {  // out of memory, or a string over the library's limit
        return std::nullopt;
    }
}

std::string write(const JsonValue& value, Layout layout) {
    Writer writer(layout);
    writer.write(value);
    return writer.take();
}

}  // namespace orvane::Json
