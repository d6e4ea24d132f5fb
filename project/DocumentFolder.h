#pragma once

#include <QStringList>

#include <functional>

namespace tinyxml2
{
class XMLElement;
} // namespace tinyxml2

// Where the studio keeps its documents and how it finds them.

/// A folder under the current directory and the base name of the documents in it.
struct DocumentPlace {
    QString folder;   ///< such as "ResourceXML"
    QString baseName; ///< such as "vek_input"; any last suffix counts
};

/// "ResourceXML", the folder under the current directory that holds the input document.
QString inputFolder();

/// "OutputXML", the folder under the current directory that holds what a run leaves.
QString outputFolder();

/// Absolute path of the studio's own input document, vek_input.xml.
QString inputDocumentPath();

/// Absolute path of the studio's own output document, vek_output.xml.
QString outputDocumentPath();

/// Puts a copy of a file, which its owner may write, in place of a document of the studio.
///
/// A document that the path reaches under another name stays: removing it would lose the only copy.
/// One that is a link goes, so that nothing is written through it into the user's file. Without the
/// file the document just goes. A copy that fails is not reported.
void replaceDocument(const QString& document, const QString& file);

/// Makes the folder under the current directory unless it exists.
void ensureDocumentFolder(const QString& folder);

/// Removes a file of the folder outputFolder(); nothing happens when there is none.
void removeOutput(const QString& fileName);

/// Whether a file of the folder outputFolder() is there for good: a plain one that cannot be
/// written.
bool isStuckOutput(const QString& fileName);

/// Absolute paths of the documents of the place, by name; none when the folder is missing.
QStringList documentPaths(const DocumentPlace& place);

/// Loads every document of the place, by name, and hands its first element to read.
///
/// A missing folder, or a document that does not load, ends the walk with the debug line
/// "load <baseName>.xml failed!".
void forEachDocument(const DocumentPlace& place,
                     const std::function<void(const tinyxml2::XMLElement&)>& read);
