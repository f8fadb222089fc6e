#include "Support/TemporaryEnvironment.h"

#include <fmt/format.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace orvane::benchmark {

TemporaryEnvironment::TemporaryEnvironment() {
    std::error_code error;
    folder_ = (std::filesystem::temp_directory_path(error) / "orvane-benchmark-XXXXXX").string();
    if (mkdtemp(folder_.data()) == nullptr) {
        fmt::print(stderr, "cannot make the folder {}\n", folder_);
        std::exit(1);
    }
    variables_ = {{"HOME", folder_}, {"TMPDIR", folder_}, {"PATH", "/usr/bin:/bin"}, {"LANG", "C.UTF-8"}};
    for (const char* name : {"DATA_HOME", "CONFIG_HOME", "RUNTIME_DIR"}) {
        const std::string path = folder_ + '/' + name;
        std::filesystem::create_directory(path, error);
        variables_.emplace(std::string("XDG_") + name, path);
    }
}

TemporaryEnvironment::~TemporaryEnvironment() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
}

}  // namespace orvane::benchmark
