#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

/// Something odd in a schedule that is judged by the windows behind it, with the step of the
/// planning that is to blame if one is known.
struct ScheduleFinding {
    enum Kind {
        SharedSlot,     ///< two transmissions in one slot of a sending port
        BackwardHop,    ///< a hop that sends before, or as, it can have received the frame
        OutsideWindow,  ///< a slot outside the window that the first stage gave the hop
        InvertedWindow, ///< a window that ends before it starts
        MissingHop      ///< a sender on a path for which the schedule has no slot
    };
    /// Why the planning accepts it; all but Unexplained follow from how the planning works.
    enum Cause {
        Unexplained,
        /// A window at the port, of the hop, or of the hop before was inverted at the end. Such a
        /// window overlaps nothing when neighbours are compared, so its port counts as free of
        /// conflict, and its start is a slot behind its end.
        WindowInverted,
        /// The resolution fixed the hop there: the window was inverted when its turn came, or the
        /// hop gave way beyond the end of the slot table, or another path of the instance decided.
        FixedOutside,
        /// A later revision pushed the window out of place; windows are narrowed without a check.
        LaterRevision,
        /// The window is inverted in the intermediate document already.
        FirstStage,
        /// The instance passes the port on several hops; only its first window there is compared.
        HopNotCompared,
        /// The schedule lists a hop or talker that several paths share once, with the slot that it
        /// has on the first of them; the path's own slots are in order.
        MergedPaths,
        /// Branches that share a port were joined in the intermediate document, which lifts the
        /// shared hop's start without lifting the hops behind it.
        JoinedBranches,
        /// Two instances have the same flow and sequence number; ports list such a pair once.
        DuplicateNumber
    };
    Kind kind;
    Cause cause;
    QString text;
};

/// The documents of one successful planning.
struct ScheduleDocuments {
    QByteArray windows;      ///< vek_hs.xml
    QByteArray schedule;     ///< vek_output.xml
    QByteArray finalWindows; ///< in the form of vek_hs.xml, the windows from which slots were taken
};

/// Says which step of the planning led to each oddity.
///
/// Documents that do not load, or do not belong together, have none and make the test fail.
///
/// Whether a plan is sound is for its two documents to tell; here the windows of the run tell why
/// not, so that an oddity that no step explains is a fault of the engine.
std::vector<ScheduleFinding> explainSchedule(const ScheduleDocuments& documents);

QString nameOf(ScheduleFinding::Kind kind);
QString nameOf(ScheduleFinding::Cause cause);
