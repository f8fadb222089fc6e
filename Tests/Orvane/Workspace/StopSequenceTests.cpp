#include "Orvane/Workspace/StopSequence.h"

#include <csignal>

#include "Orvane/StoreFixture.h"

namespace orvane {
namespace {

using namespace std::chrono_literals;

class StopSequenceTest : public testing::StoreFixture {
 protected:
    /// A session whose program has said that it runs, and its process group.
    std::pair<SessionController*, pid_t> running(const std::string& command) {
        SessionController& made = session(project(), "echo up; " + command);
        EXPECT_TRUE(loop.runUntil([&] { return made.status().name() == "working"; }));
        return {&made, ProcessGroup::of(made.processId())};
    }

    void begin() {
        sequence.start([this] { stopped = true; });
        sequence.start([] { FAIL() << "a second start counts"; });
    }

    /// Real children end in real time, on a clock that stands still.
    ::testing::AssertionResult endsByItself(pid_t group) {
        const bool ended = loop.runUntil([group] { return !ProcessGroup::isAlive(group); });
        return ended ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "group " << group << " goes on";
    }

    /// How long the clock runs until the sequence is over.
    Duration finish() {
        const Instant start = loop.now();
        while (!stopped && loop.now() - start < 10s)
            loop.advance(10ms);
        EXPECT_TRUE(stopped);
        return loop.now() - start;
    }

    bool stopped = false;
    StopSequence sequence{loop, store};
};

TEST_F(StopSequenceTest, WaitsForNothingWhenNothingRuns) {
    session(project()).setStatus({SessionStatus::Done{}}, StatusSource::screen);
    store->closeSession(store->sessions().front()->id());
    ASSERT_TRUE(loop.runUntil([&] { return !store->stoppingSessions().front()->isStillTerminating(); }));
    loop.advance(2s);
    EXPECT_TRUE(store->stoppingSessions().empty());  // the number of its group may be another's by now
    begin();
    EXPECT_LE(finish(), 10ms);
    EXPECT_EQ(store->createSession({.project = project()}), nullptr);  // nobody would end it
}

TEST_F(StopSequenceTest, EndsAsSoonAsEveryProgramHasEnded) {
    const auto [first, firstGroup] = running("exec sleep 1000");
    // A program that was stopped gets the signal too, and its children with it.
    const auto [second, secondGroup] = running("sleep 1000 & sleep 1000 & wait");
    ASSERT_EQ(kill(-secondGroup, SIGSTOP), 0);
    begin();
    EXPECT_TRUE(endsByItself(firstGroup));
    EXPECT_TRUE(endsByItself(secondGroup));
    EXPECT_LE(finish(), 50ms + 10ms);
}

TEST_F(StopSequenceTest, KillsWholeGroupsThatIgnoreTheSignalAfterASecond) {
    const std::string ignoring = "trap '' TERM; ";
    const auto [polite, politeGroup] = running("exec sleep 1000");
    const auto [stubborn, stubbornGroup] = running(ignoring + "sh -c 'sleep 1000; sleep 1000' & wait; sleep 1000");
    const auto [closed, closedGroup] = running(ignoring + "sleep 1000; sleep 1000");
    store->closeSession(closed->id());  // closed, but its program goes on
    begin();
    EXPECT_TRUE(endsByItself(politeGroup));
    const Duration took = finish();
    EXPECT_GE(took, 1s);
    EXPECT_LE(took, 1100ms);  // the deadline and two hops
    EXPECT_TRUE(endsByItself(stubbornGroup));
    EXPECT_TRUE(endsByItself(closedGroup));
}

TEST_F(StopSequenceTest, ShutsServicesDownOnce) {
    int shutDowns = 0;
    store->onTermination([&] { ++shutDowns; });
    begin();
    finish();
    store->terminateAllSessions();
    EXPECT_EQ(shutDowns, 1);
}

/// A channel that takes its time, to see whom the sequence waits for and whom it kills.
class SlowTransport final : public ChatTransport {
 public:
    explicit SlowTransport(int& kills) : kills_(kills) {}
    bool send(const std::string&) override { return false; }
    void setModel(const std::string&) override {}
    void interrupt() override {}
    void stop() override {}
    void kill() override { ++kills_; }
    bool isAlive() const override { return kills_ == 0; }
    bool streamsLiveText() const override { return false; }

 private:
    int& kills_;
};

TEST_F(StopSequenceTest, KillsAChatThatDoesNotStop) {
    int kills = 0;
    SessionController& chat = session(project(), "true");
    chat.setTransport(std::make_unique<SlowTransport>(kills));
    begin();
    EXPECT_GE(finish(), 1s);
    EXPECT_EQ(kills, 1);
}

}  // namespace
}  // namespace orvane
