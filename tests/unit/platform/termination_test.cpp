#include "platform/termination.h"

#include "support/spawned_process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/wait.h>

namespace {

/// A run of a program that quits on termination.
class TerminatedRun {
public:
    explicit TerminatedRun(const std::string &manner)
        : m_process({TERMINATION_RUN, manner})
    {
        EXPECT_EQ(line(), "running");
    }

    std::string line() const { return m_process.readLine(); }
    void send(int signal) const { ::kill(m_process.id(), signal); }
    /// Waits for the end. @return how it came, as waitpid() tells it
    int end() const
    {
        int status = -1;
        ::waitpid(m_process.id(), &status, 0);
        return status;
    }
    /// Sends the signal again and again until the end. Signals that come at once are one.
    int endBy(int signal) const
    {
        int status = -1;
        do {
            send(signal);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        } while (::waitpid(m_process.id(), &status, WNOHANG) == 0);
        return status;
    }
    bool ignores(int signal) const
    {
        std::ifstream file("/proc/" + std::to_string(m_process.id()) + "/status");
        for (std::string word; file >> word;) {
            if (word == "SigIgn:" && file >> word)
                return ((std::stoull(word, nullptr, 16) >> (signal - 1)) & 1) != 0;
        }
        ADD_FAILURE() << "the system does not tell";
        return false;
    }

private:
    SpawnedProcess m_process;
};

class Termination : public testing::TestWithParam<int> {
protected:
    // Whoever started the tests may ignore it.
    Termination() { std::signal(GetParam(), SIG_DFL); }
};

TEST_P(Termination, isAnOrderlyEnd)
{
    const TerminatedRun run("idle");
    run.send(GetParam());
    EXPECT_EQ(run.line(), "tidied up");
    const int status = run.end();
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_P(Termination, isTheEndAtOnceWhenItIsAskedForAgain)
{
    const int status = TerminatedRun("busy").endBy(GetParam());
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Signals, Termination, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(IgnoredTermination, staysIgnored)
{
    std::signal(SIGTERM, SIG_DFL);
    std::signal(SIGHUP, SIG_IGN); // which a new program keeps
    const TerminatedRun run("idle");
    std::signal(SIGHUP, SIG_DFL);
    EXPECT_TRUE(run.ignores(SIGHUP));
    EXPECT_FALSE(run.ignores(SIGTERM));
    run.send(SIGTERM);
    EXPECT_EQ(run.line(), "tidied up");
    run.end();
}

} // namespace
