#include "tests/support/TemporaryFolder.h"

#include "tests/support/Failure.h"

#include <QDir>

TemporaryFolder::TemporaryFolder() : m_previous(QDir::currentPath())
{
    if (!m_folder.isValid() || !QDir::setCurrent(m_folder.path()))
        failTest("no temporary folder: " + m_folder.errorString().toUtf8());
}

TemporaryFolder::~TemporaryFolder()
{
    QDir::setCurrent(m_previous);
}
