#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>
#include <string_view>
#include <vector>

#include "Platform/FileDescriptor.h"

/// Descriptors that go from process to process with the bytes of a Unix stream socket (SCM_RIGHTS).
namespace orvane::DescriptorPassing {

/// As many as come along with one request.
inline constexpr std::size_t mostDescriptors = 4;

/// As send(2), which may take less than all of the bytes; the descriptors have gone along with the first of them.
ssize_t send(int socket, std::string_view bytes, std::span<const int> descriptors);

/// What one read has brought.
struct Received {
    ssize_t length = 0;  ///< as recv(2) tells it
    /// Came with the last of the bytes; none came with any other byte.
    std::vector<FileDescriptor> descriptors;
    /// Descriptors came with the last byte that were too many, or for which there was no room; they are closed.
    bool isRefused = false;
};

/// Reads what is there into the room, up to the byte with which the next descriptors come. Does not wait.
Received receive(int socket, std::span<char> room);

/// The descriptors that came with bytes of a stream of lines, until the lines are taken.
class Waiting {
 public:
    /// `place` counts the bytes of the stream before the one that they came with, and never goes back.
    void add(std::uint64_t place, Received received);
    /// Those that came with the bytes before `end`: none if too many came with them, or if some were refused.
    std::vector<FileDescriptor> takeBefore(std::uint64_t end);
    /// How many wait, open.
    std::size_t count() const;

 private:
    struct Arrival {
        std::uint64_t place = 0;
        std::vector<FileDescriptor> descriptors;
    };

    std::deque<Arrival> arrivals_;
    /// From the first to behind the last place at which some were refused; what lies between counts as refused too, so
    /// that a client that goes on and on costs no memory.
    std::uint64_t refusedFrom_ = 0;
    std::uint64_t refusedEnd_ = 0;
};

}  // namespace orvane::DescriptorPassing
