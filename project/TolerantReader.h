#pragma once

#include <QString>

#include <functional>

namespace tinyxml2
{
class XMLElement;
} // namespace tinyxml2

/// Walks one document, passing over missing parts and counting them.
///
/// Every function accepts a null element, which is a part that was found missing before.
class TolerantReader
{
public:
    using Element = const tinyxml2::XMLElement*;

    /// The first child of this name; null, and one more missing part, when there is none.
    Element child(Element parent, const char* name);

    /// Calls visit for the first child of this name and each sibling element behind it, of any
    /// name.
    void forEachSibling(Element parent, const char* name,
                        const std::function<void(Element)>& visit) const;

    /// The number in a child's text, 0 when it is none; ok turns false when the child is missing.
    int number(Element parent, const char* name, bool& ok);

    /// Writes one debug line when anything was missing.
    void report(const QString& document) const;

private:
    int m_missing = 0;
    QString m_firstMissing;
};
