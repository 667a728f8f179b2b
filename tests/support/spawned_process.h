#pragma once

#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

/// A child process with a pipe to its standard input and one from its standard output. QProcess makes its child in the
/// memory of this process, where the child's calls spoil what the thread sanitizer knows of the calling thread: of what
/// that thread hands to others afterwards, it reports races that are none.
class SpawnedProcess {
public:
    /// @param words the path of the program, and its arguments
    explicit SpawnedProcess(std::vector<std::string> words)
    {
        std::array<int, 2> input{-1, -1};
        std::array<int, 2> output{-1, -1};
        if (pipe2(input.data(), O_CLOEXEC) != 0 || pipe2(output.data(), O_CLOEXEC) != 0)
            return;
        m_input = input[1];
        m_output = output[0];
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, input[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        if (posix_spawn(&m_process, arguments[0], &actions, nullptr, arguments.data(), environ) != 0)
            m_process = -1;
        posix_spawn_file_actions_destroy(&actions);
        close(input[0]);
        close(output[1]);
    }
    SpawnedProcess(const SpawnedProcess &) = delete;
    SpawnedProcess &operator=(const SpawnedProcess &) = delete;
    /// Closes the child's standard input, waits for its end, and kills it if that takes too long.
    ~SpawnedProcess()
    {
        close(m_input);
        close(m_output);
        if (m_process < 0)
            return;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (waitpid(m_process, nullptr, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > end)
                kill(m_process, SIGKILL);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
    }

    pid_t id() const { return m_process; }

    /// The next line that the child prints, without its end; waits for it. Empty if the child ends before.
    std::string readLine() const
    {
        std::string line;
        char next = 0;
        while (read(m_output, &next, 1) == 1 && next != '\n')
            line += next;
        return line;
    }

private:
    pid_t m_process = -1;
    int m_input = -1;
    int m_output = -1;
};
