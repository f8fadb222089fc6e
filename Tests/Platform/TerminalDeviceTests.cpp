#include "Platform/TerminalDevice.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "Platform/TerminalLoan.h"

namespace orvane {
namespace {

/// Both ends of a pseudo-terminal; what is tested has the slave.
class TerminalDeviceTest : public testing::Test {
 protected:
    TerminalDeviceTest() {
        EXPECT_EQ(grantpt(master.number()), 0);
        EXPECT_EQ(unlockpt(master.number()), 0);
        slave = openSlave(O_RDWR);
        const winsize size{.ws_row = 7, .ws_col = 90};
        EXPECT_EQ(ioctl(master.number(), TIOCSWINSZ, &size), 0);
    }

    FileDescriptor openSlave(int mode) const {
        return FileDescriptor(ioctl(master.number(), TIOCGPTPEER, mode | O_NOCTTY | O_CLOEXEC));
    }
    TerminalDevice device() const { return std::move(*TerminalDevice::open(slave)); }
    termios settings() const {
        termios now{};
        tcgetattr(master.number(), &now);
        return now;
    }
    void type(std::string_view bytes) const {
        EXPECT_EQ(write(master.number(), bytes.data(), bytes.size()), std::ssize(bytes));
    }
    /// What the device reads within a moment.
    static std::string read(const TerminalDevice& device) {
        std::array<char, 100> room{};
        pollfd ready{.fd = device.descriptor(), .events = POLLIN, .revents = 0};
        poll(&ready, 1, 10000);
        const auto length = device.read(room);
        return length ? std::string(room.data(), *length) : "error " + std::to_string(length.error().number);
    }
    static bool blocks(const FileDescriptor& file) { return (fcntl(file.number(), F_GETFL) & O_NONBLOCK) == 0; }

    FileDescriptor master{posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK)};
    FileDescriptor slave;
};

TEST_F(TerminalDeviceTest, IsReadAndWrittenRawWithoutBlockingForItsOwner) {
    const TerminalDevice terminal = device();
    EXPECT_TRUE(blocks(slave)) << "the one who handed it over still reads as ever";
    EXPECT_NE(fcntl(terminal.descriptor(), F_GETFD) & FD_CLOEXEC, 0);
    EXPECT_EQ(terminal.size(), (WindowSize{.rows = 7, .cols = 90}));
    const winsize unknown{};
    ioctl(master.number(), TIOCSWINSZ, &unknown);
    EXPECT_EQ(terminal.size(), std::nullopt);

    const termios before = settings();
    ASSERT_TRUE(terminal.makeRaw());
    EXPECT_EQ(settings().c_lflag & (ICANON | ECHO | ISIG), 0U);
    std::array<char, 10> room{};
    EXPECT_EQ(terminal.read(room), std::size_t(0));
    type("\x03\r");
    EXPECT_EQ(read(terminal), "\x03\r");
    EXPECT_EQ(terminal.write("a\nb"), std::size_t(3));
    EXPECT_EQ(::read(master.number(), room.data(), room.size()), 3) << "no carriage return is added, nothing echoed";
    // With nobody reading, it takes no more at some point and says so.
    const std::string much(1000, 'x');
    std::size_t written = 1;
    for (int count = 0; count < 10000 && written > 0; ++count)
        written = terminal.write(much).value_or(much.size());
    EXPECT_EQ(written, 0U);
    ASSERT_TRUE(terminal.restore());
    EXPECT_EQ(settings().c_lflag, before.c_lflag);
    EXPECT_EQ(settings().c_oflag, before.c_oflag);
}

TEST_F(TerminalDeviceTest, TellsThatTheTerminalIsGone) {
    const TerminalDevice terminal = device();
    ASSERT_TRUE(terminal.makeRaw());
    master.close();
    EXPECT_EQ(read(terminal), "error " + std::to_string(EIO));
    EXPECT_EQ(terminal.write("x").error().number, EIO);
}

TEST_F(TerminalDeviceTest, TakesNoneButATerminalThatCanBeReadAndWritten) {
    EXPECT_EQ(TerminalDevice::open(FileDescriptor()).error().number, EBADF);
    EXPECT_EQ(TerminalDevice::open(FileDescriptor(open("/dev/null", O_RDWR | O_CLOEXEC))).error().number, ENOTTY);
    // Opened anew by its name, a master would be another terminal altogether.
    const auto same = TerminalDevice::open(master);
    ASSERT_TRUE(same.has_value());
    ASSERT_EQ(same->write("x\n"), std::size_t(2));
    char typed = 0;
    EXPECT_EQ(::read(slave.number(), &typed, 1), 1);
    EXPECT_EQ(typed, 'x');
}

/// As after su: the terminal is open, and may not be opened anew.
TEST_F(TerminalDeviceTest, SharesATerminalThatItMayNotOpen) {
    const FileDescriptor readOnly = openSlave(O_RDONLY);
    ASSERT_EQ(fchmod(slave.number(), 0), 0);
    const uid_t user = geteuid();
    constexpr uid_t nobody = 65534;  // root may open everything
    ASSERT_EQ(seteuid(user == 0 ? nobody : user), 0);
    const auto shared = TerminalDevice::open(slave);
    const auto unusable = TerminalDevice::open(readOnly);
    ASSERT_EQ(seteuid(user), 0);
    ASSERT_TRUE(shared.has_value());
    EXPECT_FALSE(blocks(slave));
    EXPECT_EQ(shared->write("x"), std::size_t(1));
    EXPECT_EQ(unusable.error().number, EACCES);
}

TEST_F(TerminalDeviceTest, ALoanEndsWithEverythingAsItWas) {
    const termios before = settings();
    const auto loan = TerminalLoan::begin(slave.number(), slave.number());
    ASSERT_TRUE(loan.has_value());
    const TerminalDevice terminal = device();
    ASSERT_TRUE(terminal.makeRaw());
    fcntl(slave.number(), F_SETFL, O_RDWR | O_NONBLOCK);
    type("half a report");
    loan->end("bye");
    EXPECT_TRUE(blocks(slave));
    EXPECT_EQ(settings().c_lflag, before.c_lflag);
    int unread = -1;
    EXPECT_EQ(ioctl(slave.number(), FIONREAD, &unread), 0);
    EXPECT_EQ(unread, 0);
    std::array<char, 10> room{};
    EXPECT_EQ(::read(master.number(), room.data(), room.size()), 3);

    // Nor does a terminal that takes nothing hold it up.
    while (*terminal.write("xxxxxxxxxx") > 0) {
    }
    loan->end("bye");
    EXPECT_TRUE(blocks(slave));
    const FileDescriptor null(open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_EQ(TerminalLoan::begin(slave.number(), null.number()).error().number, ENOTTY);
    EXPECT_EQ(TerminalLoan::begin(null.number(), slave.number()).error().number, ENOTTY);
}

}  // namespace
}  // namespace orvane
