#pragma once

#include "planner/PlanningModel.h"
#include "planner/TopologyIndex.h"

#include <QStringList>

#include <unordered_map>

namespace tinyxml2
{
class XMLElement;
}

// Reads ResourceXML/vek_input.xml: topology, virtual links, flows.
namespace planner
{

/// Reads every file of the folder ResourceXML whose complete base name is "vek_input".
///
/// The folder lies under the current directory. Fills all lists of the context but
/// TTStreamInstanceList. Returns code::ok, code::unreadable for a file that does not parse or from
/// which nothing can be planned (see below), code::folderMissing without the folder. A flow that
/// disagrees with its virtual link ends the reading of flows and is no error here.
qint32 readInputDocument(PlanningContext& context);

/// Fill the lists from the element "topology", "virtuallinks", "flows".
///
/// The first two always return code::ok; readFlows() returns code::unreadable after a flow that
/// disagrees with its virtual link. All throw DocumentError for a missing element,
/// readVirtualLinks() for a path of fewer than three names, and readFlows() for a TT flow that has
/// period 0 or no path.
qint32 readTopology(PlanningContext& context, const tinyxml2::XMLElement* topology);
qint32 readVirtualLinks(PlanningContext& context, const tinyxml2::XMLElement* virtuallinks);
qint32 readFlows(PlanningContext& context, const tinyxml2::XMLElement* flows);

/// What the reading of flows makes of a flow element.
enum class FlowReading {
    Taken,
    OtherType,       ///< passed over
    WrongTalker,     ///< not the talker of its virtual link: ends the reading of flows
    UnknownListener, ///< a listener ends no path of its virtual link: ends the reading of flows
    PeriodZero,      ///< the document is refused
    NoPath           ///< the document is refused
};

/// Reads the flow elements of a document one by one.
///
/// Refers to the context, whose topology and virtual links must have been read.
class FlowReader
{
public:
    explicit FlowReader(const PlanningContext& context);

    /// Whether the element is of type TT; needs none of its parts.
    static bool isTimeTriggered(const tinyxml2::XMLElement* element);

    /// Fills the flow with what the element says; DocumentError for a missing element.
    FlowReading read(const tinyxml2::XMLElement* element, TTFlow& flow) const;

private:
    TopologyIndex m_topology;
    std::unordered_map<quint16, const VirtualLink*> m_virtualLinks; ///< the first of a number
};

/// Resolves a list of node names, talker first, listener last, to a path with its ports.
///
/// Throws DocumentError for fewer than three names. Neighbours without a link keep port 0.
VirtualLinkPath parseDatapath(const TopologyIndex& topology, const QString& text);

/// The text without its double quote characters.
QString stripQuotes(const QString& text);

/// Stores the first six parts of an address of decimal numbers joined by ":"; missing parts are 0.
void parseMacText(const QString& text, std::array<quint8, 6>& bytes);

/// Reads the text [start,end]; what is missing or no number reads as 0.
///
/// The unit is that of the text: microseconds in the input document, slots in the intermediate one.
SlotWindow parseSlotWindow(const QString& text);

/// The texts between the brackets, split at ","; a well-formed window has two.
QStringList windowBounds(const QString& text);

/// Converts a window of microseconds to the slots it covers; a last slot counts from 30 us on.
SlotWindow windowToSlots(const SlotWindow& raw);

} // namespace planner
