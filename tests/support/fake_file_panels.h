#pragma once

#include "platform/desktop/file_panels.h"

#include <QList>

/// Panels that a test answers.
class FakeFilePanels : public sorvanta::FilePanels {
public:
    void openFile(const OpenRequest &request, OnChosen onChosen) override
    {
        requests << request;
        m_onChosen = std::move(onChosen);
    }

    void openFiles(const OpenRequest &request, OnFilesChosen onChosen) override
    {
        filesRequests << request;
        m_onFilesChosen = std::move(onChosen);
    }

    void saveFile(const SaveRequest &request, OnChosen onChosen) override
    {
        saveRequests << request;
        m_onChosen = std::move(onChosen);
    }
    void chooseFolder(const QString &prompt, OnChosen onChosen) override
    {
        folderPrompts << prompt;
        m_onChosen = std::move(onChosen);
    }

    /// Does what a user does who chooses `path`, or who declines.
    void answer(const std::optional<QString> &path) const { m_onChosen(path); }

    /// The same for a panel for any number of files.
    void answerFiles(const QStringList &paths) const { m_onFilesChosen(paths); }

    QList<OpenRequest> requests;
    QList<OpenRequest> filesRequests;
    QList<SaveRequest> saveRequests;
    QStringList folderPrompts;

private:
    OnChosen m_onChosen;
    OnFilesChosen m_onFilesChosen;
};
