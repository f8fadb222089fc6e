#pragma once

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace orvane {

/// A folder for one test, removed with all it holds.
class TemporaryFolder {
 public:
    TemporaryFolder() {
        path_ = (std::filesystem::temp_directory_path() / "orvane-test-XXXXXX").string();
        if (mkdtemp(path_.data()) == nullptr) throw std::system_error(errno, std::system_category(), path_);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    const std::string& path() const { return path_; }
    std::string path(const std::string& name) const { return path_ + '/' + name; }

    /// Makes or overwrites a file and returns its path.
    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
        return path(name);
    }

    /// Empty when there is no such file.
    std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    /// The names of what is in it, sorted.
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(path_))
            names.push_back(entry.path().filename().string());
        std::ranges::sort(names);
        return names;
    }

 private:
    std::string path_;
};

}  // namespace orvane
