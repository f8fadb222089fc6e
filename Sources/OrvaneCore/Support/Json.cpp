#include "OrvaneCore/Support/Json.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/json.hpp>
#include <cmath>
#include <iterator>
#include <vector>

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

}  // namespace

std::optional<JsonValue> parse(std::string_view text) {
    boost::json::parse_options options;
    options.max_depth = maximumDepth;
    boost::system::error_code error;
    try {
        JsonValue value = boost::json::parse(text, error, {}, options);
        if (error) return std::nullopt;
        return value;
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
