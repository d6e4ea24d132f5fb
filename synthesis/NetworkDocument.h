#pragma once

#include "synthesis/WindowSynthesis.h"

#include <QString>

namespace tinyxml2
{
class XMLDocument;
}

// The input document around a search: what is read from it, and what is written back into it.
//
// Flows are named here by their place among the flow elements of the document, from 0, and
// listeners by their place among the listener elements of their flow.
namespace synthesis
{

/// An input document as the planning reads it, with what it would leave out.
struct InputNetwork {
    planner::PlanningContext context; ///< as readInputDocument() leaves it
    std::vector<std::size_t> places;  ///< in the document, by place in context.flows

    /// All flows that will not be planned, with the reason, by place in the document, ascending.
    std::vector<ObstructedFlow> obstructed;

    /// Says what is missing, for engineers; empty for a document that can be read. The context is
    /// then incomplete. Not set for a flow that has Obstacle::PeriodZero or Obstacle::NoPath.
    QString damage;

    /// Whether a search makes sense: nothing is damaged and no obstacle prevents it.
    bool isSearchable() const;
};

/// Reads a parsed document by the rules of the planning, naming each flow that it would leave out.
///
/// Never throws; a document without a root has a damage.
InputNetwork readNetwork(const tinyxml2::XMLDocument& document);

/// A window of the input document in microseconds, as its text [low,high] gives it.
struct WindowBounds {
    qint32 low = 0;
    qint32 high = 0;

    QString text() const; ///< "[low,high]"
};

/// A window before and after it is narrowed.
struct NarrowedWindow {
    WindowBounds before;
    WindowBounds after;
};

/// A listener element whose window is narrowed.
struct NarrowedListener {
    std::size_t place = 0; ///< among the listener elements of the flow
    NarrowedWindow window;
};

/// A flow element whose windows are narrowed.
struct NarrowedFlow {
    std::size_t place = 0; ///< among the flow elements of the document
    NarrowedWindow send;
    std::vector<NarrowedListener>
        listeners; ///< ascending; of two for one node only the last counts
};

/// The part of a window of microseconds that the planning reads as exactly these slots.
///
/// It lies inside own. The slots must be some of those that own covers.
WindowBounds boundsOfSlots(const planner::SlotWindow& slots, const WindowBounds& own);

/// The windows of a plan as texts for the document from which the network was read, in its order.
///
/// Flows that the plan leaves out are not among them.
std::vector<NarrowedFlow> narrowedWindows(const tinyxml2::XMLDocument& document,
                                          const InputNetwork& network, const Found& plan);

/// Writes the narrowed windows into the document; everything else stays as it is.
void writeNarrowedWindows(tinyxml2::XMLDocument& document, const std::vector<NarrowedFlow>& flows);

/// The document with the windows of the plan as the bytes of a file.
QByteArray narrowedDocument(const tinyxml2::XMLDocument& document, const InputNetwork& network,
                            const Found& plan);

} // namespace synthesis
