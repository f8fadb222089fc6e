#include "Platform/ReadChannel.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <utility>
#include <vector>

#include "Platform/SystemError.h"
#include "Platform/Uninterrupted.h"

namespace orvane {

namespace {

/// What a pseudo-terminal or a pipe can hold, and more: so much is read when the writer has ended.
constexpr std::size_t drainLimit = std::size_t{256} << 10;

/// Of one turn of the reading thread: a program that writes as fast as it is read must not keep the others waiting.
constexpr std::chrono::microseconds longestRead{500};

/// More than this at once, in bytes, is for the reading thread: what a program draws on a screen is less.
constexpr std::size_t quietSize = std::size_t{16} << 10;

/// In bytes; a terminal takes them in less than a millisecond.
constexpr std::size_t deliveredAtOnce = std::size_t{16} << 10;

/// Bytes, or what is to be done behind those before it.
struct Chunk {
    std::string bytes;
    std::function<void()> task;
};

}  // namespace

/// Shared by both threads. Of the fields, the queue is guarded by the lock, the rest belongs to one thread each.
struct ReadChannel::State : std::enable_shared_from_this<State> {
    State(MainLoop& dispatchLoop, MainLoop& readLoop, FileDescriptor source, const Limits& itsLimits, Callbacks calls)
        : dispatch(dispatchLoop),
          reader(readLoop),
          descriptor(std::move(source)),
          limits(itsLimits),
          callbacks(std::move(calls)) {}

    MainLoop& dispatch;
    MainLoop& reader;
    const FileDescriptor descriptor;
    const Limits limits;

    // Of the dispatching thread.
    const Callbacks callbacks;
    bool isClosed = false;
    Registration quietWatch;  ///< while it reads itself
    Chunk current;            ///< what is being delivered
    std::size_t delivered = 0;

    // Of the reading thread.
    Registration watch;
    bool isHandedOver = false;  ///< the dispatching thread reads
    Instant loudAt = reader.now();

    // Of the one that reads.
    bool isEmptied = false;  ///< the last read has left nothing
    bool isAtEnd = false;
    bool isEndTold = false;
    int logCounter = 0;

    std::mutex pendingLock;
    std::vector<Chunk> pendingChunks;
    std::size_t pendingChunkIndex = 0;
    std::size_t pendingBytes = 0;
    bool pendingScheduled = false;
    bool readSuspendedForBackpressure = false;
    std::optional<std::string> loggingDirectory;

    // On the reading thread.

    void issueRead() {
        isHandedOver = false;
        if (watch || isAtEnd) return;
        watch = reader.watch(descriptor.number(), Readiness::readable, [weak = weak_from_this()] {
            if (const auto self = weak.lock()) self->readOnce();
        });
    }

    void readOnce() {
        std::string bytes = readAvailable(limits.readSize);
        if (!isEmptied) loudAt = reader.now();
        if (!bytes.empty() && !enqueue({.bytes = std::move(bytes), .task = {}})) watch.reset();
        if (isAtEnd) {
            watch.reset();
            return tellEnd();
        }
        if (watch && reader.now() - loudAt >= limits.quietTime) handOver();
    }

    /// Behind what waits already.
    void handOver() {
        watch.reset();
        isHandedOver = true;
        enqueue({.bytes = {}, .task = [this] { readQuietly(); }});
    }

    void drainHere(std::function<void()> task) {
        if (isHandedOver) {
            enqueue({.bytes = {}, .task = [this, task = std::move(task)]() mutable { drainSoon(std::move(task)); }});
            return;
        }
        drain(std::move(task));
        if (isAtEnd) watch.reset();
    }

    // On the thread that reads.

    /// A pseudo-terminal hands out little at a time, so it is asked until it has no more.
    std::string readAvailable(std::size_t room) {
        // One for all channels of the thread: a session in which nothing happens should not hold 128 KiB for it.
        thread_local std::string buffer;
        if (buffer.size() < room) buffer.resize(room);
        std::size_t size = 0;
        isEmptied = false;
        const auto start = std::chrono::steady_clock::now();
        do {
            const ssize_t count =
                uninterrupted([&] { return ::read(descriptor.number(), buffer.data() + size, room - size); });
            isEmptied = count < 0 && errno == EAGAIN;
            if (isEmptied) break;
            // The other side of a pseudo-terminal that was closed gives EIO.
            isAtEnd = count <= 0;
            if (isAtEnd) break;
            size += static_cast<std::size_t>(count);
        } while (size < room && std::chrono::steady_clock::now() - start < longestRead);
        const std::string bytes(buffer.data(), size);
        log(bytes);
        return bytes;
    }

    void tellEnd() {
        if (std::exchange(isEndTold, true)) return;
        enqueue({.bytes = {}, .task = [this] {
                     if (callbacks.onEnd) callbacks.onEnd();
                 }});
    }

    void drain(std::function<void()> task) {
        std::size_t drained = 0;
        while (!isAtEnd && drained < drainLimit) {
            std::string bytes = readAvailable(limits.readSize);
            if (bytes.empty()) break;
            drained += bytes.size();
            enqueue({.bytes = std::move(bytes), .task = {}});
        }
        enqueue({.bytes = {}, .task = std::move(task)});
        if (isAtEnd) tellEnd();
    }

    void log(const std::string& bytes) {
        std::unique_lock lock(pendingLock);
        const auto directory = loggingDirectory;
        lock.unlock();
        if (!directory || bytes.empty()) return;
        const std::string path = fmt::format("{}/log-{}", *directory, logCounter);
        std::FILE* file = std::fopen(path.c_str(), "we");
        const bool isWritten = file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
        const SystemError error = SystemError::last("write", path);
        if (file != nullptr) std::fclose(file);
        if (isWritten) {
            ++logCounter;
        } else {
            fmt::print(stderr, "Got error while logging data dump to {}: {}\n", path, error.message());
        }
    }

    // On any thread.

    /// Whether more may be read.
    bool enqueue(Chunk chunk) {
        const std::unique_lock lock(pendingLock);
        pendingBytes += chunk.bytes.size();
        pendingChunks.push_back(std::move(chunk));
        const bool hasRoom = pendingBytes < limits.highWater;
        if (!hasRoom) readSuspendedForBackpressure = true;
        if (!std::exchange(pendingScheduled, true)) postFlush();
        return hasRoom;
    }

    void postFlush() {
        dispatch.post([weak = weak_from_this()] {
            if (const auto self = weak.lock()) self->flush();
        });
    }

    // On the dispatching thread.

    void readQuietly() {
        quietWatch = dispatch.watch(descriptor.number(), Readiness::readable, [weak = weak_from_this()] {
            if (const auto self = weak.lock()) self->readQuietlyOnce();
        });
    }

    void readQuietlyOnce() {
        std::string bytes = readAvailable(std::min(quietSize, limits.readSize));
        // No longer watched while they are delivered, which may take a turn of the loop.
        const bool isQuiet = isEmptied;
        if (!isQuiet) quietWatch.reset();
        if (!bytes.empty()) deliver(std::move(bytes));
        if (isClosed) return;
        if (isAtEnd) tellEnd();
        // Behind them: what the other thread reads from now on comes later.
        if (!isQuiet) giveBack();
    }

    /// The reading thread reads again; at the end too, where there is nothing to read, so that it answers what is asked
    /// of whoever reads.
    void giveBack() {
        quietWatch.reset();
        postToReader([](State& state) {
            state.loudAt = state.reader.now();
            state.issueRead();
        });
    }

    /// At once, unless something is still to be delivered before.
    void deliver(std::string bytes) {
        std::unique_lock lock(pendingLock);
        const bool isNext = !pendingScheduled;
        lock.unlock();
        if (isNext) {
            callbacks.onData(bytes);
        } else {
            enqueue({.bytes = std::move(bytes), .task = {}});
        }
    }

    void drainSoon(std::function<void()> task) {
        if (!quietWatch) {
            postToReader([task = std::move(task)](State& state) mutable { state.drainHere(std::move(task)); });
            return;
        }
        drain(std::move(task));
        if (isAtEnd) giveBack();
    }

    void flush() {
        const Instant start = dispatch.now();
        while (takeNext()) {
            if (isClosed) return;
            if (current.task) {
                std::exchange(current.task, {})();
            } else {
                deliverPiece();
            }
            if (isClosed) return;
            if (dispatch.now() - start >= limits.timeSlice) {
                postFlush();
                return;
            }
        }
    }

    /// Of the chunk at hand: a whole one can take longer than a slice.
    void deliverPiece() {
        const std::string_view piece = std::string_view(current.bytes).substr(delivered, deliveredAtOnce);
        delivered += piece.size();
        callbacks.onData(piece);
    }

    /// Whether there is something to deliver in `current`.
    bool takeNext() {
        if (delivered < current.bytes.size()) return true;
        delivered = 0;
        current = {};
        auto chunk = next();
        if (chunk) current = std::move(*chunk);
        return chunk.has_value();
    }

    std::optional<Chunk> next() {
        const std::unique_lock lock(pendingLock);
        if (pendingChunkIndex == pendingChunks.size()) {
            pendingChunks.clear();
            pendingChunkIndex = 0;
            pendingBytes = 0;
            pendingScheduled = false;
            return std::nullopt;
        }
        Chunk chunk = std::move(pendingChunks[pendingChunkIndex++]);
        if (pendingChunkIndex >= limits.flushThreshold) {
            pendingChunks.erase(pendingChunks.begin(),
                                pendingChunks.begin() + static_cast<std::ptrdiff_t>(pendingChunkIndex));
            pendingChunkIndex = 0;
        }
        pendingBytes -= chunk.bytes.size();
        if (readSuspendedForBackpressure && pendingBytes <= limits.lowWater) {
            readSuspendedForBackpressure = false;
            if (!quietWatch) postToReader([](State& state) { state.issueRead(); });
        }
        return chunk;
    }

    /// Holds the state, and with it the descriptor, until it has run.
    void postToReader(std::move_only_function<void(State&)> work) {
        reader.post([self = shared_from_this(), work = std::move(work)]() mutable { work(*self); });
    }
};

ReadChannel::ReadChannel(MainLoop& dispatch, MainLoop& reader, FileDescriptor descriptor, const Limits& limits,
                         Callbacks callbacks, std::optional<std::string> loggingDirectory)
    : state_(std::make_shared<State>(dispatch, reader, std::move(descriptor), limits, std::move(callbacks))) {
    state_->loggingDirectory = std::move(loggingDirectory);
    state_->postToReader([](State& state) { state.issueRead(); });
}

/// The watch goes on its own thread, and the descriptor with the last who holds the state.
ReadChannel::~ReadChannel() {
    state_->isClosed = true;
    state_->quietWatch.reset();
    state_->postToReader([](State& state) {
        state.watch.reset();
        state.isAtEnd = state.isEndTold = true;
    });
}

int ReadChannel::descriptor() const {
    return state_->descriptor.number();
}

void ReadChannel::whenDrained(std::function<void()> task) {
    state_->drainSoon(std::move(task));
}

void ReadChannel::setLogging(std::optional<std::string> directory) {
    const std::unique_lock lock(state_->pendingLock);
    state_->loggingDirectory = std::move(directory);
}

}  // namespace orvane
