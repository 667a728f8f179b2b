#pragma once

#include "export/export_delivery.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "support/fake_file_panels.h"
#include "support/printing.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace sorvanta {

/// A record of messages, panels that a test answers, and folders to write into.
class DeliveryTest : public testing::Test {
protected:
    DeliveryTest()
    {
        ::umask(022);
        QDir().mkpath(downloads);
    }

    ExportMessages messages()
    {
        return {.setMessage =
                    [this](const std::optional<QString> &text) {
                        message = text;
                        ++messagesSet;
                    },
                .setError =
                    [this](const std::optional<QString> &text) {
                        error = text;
                        ++messagesSet;
                    }};
    }

    ExportDelivery::Settings settings(const DeliveryForm &form)
    {
        return {.form = form,
                .panels = panels,
                .defaultName = [this](const QString &extension) { return name + u'.' + extension; },
                .messages = messages(),
                .downloadsFolder = [this] { return hasDownloads ? std::optional(downloads) : std::nullopt; }};
    }

    QString path(const QString &file) const { return folder.filePath(file); }
    QString put(const QString &file, const QByteArray &bytes = "old") const
    {
        writeFileAtomically(path(file), bytes);
        return path(file);
    }
    QByteArray bytes(const QString &file) const { return readFile(path(file)); }
    int modeOf(const QString &file) const
    {
        struct stat status { };
        EXPECT_EQ(::stat(QFile::encodeName(path(file)).constData(), &status), 0);
        return status.st_mode & 07777;
    }
    QStringList namesIn(const QString &place) const
    {
        return QDir(place).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// Fails if anything was written, or said.
    void expectThatNothingHappened() const
    {
        EXPECT_EQ(panels.saveRequests.size(), 0);
        EXPECT_EQ(panels.folderPrompts.size(), 0);
        EXPECT_EQ(namesIn(downloads), QStringList());
        EXPECT_EQ(messagesSet, 0);
    }

    QTemporaryDir folder;
    const QString downloads = folder.filePath("Downloads");
    bool hasDownloads = true;
    QString name = "talk";
    FakeFilePanels panels;
    std::optional<QString> message;
    std::optional<QString> error;
    int messagesSet = 0;
};

} // namespace sorvanta
