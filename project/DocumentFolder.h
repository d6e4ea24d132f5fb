#pragma once

#include <tinyxml2.h>

#include <QString>

#include <functional>

// How the studio finds its documents and walks through what may be incomplete.

/// A folder under the current directory and the base name of the documents in it.
struct DocumentPlace {
    QString folder;   ///< such as "ResourceXML"
    QString baseName; ///< such as "vek_input"; any last suffix counts
};

/// Absolute path of the studio's own input document, ResourceXML/vek_input.xml under the current
/// directory.
QString inputDocumentPath();

/// Absolute path of the studio's own output document, OutputXML/vek_output.xml under the current
/// directory.
QString outputDocumentPath();

/// Makes the folder under the current directory unless it exists, such as "ResourceXML".
void ensureDocumentFolder(const QString& folder);

/// Loads every document of the place, by name, and hands its first element to read.
///
/// A missing folder, or a document that does not load, ends the walk with the debug line
/// "load <baseName>.xml failed!".
void forEachDocument(const DocumentPlace& place,
                     const std::function<void(const tinyxml2::XMLElement&)>& read);

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
