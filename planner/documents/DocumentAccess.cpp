#include "planner/documents/DocumentAccess.h"

#include <QDir>
#include <QFileInfo>

#include <tinyxml2.h>

namespace planner
{

DocumentError::DocumentError(const QString& message)
    : std::runtime_error(message.toUtf8().toStdString())
{
}

QString DocumentError::message() const
{
    return QString::fromUtf8(what());
}

void HopBudget::spend(quint64 hops)
{
    m_spent += hops;
    if (m_spent > m_limit) {
        throw DocumentTooLarge(
            QStringLiteral("its transmissions have more than %1 hops").arg(m_limit));
    }
}

const tinyxml2::XMLElement* rootElement(const tinyxml2::XMLDocument& document)
{
    const tinyxml2::XMLElement* root = document.FirstChildElement();
    if (!root)
        throw DocumentError(QStringLiteral("the document has no element"));
    return root;
}

const tinyxml2::XMLElement* requiredChild(const tinyxml2::XMLElement* parent, const char* name)
{
    const tinyxml2::XMLElement* child = parent->FirstChildElement(name);
    if (!child) {
        throw DocumentError(QStringLiteral("element \"%1\" is missing in \"%2\" of line %3")
                                .arg(QString::fromUtf8(name), QString::fromUtf8(parent->Name()),
                                     QString::number(parent->GetLineNum())));
    }
    return child;
}

QString childText(const tinyxml2::XMLElement* parent, const char* name)
{
    return QString::fromUtf8(requiredChild(parent, name)->GetText());
}

void forEachSibling(const tinyxml2::XMLElement* parent, const char* name,
                    const std::function<void(const tinyxml2::XMLElement*)>& visit)
{
    for (auto* element = parent->FirstChildElement(name); element;
         element = element->NextSiblingElement())
        visit(element);
}

QStringList filesWithBaseName(const QDir& folder, const QString& baseName)
{
    QStringList paths;
    for (const QString& entry : folder.entryList(QDir::Files)) {
        if (QFileInfo(entry).completeBaseName() == baseName)
            paths.append(folder.absoluteFilePath(entry));
    }
    return paths;
}

} // namespace planner
