#include "History/BareReader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <filesystem>
#include <thread>
#include <vector>

#include "OrvaneCore/History/SessionHistory.h"

namespace orvane::benchmark {

namespace {

std::size_t readOne(const std::string& path, std::string& buffer) {
    using SessionHistory::headByteCap;
    using SessionHistory::tailByteCap;
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat status{};
    if (file < 0 || fstat(file, &status) != 0) return 0;
    ssize_t got = pread(file, buffer.data(), headByteCap, 0);
    if (status.st_size > static_cast<off_t>(headByteCap + tailByteCap))
        got += pread(file, buffer.data(), tailByteCap, status.st_size - static_cast<off_t>(tailByteCap));
    close(file);
    return static_cast<std::size_t>(got);
}

}  // namespace

std::size_t readEnds(const std::string& home, std::size_t threads) {
    std::vector<std::string> paths;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home + "/.claude/projects")) {
        if (entry.is_regular_file()) paths.push_back(entry.path().string());
    }
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> bytes = 0;
    const auto work = [&] {
        std::string buffer(SessionHistory::headByteCap, '\0');
        for (std::size_t place = next++; place < paths.size(); place = next++)
            bytes += readOne(paths[place], buffer);
    };
    std::vector<std::jthread> workers;
    workers.reserve(threads);
    for (std::size_t thread = 0; thread < threads; ++thread)
        workers.emplace_back(work);
    workers.clear();
    return bytes;
}

}  // namespace orvane::benchmark
