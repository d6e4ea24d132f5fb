#include "tests/planner/twin/ScheduleCauses.h"

#include "tests/planner/twin/ScheduleRows.h"
#include "tests/support/Failure.h"

#include <map>

namespace
{

using Finding = ScheduleFinding;
using Port = std::pair<int, int>;

/// The hop of which the conflict analysis takes the instance's window at the port.
const CheckedHop* comparedHop(const CheckedInstance& instance, Port port)
{
    for (const std::vector<CheckedHop>& path : instance.paths) {
        for (const CheckedHop& hop : path) {
            if (hop.port() == port)
                return &hop;
        }
    }
    return nullptr;
}

QString describe(const CheckedInstance& instance, const CheckedHop& hop)
{
    return QStringLiteral(u"flow %1 seq %2 at node %3 outport %4")
        .arg(QString::number(instance.flowID), QString::number(instance.seq),
             QString::number(hop.nodeID), QString::number(hop.outport));
}

/// One examination; instances of the three documents stand at equal indices.
class Examination
{
public:
    explicit Examination(const ScheduleDocuments& documents)
        : m_windows(readWindows(documents.windows)),
          m_schedule(readSchedule(documents.schedule)),
          m_final(readWindows(documents.finalWindows))
    {
        if (m_windows.size() != m_schedule.size() || m_windows.size() != m_final.size()) {
            failTest("the documents hold " + QByteArray::number(qulonglong(m_windows.size())) +
                     ", " + QByteArray::number(qulonglong(m_schedule.size())) + " and " +
                     QByteArray::number(qulonglong(m_final.size())) + " instances");
            m_windows.clear();
            m_schedule.clear();
        }
        for (const CheckedInstance& instance : m_windows)
            ++m_copies[instance.number()];
    }

    std::vector<Finding> run()
    {
        findSharedSlots();
        for (size_t i = 0; i < m_windows.size(); ++i) {
            findInvertedWindows(i);
            for (size_t p = 0; p < m_windows[i].paths.size(); ++p)
                followPath(i, p);
        }
        return m_findings;
    }

private:
    struct Transmission {
        size_t instance;
        const CheckedHop* sender;
    };

    bool duplicate(size_t instance) const { return m_copies.at(m_windows[instance].number()) > 1; }

    void add(Finding::Kind kind, Finding::Cause cause, const QString& text)
    {
        m_findings.push_back({kind, cause, text});
    }

    void findSharedSlots()
    {
        std::map<std::pair<Port, qint64>, std::vector<Transmission>> slotUse;
        for (size_t i = 0; i < m_schedule.size(); ++i) {
            for (const CheckedHop& sender : m_schedule[i].senders)
                slotUse[{sender.port(), sender.slot}].push_back({i, &sender});
        }
        for (const auto& use : slotUse) {
            for (size_t b = 1; b < use.second.size(); ++b) {
                for (size_t a = 0; a < b; ++a)
                    compare(use.second[a], use.second[b], use.second);
            }
        }
    }

    void compare(const Transmission& a, const Transmission& b, const std::vector<Transmission>& all)
    {
        if (m_schedule[a.instance].number() == m_schedule[b.instance].number())
            return;
        add(Finding::SharedSlot, causeOfSharedSlot(a, b, all),
            QStringLiteral(u"slot %1: %2 and %3")
                .arg(QString::number(a.sender->slot), describe(m_schedule[a.instance], *a.sender),
                     describe(m_schedule[b.instance], *b.sender)));
    }

    // The planning ends when no port has two neighbours, by start, of which the second starts
    // before the first has ended. Windows that are proper and compared then have different starts,
    // and the start is the slot. Two equal starts thus need a window between them, or one of both,
    // that is inverted, or a window that was not among those compared.
    Finding::Cause causeOfSharedSlot(const Transmission& a, const Transmission& b,
                                     const std::vector<Transmission>& all) const
    {
        if (duplicate(a.instance) || duplicate(b.instance))
            return Finding::DuplicateNumber;
        if (!isCompared(a) || !isCompared(b))
            return Finding::HopNotCompared;
        for (const Transmission& other : all) {
            const CheckedHop* hop = comparedHop(m_final[other.instance], other.sender->port());
            if (hop && hop->window.start == other.sender->slot && hop->window.inverted())
                return Finding::WindowInverted;
        }
        return Finding::Unexplained;
    }

    bool isCompared(const Transmission& transmission) const
    {
        const CheckedHop* hop =
            comparedHop(m_final[transmission.instance], transmission.sender->port());
        return hop && hop->sameSender(*transmission.sender);
    }

    void findInvertedWindows(size_t i)
    {
        for (size_t p = 0; p < m_final[i].paths.size(); ++p) {
            const std::vector<CheckedHop>& path = m_final[i].paths[p];
            for (size_t h = 0; h < path.size(); ++h) {
                if (path[h].window.inverted())
                    add(Finding::InvertedWindow, causeOfInversion(i, p, h),
                        describe(m_final[i], path[h]));
            }
        }
    }

    // Windows are narrowed only, except at a port that is resolved, so one that was inverted by the
    // first stage may still be; any other was proper once and was narrowed by a revision.
    Finding::Cause causeOfInversion(size_t i, size_t p, size_t h) const
    {
        if (duplicate(i))
            return Finding::DuplicateNumber;
        return m_windows[i].paths[p][h].window.inverted() ? Finding::FirstStage
                                                          : Finding::LaterRevision;
    }

    const CheckedHop* scheduled(size_t i, const CheckedHop& hop) const
    {
        for (const CheckedHop& sender : m_schedule[i].senders) {
            if (sender.sameSender(hop))
                return &sender;
        }
        return nullptr;
    }

    /// Whether the schedule took the slot of this hop from an earlier one with the same ports.
    bool merged(size_t i, size_t p, size_t h) const
    {
        const CheckedHop& own = m_final[i].paths[p][h];
        for (const std::vector<CheckedHop>& path : m_final[i].paths) {
            for (const CheckedHop& hop : path) {
                if (hop.sameSender(own))
                    return &hop != &own && hop.window.start == scheduled(i, own)->slot;
            }
        }
        return false;
    }

    void followPath(size_t i, size_t p)
    {
        const std::vector<CheckedHop>& path = m_windows[i].paths[p];
        const CheckedHop* before = nullptr;
        for (size_t h = 0; h < path.size(); ++h) {
            const CheckedHop* now = scheduled(i, path[h]);
            if (!now)
                add(Finding::MissingHop, causeOfMissingHop(i, path[h]),
                    describe(m_windows[i], path[h]));
            else if (before && now->slot <= before->slot)
                add(Finding::BackwardHop, causeOfBackwardHop(i, p, h),
                    QStringLiteral(u"slot %1 after slot %2: %3")
                        .arg(QString::number(now->slot), QString::number(before->slot),
                             describe(m_windows[i], path[h])));
            if (now)
                checkWindow(i, p, h, *now);
            before = now;
        }
    }

    void checkWindow(size_t i, size_t p, size_t h, const CheckedHop& now)
    {
        const CheckedWindow& allowed = m_windows[i].paths[p][h].window;
        if (now.slot >= allowed.start && now.slot <= allowed.end)
            return;
        add(Finding::OutsideWindow, causeOfSlotOutside(i, p, h, now),
            QStringLiteral(u"slot %1 not in [%2,%3]: %4")
                .arg(QString::number(now.slot), QString::number(allowed.start),
                     QString::number(allowed.end), describe(m_schedule[i], now)));
    }

    // Narrowing leaves a window inside what it was, or inverted. Only a resolution puts one
    // elsewhere, and what it fixes is a single slot.
    Finding::Cause causeOfSlotOutside(size_t i, size_t p, size_t h, const CheckedHop& now) const
    {
        if (duplicate(i))
            return Finding::DuplicateNumber;
        if (m_windows[i].paths[p][h].window.inverted())
            return Finding::FirstStage;
        const CheckedWindow& last = m_final[i].paths[p][h].window;
        if (last.start != now.slot)
            return merged(i, p, h) ? Finding::MergedPaths : Finding::Unexplained;
        if (last.inverted())
            return Finding::WindowInverted;
        return last.start == last.end ? Finding::FixedOutside : Finding::Unexplained;
    }

    // The schedule names one talker port an instance, that of the first path.
    Finding::Cause causeOfMissingHop(size_t i, const CheckedHop& hop) const
    {
        if (duplicate(i))
            return Finding::DuplicateNumber;
        return hop.isTalker() ? Finding::MergedPaths : Finding::Unexplained;
    }

    // Behind a fixed hop the windows of a path start one after the other, and before it too. Only
    // at the fixed hop itself can the hop before start late, and then its end was cut to before
    // the fixed slot: it is inverted. A path that no revision touched is as the first stage left
    // it.
    Finding::Cause causeOfBackwardHop(size_t i, size_t p, size_t h) const
    {
        if (duplicate(i))
            return Finding::DuplicateNumber;
        const CheckedHop& before = m_final[i].paths[p][h - 1];
        const CheckedHop& now = m_final[i].paths[p][h];
        if (before.window.start < now.window.start)
            return merged(i, p, h - 1) || merged(i, p, h) ? Finding::MergedPaths
                                                          : Finding::Unexplained;
        if (before.window.inverted())
            return Finding::WindowInverted;
        const std::vector<CheckedHop>& untouched = m_windows[i].paths[p];
        if (before.window == untouched[h - 1].window && now.window == untouched[h].window)
            return Finding::JoinedBranches;
        return Finding::Unexplained;
    }

    std::vector<CheckedInstance> m_windows;
    std::vector<CheckedInstance> m_schedule;
    std::vector<CheckedInstance> m_final;
    std::map<std::pair<int, int>, int> m_copies;
    std::vector<Finding> m_findings;
};

} // namespace

std::vector<ScheduleFinding> explainSchedule(const ScheduleDocuments& documents)
{
    return Examination(documents).run();
}

QString nameOf(ScheduleFinding::Kind kind)
{
    switch (kind) {
    case Finding::SharedSlot:
        return QStringLiteral(u"shared slot");
    case Finding::BackwardHop:
        return QStringLiteral(u"backward hop");
    case Finding::OutsideWindow:
        return QStringLiteral(u"slot outside window");
    case Finding::InvertedWindow:
        return QStringLiteral(u"inverted window");
    case Finding::MissingHop:
        return QStringLiteral(u"missing hop");
    }
    return {};
}

QString nameOf(ScheduleFinding::Cause cause)
{
    switch (cause) {
    case Finding::Unexplained:
        return QStringLiteral(u"UNEXPLAINED");
    case Finding::WindowInverted:
        return QStringLiteral(u"a window is inverted");
    case Finding::FixedOutside:
        return QStringLiteral(u"fixed there by a resolution");
    case Finding::LaterRevision:
        return QStringLiteral(u"narrowed by a later revision");
    case Finding::FirstStage:
        return QStringLiteral(u"inverted by the first stage");
    case Finding::HopNotCompared:
        return QStringLiteral(u"not the first hop of its instance at the port");
    case Finding::MergedPaths:
        return QStringLiteral(u"paths merged in the schedule");
    case Finding::JoinedBranches:
        return QStringLiteral(u"branches joined by the first stage");
    case Finding::DuplicateNumber:
        return QStringLiteral(u"two instances with one number");
    }
    return {};
}
