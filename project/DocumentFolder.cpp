#include "project/DocumentFolder.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

#include <tinyxml2.h>

QString inputFolder()
{
    return QStringLiteral("ResourceXML");
}

QString outputFolder()
{
    return QStringLiteral("OutputXML");
}

static QString pathInFolder(const QString& folder, const QString& fileName)
{
    return QDir::current().absolutePath() + QLatin1Char('/') + folder + QLatin1Char('/') + fileName;
}

QString inputDocumentPath()
{
    return pathInFolder(inputFolder(), QStringLiteral("vek_input.xml"));
}

QString outputDocumentPath()
{
    return pathInFolder(outputFolder(), QStringLiteral("vek_output.xml"));
}

// Whether a path leads to this document, be it by another name, or both to nothing.
static bool leadsTo(const QString& path, const QString& document)
{
    return QFileInfo(path).canonicalFilePath() == QFileInfo(document).canonicalFilePath();
}

// The real path of the file is taken first: the document may be the link that leads to it.
void replaceDocument(const QString& document, const QString& file)
{
    const bool isLink = QFileInfo(document).isSymLink();
    if (!isLink && leadsTo(file, document))
        return;
    const QString source = QFileInfo(file).canonicalFilePath();
    QFile::remove(document);
    // Copying a pipe would wait for somebody to fill it.
    if (QFileInfo(source).isFile() && QFile::copy(source, document)) {
        const QFile::Permissions mayWrite = QFile::WriteOwner | QFile::WriteUser;
        QFile::setPermissions(document, QFile::permissions(document) | mayWrite);
    }
}

void ensureDocumentFolder(const QString& folder)
{
    // Not by its path, which leads elsewhere where it has a name of odd bytes.
    QDir().mkpath(folder);
}

// One that is a link goes too, be it to nothing: the next run would write through it.
void removeOutput(const QString& fileName)
{
    QFile::remove(pathInFolder(outputFolder(), fileName));
}

// Asked by opening it, which changes nothing: what permissions say is for another user at times.
bool isStuckOutput(const QString& fileName)
{
    const QString path = pathInFolder(outputFolder(), fileName);
    QFile file(path);
    return QFileInfo(path).isFile() && !file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly);
}

// Loads one document; false when it does not load.
static bool readDocument(const QString& path,
                         const std::function<void(const tinyxml2::XMLElement&)>& read)
{
    tinyxml2::XMLDocument document(true, tinyxml2::PRESERVE_WHITESPACE);
    if (document.LoadFile(path.toUtf8().constData()) != tinyxml2::XML_SUCCESS)
        return false;
    if (const tinyxml2::XMLElement* root = document.FirstChildElement())
        read(*root);
    return true;
}

QStringList documentPaths(const DocumentPlace& place)
{
    QDir folder(QDir::currentPath());
    QStringList paths;
    if (!folder.cd(place.folder))
        return paths;
    for (const QString& entry : folder.entryList(QDir::Files)) {
        if (QFileInfo(entry).completeBaseName() == place.baseName)
            paths.append(folder.absoluteFilePath(entry));
    }
    return paths;
}

void forEachDocument(const DocumentPlace& place,
                     const std::function<void(const tinyxml2::XMLElement&)>& read)
{
    const QByteArray failure = "load " + place.baseName.toUtf8() + ".xml failed!";
    if (!QDir(QDir::currentPath()).cd(place.folder)) {
        qDebug() << failure.constData();
        return;
    }
    for (const QString& path : documentPaths(place)) {
        if (!readDocument(path, read)) {
            qDebug() << failure.constData();
            return;
        }
    }
}
