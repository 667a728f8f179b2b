#include "platform/console.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

using namespace sorvanta;

namespace {

/// Puts a pipe in the place of standard output for the time of a test.
class ConsoleTest : public testing::Test {
protected:
    ConsoleTest()
        : m_standardOutput(dup(STDOUT_FILENO))
    {
        EXPECT_EQ(pipe(m_pipe.data()), 0);
        dup2(m_pipe[1], STDOUT_FILENO);
        close(m_pipe[1]);
    }
    ~ConsoleTest() override
    {
        restore();
        close(m_pipe[0]);
    }
    void restore() const { dup2(m_standardOutput, STDOUT_FILENO); }
    std::string readAll() const
    {
        restore(); // ends the pipe
        std::string text;
        std::array<char, 4096> buffer;
        for (ssize_t count = 0; (count = read(m_pipe[0], buffer.data(), buffer.size())) > 0;)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        return text;
    }

    /// Reads until so many bytes have come.
    std::string receive(std::size_t size) const
    {
        std::string text;
        std::array<char, 4096> buffer;
        while (text.size() < size) {
            const ssize_t count = read(m_pipe[0], buffer.data(), buffer.size());
            text.append(buffer.data(), static_cast<std::size_t>(count));
        }
        return text;
    }

    std::array<int, 2> m_pipe{};
    int m_standardOutput;
};

TEST_F(ConsoleTest, writesAllToAReader)
{
    const std::string text(1'000'000, 'x');
    std::string received;
    std::thread reader([&] { received = receive(text.size()); });
    printOnConsole({text.data(), static_cast<qsizetype>(text.size())});
    reader.join();
    EXPECT_EQ(received, text);
}

TEST_F(ConsoleTest, dropsTheRestWhereNobodyReads)
{
    const std::string text(1'000'000, 'x');
    printOnConsole({text.data(), static_cast<qsizetype>(text.size())});
    EXPECT_LT(readAll().size(), text.size());
}

TEST_F(ConsoleTest, writesTheTextsOfThreadsOneAfterTheOther)
{
    constexpr std::size_t size = 1'000'000;
    std::vector<std::thread> threads;
    for (const char letter : {'a', 'b'})
        threads.emplace_back([text = std::string(size, letter)] {
            printOnConsole({text.data(), static_cast<qsizetype>(text.size())});
        });
    std::string received = receive(2 * size);
    for (std::thread &thread : threads)
        thread.join();
    received.erase(std::unique(received.begin(), received.end()), received.end());
    EXPECT_EQ(received.size(), 2U);
}

TEST_F(ConsoleTest, bearsAReaderThatHasGone)
{
    const auto before = std::signal(SIGPIPE, SIG_IGN);
    close(m_pipe[0]);
    printOnConsole("text");
    std::signal(SIGPIPE, before);
    m_pipe[0] = dup(m_standardOutput);
}

} // namespace
