#pragma once

#include <QTemporaryDir>

/// An empty folder that is the current directory for as long as the object lives.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Absolute path of a file below the folder.
    QString path(const QString& relative) const { return m_folder.filePath(relative); }

private:
    QTemporaryDir m_folder;
    QString m_previous;
};
