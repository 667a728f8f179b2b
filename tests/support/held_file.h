#pragma once

#include <QFile>
#include <QString>

#include <gtest/gtest.h>

#include <csignal>

#include <fcntl.h>

/// A file that others wait to open until the test lets go of it. It is held by a lease, which the system asks back by a
/// signal and takes after 45 seconds.
class HeldFile {
public:
    explicit HeldFile(const QString &path)
        : m_file(path)
    {
        std::signal(SIGIO, SIG_IGN);
        EXPECT_TRUE(m_file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) << path.toStdString();
        EXPECT_EQ(fcntl(m_file.handle(), F_SETLEASE, F_WRLCK), 0) << path.toStdString();
    }
    HeldFile(const HeldFile &) = delete;
    HeldFile &operator=(const HeldFile &) = delete;
    ~HeldFile() = default;

    void letGo() { m_file.close(); }

private:
    QFile m_file;
};
