#include "project/DocumentFolder.h"

#include <QDebug>
#include <QDir>
#include <QFileInfo>

QString inputDocumentPath()
{
    return QDir::current().absolutePath() + QStringLiteral("/ResourceXML/vek_input.xml");
}

QString outputDocumentPath()
{
    return QDir::current().absolutePath() + QStringLiteral("/OutputXML/vek_output.xml");
}

void ensureDocumentFolder(const QString& folder)
{
    const QDir current(QDir::currentPath());
    if (!current.exists(folder))
        current.mkpath(folder);
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

void forEachDocument(const DocumentPlace& place,
                     const std::function<void(const tinyxml2::XMLElement&)>& read)
{
    const QByteArray failure = "load " + place.baseName.toUtf8() + ".xml failed!";
    QDir folder(QDir::currentPath());
    if (!folder.cd(place.folder)) {
        qDebug() << failure.constData();
        return;
    }
    for (const QString& entry : folder.entryList(QDir::Files)) {
        if (QFileInfo(entry).completeBaseName() != place.baseName)
            continue;
        if (!readDocument(folder.absoluteFilePath(entry), read)) {
            qDebug() << failure.constData();
            return;
        }
    }
}

TolerantReader::Element TolerantReader::child(Element parent, const char* name)
{
    if (!parent)
        return nullptr;
    const Element found = parent->FirstChildElement(name);
    if (!found) {
        if (m_missing == 0) {
            m_firstMissing = QStringLiteral("\"%1\" in \"%2\" of line %3")
                                 .arg(QString::fromUtf8(name), QString::fromUtf8(parent->Name()),
                                      QString::number(parent->GetLineNum()));
        }
        ++m_missing;
    }
    return found;
}

void TolerantReader::forEachSibling(Element parent, const char* name,
                                    const std::function<void(Element)>& visit) const
{
    for (Element element = parent ? parent->FirstChildElement(name) : nullptr; element;
         element = element->NextSiblingElement())
        visit(element);
}

int TolerantReader::number(Element parent, const char* name, bool& ok)
{
    const Element found = child(parent, name);
    ok = ok && found;
    return found ? found->IntText(0) : 0;
}

void TolerantReader::report(const QString& document) const
{
    if (m_missing > 0) {
        qDebug().noquote() << document + QLatin1String(":") << m_missing
                           << "elements are missing, the first is" << m_firstMissing;
    }
}
