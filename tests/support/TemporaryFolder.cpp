#include "tests/support/TemporaryFolder.h"

#include <QDir>

TemporaryFolder::TemporaryFolder() : m_previous(QDir::currentPath())
{
    if (!m_folder.isValid() || !QDir::setCurrent(m_folder.path()))
        qFatal("no temporary folder: %s", qPrintable(m_folder.errorString()));
}

TemporaryFolder::~TemporaryFolder()
{
    QDir::setCurrent(m_previous);
}
