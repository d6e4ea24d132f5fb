#pragma once

#include <QStringList>

#include <functional>
#include <stdexcept>

class QDir;

namespace tinyxml2
{
class XMLDocument;
class XMLElement;
} // namespace tinyxml2

// What the readers of the two documents share.
namespace planner
{

/// Thrown by the readers where a document lacks what they need; the text says what and where.
class DocumentError : public std::runtime_error
{
public:
    explicit DocumentError(const QString& message);
    QString message() const;
};

/// Thrown where a document holds more than both stages have memory for.
class DocumentTooLarge : public DocumentError
{
public:
    using DocumentError::DocumentError;
};

/// Counts what is read against a limit.
class HopBudget
{
public:
    explicit HopBudget(quint64 hops) : m_limit(hops) {}

    /// DocumentTooLarge when this is more than what is left.
    void spend(quint64 hops);

private:
    quint64 m_limit;
    quint64 m_spent = 0;
};

/// The first element of the document, whatever its name; DocumentError when there is none.
const tinyxml2::XMLElement* rootElement(const tinyxml2::XMLDocument& document);

/// The first child of this name; DocumentError naming child, parent and line when there is none.
const tinyxml2::XMLElement* requiredChild(const tinyxml2::XMLElement* parent, const char* name);

/// The text of the first child of this name: "" when it is empty, DocumentError when it is missing.
QString childText(const tinyxml2::XMLElement* parent, const char* name);

/// Calls visit for the first child of this name and every sibling element behind it, of any name.
void forEachSibling(const tinyxml2::XMLElement* parent, const char* name,
                    const std::function<void(const tinyxml2::XMLElement*)>& visit);

/// Absolute paths of the plain files in a folder, by name, whose complete base name is as given.
QStringList filesWithBaseName(const QDir& folder, const QString& baseName);

} // namespace planner
