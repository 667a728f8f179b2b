#pragma once

#include <utility>

#include <unistd.h>

namespace sorvanta {

/// An open file of the system, closed with this object.
class FileDescriptor {
public:
    explicit FileDescriptor(int number)
        : m_number(number)
    {
    }
    ~FileDescriptor()
    {
        if (isOpen())
            ::close(m_number);
    }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    {
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;

    bool isOpen() const { return m_number >= 0; }
    int number() const { return m_number; }

    /// Closes the file at once. @return whether the system saw no failure
    bool close() { return ::close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number;
};

} // namespace sorvanta
