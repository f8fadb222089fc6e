#include "ScriptedAgent/Values.h"

#include <unistd.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>

namespace orvane::scripted {
namespace {

std::string environmentValue(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? "" : value;
}

std::string workingDirectory() {
    std::error_code error;
    return std::filesystem::current_path(error).string();
}

/// The name of the folder that Claude Code keeps a project's transcripts in.
std::string slugged(std::string path) {
    for (char& byte : path) {
        if (std::isalnum(static_cast<unsigned char>(byte)) == 0) byte = '-';
    }
    return path;
}

std::string newUuid() {
    std::random_device random;
    const unsigned a = random(), b = random(), c = random(), d = random();
    char text[37];
    std::snprintf(text, sizeof text, "%08x-%04x-4%03x-%04x-%04x%08x", a, b >> 16, b & 0xfff, 0x8000 | (c & 0x3fff),
                  c >> 16, d);
    return text;
}

long long milliseconds() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

std::string isoTime() {
    const long long now = milliseconds();
    const auto seconds = static_cast<std::time_t>(now / 1000);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[32];
    const std::size_t size = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text + size, sizeof text - size, ".%03dZ", static_cast<int>(now % 1000));
    return text;
}

}  // namespace

std::string outsideValue(std::string_view name) {
    if (name.starts_with("env:")) return environmentValue(std::string(name.substr(4)));
    if (name == "pid") return std::to_string(getpid());
    if (name == "home") return environmentValue("HOME");
    if (name == "cwd") return workingDirectory();
    if (name == "cwd-name") return std::filesystem::path(workingDirectory()).filename().string();
    if (name == "cwd-slug") return slugged(workingDirectory());
    if (name == "uuid") return newUuid();
    if (name == "time") return isoTime();
    if (name == "millis") return std::to_string(milliseconds());
    return {};
}

}  // namespace orvane::scripted
