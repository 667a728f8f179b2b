// Stands in for whisper-cli where a test needs an engine that misbehaves. It takes the engine's six arguments; the
// file named as the model is a script of one command a line:
//   print TEXT      writes TEXT, percent-encoded, on standard output
//   complain TEXT   the same on standard error
//   arguments       writes the arguments, one a line, all at once
//   print-input     writes what stands on standard input, or that there is nothing
//   environment NAME  writes the variable's value
//   folder          writes the working folder
//   burst BYTES     writes so many bytes in lines of 64
//   sleep MS        waits
//   await PATH      waits until there is something at PATH
//   await-reader    waits until all that was written has been read
//   ignore-stop     ignores SIGTERM from now on
//   close-output    closes both outputs
//   grandchild MS   leaves a process behind that holds the outputs open for so long
//   crash           ends by SIGSEGV
//   exit STATUS
//   only TEXT       the commands from here to the next "only" are for audio whose path contains TEXT; for all without
//   it

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <sys/ioctl.h>
#include <unistd.h>

namespace {

void writeAll(int output, const std::string &bytes)
{
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = write(output, bytes.data() + written, bytes.size() - written);
        if (count < 0)
            std::exit(99);
        written += static_cast<std::size_t>(count);
    }
}

std::string decoded(const std::string &text)
{
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

void sleepFor(const std::string &milliseconds)
{
    std::this_thread::sleep_for(std::chrono::milliseconds(std::stoi(milliseconds)));
}

/// Ends the engine if it is in vain.
template<typename Condition>
void await(Condition condition)
{
    constexpr int mostMilliseconds = 60000;
    for (int i = 0; !condition(); ++i) {
        if (i == mostMilliseconds)
            std::_Exit(97);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

bool isAllRead()
{
    int unread = 0;
    return ioctl(STDOUT_FILENO, FIONREAD, &unread) == 0 && unread == 0;
}

void execute(const std::string &command, const std::string &operand, int argumentCount, char **arguments)
{
    if (command == "print") {
        writeAll(STDOUT_FILENO, decoded(operand));
    } else if (command == "complain") {
        writeAll(STDERR_FILENO, decoded(operand));
    } else if (command == "arguments") {
        std::string lines;
        for (int i = 1; i < argumentCount; ++i)
            lines.append(arguments[i]).append("\n");
        writeAll(STDOUT_FILENO, lines);
    } else if (command == "print-input") {
        char byte = 0;
        writeAll(STDOUT_FILENO, read(STDIN_FILENO, &byte, 1) > 0 ? "input" : "no input");
    } else if (command == "environment") {
        const char *value = std::getenv(operand.c_str());
        writeAll(STDOUT_FILENO, value ? value : "none");
    } else if (command == "folder") {
        writeAll(STDOUT_FILENO, std::filesystem::current_path().string());
    } else if (command == "burst") {
        const std::string line(63, 'x');
        std::string bytes;
        while (bytes.size() < std::stoul(operand))
            bytes += line + "\n";
        writeAll(STDOUT_FILENO, bytes.substr(0, std::stoul(operand)));
    } else if (command == "sleep") {
        sleepFor(operand);
    } else if (command == "await") {
        await([&operand] { return std::filesystem::exists(operand); });
    } else if (command == "await-reader") {
        await(isAllRead);
    } else if (command == "ignore-stop") {
        std::signal(SIGTERM, SIG_IGN);
    } else if (command == "close-output") {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
    } else if (command == "grandchild") {
        if (fork() == 0) {
            std::signal(SIGTERM, SIG_IGN);
            sleepFor(operand);
            _exit(0);
        }
    } else if (command == "crash") {
        std::signal(SIGSEGV, SIG_DFL);
        std::raise(SIGSEGV);
    } else if (command == "exit") {
        std::_Exit(std::stoi(operand));
    }
}

} // namespace

int main(int argumentCount, char **arguments)
{
    if (argumentCount != 7)
        return 98;
    std::ifstream script(arguments[2]);
    const std::string audio = arguments[4];
    bool isMeant = true;
    std::string line;
    while (std::getline(script, line)) {
        const std::size_t blank = line.find(' ');
        const std::string command = line.substr(0, blank);
        const std::string operand = blank == std::string::npos ? std::string() : line.substr(blank + 1);
        if (command == "only")
            isMeant = audio.find(operand) != std::string::npos;
        else if (isMeant)
            execute(command, operand, argumentCount, arguments);
    }
    return 0;
}
