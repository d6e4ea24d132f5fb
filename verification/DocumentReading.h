#pragma once

#include "verification/Finding.h"

#include <tinyxml2.h>

#include <QString>

#include <vector>

// What the readers of both documents share: they pass over what is missing and report it.
namespace verification
{

/// Walks one document and notes what it lacks.
class DocumentReading
{
public:
    using Element = const tinyxml2::XMLElement*;

    /// Reports go to damage, which must outlive it; document is its name in them.
    DocumentReading(QString document, std::vector<Finding>& damage);

    /// The first child of this name; null, with a report, when there is none or parent is null.
    Element child(Element parent, const char* name);

    /// Text of a child, empty when it is missing, which is reported.
    QString text(Element parent, const char* name);

    /// The number in a child's text into value; false, with a report, without one.
    ///
    /// A number has at most ten digits and nothing but blanks around it.
    bool number(Element parent, const char* name, qint64& value);

    /// The same for a number of 32 bits written without its sign.
    bool slotNumber(Element parent, const char* name, qint64& value);

    void report(Element where, const QString& what);

    /// Elements that follow are of a tree of their own, which begins at a place in the document's
    /// text; both must stay for as long as such elements come.
    void beginPiece(const char* text, const char* piece);

private:
    int lineOf(Element where) const;

    QString m_document;
    const char* m_text = nullptr; ///< of the document, and where the tree begins in it
    const char* m_piece = nullptr;
    std::vector<Finding>& m_damage;
};

/// A report of damage that has no place in a document.
Finding damageOf(const QString& detail);

/// Calls visit for the first child of this name and every sibling element behind it, of any name,
/// since that is what the planning takes for a list.
template <typename Visit>
void forEachInList(const tinyxml2::XMLElement* parent, const char* name, Visit visit)
{
    for (auto* element = parent ? parent->FirstChildElement(name) : nullptr; element;
         element = element->NextSiblingElement())
        visit(element);
}

} // namespace verification
