#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "Terminal/Measurements.h"
#include "Terminal/OrvaneHost.h"
#include "Terminal/Times.h"

namespace orvane::benchmark {

namespace {

Measured<std::string> contentOf(const std::string& path) {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return Failure(path + ": is a folder");
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string bytes;
    if (file) bytes.assign(std::istreambuf_iterator<char>(file), {});
    if (!file || file.bad()) {
        return Failure(fmt::format("{}: {}", path, std::generic_category().message(errno == 0 ? EIO : errno)));
    }
    if (bytes.empty()) return Failure(path + ": is empty");
    return bytes;
}

void measureFile(const Settings& settings, Geometry geometry, const std::string& path, const std::string& bytes) {
    std::vector<double> processor;
    std::vector<double> wall;
    for (int run = 0; run < settings.repetitions; ++run) {
        OrvaneHost host(geometry);
        const Times times = timesOfRun([&] { feedInChunks(host, bytes); });
        processor.push_back(times.processor);
        wall.push_back(times.wall);
    }
    const auto rate = [&](double seconds) { return megabytesPerSecond(bytes.size(), seconds); };
    const Summary summed = summary(processor);
    fmt::print("orvane\thost\t{}\t{}\t{:.2f}\t{:.2f}\t{:.2f}\n", geometry.name(),
               std::filesystem::path(path).filename().string(), rate(summed.median), rate(summed.minimum),
               rate(summary(wall).median));
    std::fflush(stdout);
}

}  // namespace

Measured<void> measureFiles(const Settings& settings, const std::vector<std::string>& paths) {
    Measured<void> result;
    for (const std::string& path : paths) {
        const auto bytes = contentOf(path);
        if (!bytes) {
            if (!result) fmt::print(stderr, "terminal-bench: {}\n", result.error());
            result = Failure(bytes.error());
            continue;
        }
        for (const Geometry geometry : settings.geometries)
            measureFile(settings, geometry, path, *bytes);
    }
    return result;
}

}  // namespace orvane::benchmark
