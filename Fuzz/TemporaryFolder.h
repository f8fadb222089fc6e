#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

#include "Fuzzing.h"

namespace orvane::fuzzing {

/// A folder for what one fuzzer writes, removed when the fuzzer ends in order.
class TemporaryFolder {
 public:
    TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "orvane-fuzz-XXXXXX").string()) {
        require(mkdtemp(path_.data()) != nullptr, "a folder can be made");
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    const std::string& path() const { return path_; }

 private:
    std::string path_;
};

}  // namespace orvane::fuzzing
