#pragma once

#include <unistd.h>

#include <utility>

namespace orvane {

/// Owns a descriptor and closes it. Every descriptor of the program is opened close-on-exec: a child must not hold our
/// locks and sockets.
class FileDescriptor {
 public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            number_ = std::exchange(other.number_, -1);
        }
        return *this;
    }
    ~FileDescriptor() { close(); }

    int number() const { return number_; }
    bool isOpen() const { return number_ >= 0; }

    int release() { return std::exchange(number_, -1); }

    void close() {
        if (number_ >= 0) ::close(std::exchange(number_, -1));
    }

 private:
    int number_ = -1;
};

}  // namespace orvane
