#pragma once

#include "traffic/FlowInfo.h"
#include "traffic/VLineInfo.h"

class Arrow;
class DiagramItem;
namespace tinyxml2
{
class XMLDocument;
class XMLElement;
} // namespace tinyxml2

// Writes the drawn model as the input document of the planner. Texts go in as the user typed them:
// what does not fit is the planner's to reject.

/// The elements of an input document that hold the others; they belong to the document.
struct InputDocumentParts {
    tinyxml2::XMLElement* hosts;
    tinyxml2::XMLElement* switches;
    tinyxml2::XMLElement* links;
    tinyxml2::XMLElement* virtuallinks;
    tinyxml2::XMLElement* flows;
};

/// Appends the root element with its parts, all still empty.
InputDocumentParts appendParts(tinyxml2::XMLDocument& doc);

/// Each appends one element to the one given; all elements belong to the document.
void appendHost(tinyxml2::XMLDocument& doc, tinyxml2::XMLElement* hosts, const DiagramItem& node);
void appendSwitch(tinyxml2::XMLDocument& doc, tinyxml2::XMLElement* switches,
                  const DiagramItem& node);
void appendLink(tinyxml2::XMLDocument& doc, tinyxml2::XMLElement* links, const Arrow& arrow);
void appendVirtualLink(tinyxml2::XMLDocument& doc, tinyxml2::XMLElement* virtuallinks,
                       const VLineInfo& vLine);
void appendFlow(tinyxml2::XMLDocument& doc, tinyxml2::XMLElement* flows, const FlowInfo& flow);

/// Saves to ResourceXML/vek_input.xml under the current directory, making the folder.
///
/// An earlier file is replaced, and so is a link, a pipe or a device of that name. A file that
/// cannot be saved goes unnoticed.
void saveInputDocument(tinyxml2::XMLDocument& doc);
