#include "Platform/ProcessGroup.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace orvane {
namespace {

TEST(ProcessGroupTest, IsAliveWhileOneOfItsProcessesRuns) {
    const pid_t leader = fork();
    ASSERT_GE(leader, 0);
    if (leader == 0) {
        setpgid(0, 0);
        for (;;)
            pause();
    }
    setpgid(leader, leader);
    EXPECT_EQ(ProcessGroup::of(leader), leader);
    EXPECT_TRUE(ProcessGroup::isAlive(leader));
    ProcessGroup::signal(leader, SIGSTOP);
    EXPECT_TRUE(ProcessGroup::isAlive(leader)) << "stopped is not ended";
    ProcessGroup::signal(leader, SIGTERM);
    siginfo_t ended{};
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(leader), &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(kill(-leader, 0), 0) << "it is still there to be reaped";
    EXPECT_FALSE(ProcessGroup::isAlive(leader));
    ASSERT_EQ(waitid(P_PID, static_cast<id_t>(leader), &ended, WEXITED), 0);
    EXPECT_FALSE(ProcessGroup::isAlive(leader));
    EXPECT_FALSE(ProcessGroup::isAlive(0));
    EXPECT_FALSE(ProcessGroup::isAlive(1));
}

}  // namespace
}  // namespace orvane
