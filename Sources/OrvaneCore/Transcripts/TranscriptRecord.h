#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A value in a line of a transcript. What is missing or has another type than the one asked for is absent; nothing
/// throws. It and the texts that it gives look into the `TranscriptParser`, until that reads the next line.
class TranscriptRecord {
 public:
    /// An absent value.
    TranscriptRecord() = default;

    bool isObject() const;
    bool isArray() const;
    bool isString() const { return string().has_value(); }

    /// The value of a member of this object; absent for a missing one and for null.
    TranscriptRecord operator[](std::string_view key) const;
    bool contains(std::string_view key) const { return (*this)[key].place_.document != nullptr; }

    std::optional<std::string_view> string() const;
    std::optional<std::string_view> string(std::string_view key) const { return (*this)[key].string(); }
    /// Of a member; whether it is there and true.
    bool isTrue(std::string_view key) const;
    /// Whole numbers of 64 bits, also when they are written as 3.0.
    std::optional<std::int64_t> integer() const;
    std::optional<std::int64_t> integer(std::string_view key) const { return (*this)[key].integer(); }
    /// The elements of an array, in their order; none of what is no array.
    std::vector<TranscriptRecord> elements() const;
    std::vector<TranscriptRecord> elements(std::string_view key) const { return (*this)[key].elements(); }

    /// The value as JSON without blanks; "null" when absent.
    std::string json() const;

    struct Member;
    /// The members of an object, in the order of the text.
    std::vector<Member> members() const;

 private:
    friend class TranscriptParser;
    struct Access;
    /// Where the library finds the value; its header takes a second to compile.
    struct Place {
        const void* document = nullptr;  ///< null: absent
        std::size_t index = 0;
    };

    Place place_;
};

struct TranscriptRecord::Member {
    std::string_view key;
    TranscriptRecord value;
};

/// Reads the lines of a transcript, one at a time. Keeps memory for the longest so far. One thread at a time.
class TranscriptParser {
 public:
    /// Of objects and arrays, so that whoever walks a value down has stack enough.
    static constexpr std::size_t deepestNesting = 128;

    TranscriptParser();
    ~TranscriptParser();

    /// The JSON value that the line is; none when it is cut, malformed or nested deeper. Agents cut texts in the middle
    /// of a character: bytes that are no UTF-8 and halves of a surrogate pair are read as U+FFFD.
    std::optional<TranscriptRecord> parse(std::string_view line);

 private:
    struct Implementation;
    std::unique_ptr<Implementation> implementation_;
};

}  // namespace orvane
