#pragma once

#include <QString>

#include <vector>

// What an examination of a plan reports, as data.
namespace verification
{

/// How much a finding weighs.
enum class Severity {
    Fault, ///< the schedule itself is wrong: on a real network frames collide, are late or are lost
    Remark ///< the planning rules allow it; an engineer should know
};

/// What a finding is about; the comments tell the numbers that disagree, as found: low to high.
///
/// Kinds are in the order in which findings of equal severity are reported. A kind has one
/// severity, but for the two receive slots: they are remarks where the rules give them to frames
/// that are in order, and faults everywhere else.
enum class Kind {
    // Of a document as a whole.
    DamagedDocument, ///< a part is missing or no number; detail says which part of which line
    SlotLength,      ///< microseconds a slot lasts: the one length that windows are counted in
    CycleLength,     ///< microseconds the schedule lasts: the least common multiple of all periods

    // Two transmissions in one slot of a sending port.
    SharedSlot,          ///< the same slot number; found: how many transmissions, allowed: 1
    SharedSlotOverCycle, ///< only because the schedule repeats; found: how many, allowed: 1

    // A transmission on its way.
    HopOrder,      ///< a hop sends no later than the one before: slot, one behind it and above
    LongWait,      ///< slots that a frame waits in a switch: 1 to the buffers of the switch
    SendWindow,    ///< the talker's slot: its own window, shifted to the instance
    ReceiveWindow, ///< the slot in which a listener gets the frame: its own window, shifted
    ReceiveSlot,   ///< slot in which a switch expects the frame: that in which it is sent to it
    ListenerSlot,  ///< slot in which a listener expects the frame: that in which it is sent to it

    // The plan beside what the input document asks for.
    MissingFlow,         ///< no transmission of a TT flow; found 0: the number of transmissions
    MissingTransmission, ///< the first that is missing; found: present ones, allowed: their number
    ExtraTransmission,   ///< a transmission that no TT flow asks for
    MissingHop,          ///< a sender or listener on a path without a slot in the plan
    HopOffPath,          ///< a sender or listener that is on no path of the virtual link
    WrongPort,           ///< a node of the path at a port that the path does not use
    MissingLink,         ///< no link joins a node to its neighbour on a path; found: the neighbour

    // What is allowed and matters to an engineer.
    UnevenPeriod,       ///< microseconds by which a period exceeds whole slots: 0
    RepeatedFlowNumber, ///< several TT flows share a number; found: how many, allowed: 1
    UnlistedTalkerPort, ///< a talker sends on a second port, which the schedule has no row for
    UnaskedListener,    ///< a path ends at a listener for which the flow has no receive window
    HostOnPath,         ///< a path leads through a node that is no switch
    LongFrame,          ///< microseconds that a frame needs on the slowest link: up to one slot
    FullBuffers,        ///< frames that a switch holds in one slot at most: 0 to its buffers
    BeyondCycle         ///< slot behind the last, or before the first, of the cycle: 0 to the last
};

/// Why the plan lacks a flow, where that can be told.
enum class Reason {
    None,
    LeadingNumberZero,  ///< flows of number 0 before all others are in no document
    DisagreesWithLink,  ///< talker or listener are not those of its virtual link
    BehindDisagreeing,  ///< reading ends at a flow that disagrees, so those behind are dropped
    UnknownVirtualLink, ///< there is no virtual link, or no path, of that number
    PeriodZero          ///< a flow without a period cannot be planned
};

/// One transmission of a flow in the cycle, in the numbers of the output document.
struct Transmission {
    int flowID = 0;
    int seq = 0; ///< wholeFlow when no single transmission is meant

    static constexpr int wholeFlow = -1;
};

/// One thing that an engineer would not expect to see in a plan.
///
/// It begins as a damaged document. Fields that a kind does not use are nowhere (node, port, slot)
/// or 0 (numbers). It refers to nothing: node names are the caller's to look up.
struct Finding {
    Kind kind = Kind::DamagedDocument;
    Severity severity = Severity::Fault;
    int node = nowhere;
    int port = nowhere;   ///< of sending, or of receiving for listeners and expected slots
    qint64 slot = noSlot; ///< as in the output document, counted from the cycle's start
    std::vector<Transmission> transmissions; ///< by flowID and seq
    qint64 found = 0;
    qint64 low = 0;  ///< smallest number that would be right
    qint64 high = 0; ///< largest number that would be right
    Reason reason = Reason::None;
    QString detail; ///< of a damaged document: what and where, in English

    static constexpr int nowhere = -1;
    static constexpr qint64 noSlot = Q_INT64_C(-9223372036854775807) - 1;
};

bool operator==(const Transmission& a, const Transmission& b);
bool operator<(const Transmission& a, const Transmission& b);
bool operator==(const Finding& a, const Finding& b);

/// The order of a report: faults first, then by kind, node, port, slot, transmissions, numbers.
bool operator<(const Finding& a, const Finding& b);

/// Every kind, in the order of a report.
std::vector<Kind> allKinds();

/// Name of a kind in English, such as "shared slot".
QString nameOf(Kind kind);

/// The finding as one English line, such as for a log; nodes by number.
QString describe(const Finding& finding);

} // namespace verification
