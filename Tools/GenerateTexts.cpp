// Collects Resources/Texts/<language>.json into one C++ table sorted by key. A text that a language lacks is left
// empty here and found by the test of the table.

#include <fmt/format.h>

#include <boost/json.hpp>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> languages = {"en", "fr", "es", "pt", "zhHans", "ja", "de"};

[[noreturn]] void fail(const std::string& message) {
    std::cerr << "GenerateTexts: " << message << '\n';
    std::exit(EXIT_FAILURE);
}

boost::json::object readTexts(const std::filesystem::path& file) {
    std::ifstream stream(file);
    const std::string content{std::istreambuf_iterator<char>(stream), {}};
    boost::system::error_code error;
    boost::json::value value = boost::json::parse(content, error);
    if (!stream || error || !value.is_object()) fail(file.string() + " is no JSON object: " + error.message());
    return value.get_object();
}

std::string quoted(const std::string& text) {
    std::string literal = "\"";
    for (const char byte : text) {
        if (byte == '"' || byte == '\\') literal += '\\';
        if (byte == '\n') {
            literal += "\\n";
        } else {
            literal += byte;
        }
    }
    return literal + '"';
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) fail("usage: GenerateTexts FOLDER OUTPUT");
    std::map<std::string, std::vector<std::string>> table;
    for (std::size_t index = 0; index < languages.size(); ++index) {
        const auto file = std::filesystem::path(arguments[1]) / (languages[index] + ".json");
        for (const auto& [key, text] : readTexts(file)) {
            if (!text.is_string()) fail(fmt::format("{}: {} is no text", file.string(), std::string(key)));
            auto& texts = table.try_emplace(std::string(key), languages.size()).first->second;
            texts[index] = std::string(std::string_view(text.get_string()));
        }
    }
    std::ofstream output(arguments[2]);
    output << "#include \"OrvaneCore/Support/TextTable.h\"\n\nnamespace orvane {\n\nnamespace {\n\n"
           << "constexpr TextEntry entries[] = {\n";
    for (const auto& [key, texts] : table) {
        output << "    {" << quoted(key) << ", {";
        for (const std::string& text : texts)
            output << quoted(text) << ", ";
        output << "}},\n";
    }
    output << "};\n\n}  // namespace\n\nstd::span<const TextEntry> textTable() { return entries; }\n\n}  // namespace "
              "orvane\n";
    output.close();
    if (!output) fail(std::string("cannot write ") + arguments[2]);
}
