#include "project/TolerantReader.h"

#include <QDebug>

#include <tinyxml2.h>

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
