#pragma once

#include "verification/Finding.h"
#include "verification/Schedule.h"

#include <utility>

namespace verification
{

/// The severity that a finding of a kind has unless its maker says otherwise.
Severity severityOf(Kind kind);

/// Puts a finding together, part by part.
class FindingMaker
{
public:
    explicit FindingMaker(Kind kind)
    {
        m_finding.kind = kind;
        m_finding.severity = severityOf(kind);
    }

    FindingMaker& as(Severity severity)
    {
        m_finding.severity = severity;
        return *this;
    }
    FindingMaker& at(int node)
    {
        m_finding.node = node;
        return *this;
    }
    FindingMaker& at(int node, int port)
    {
        m_finding.port = port;
        return at(node);
    }
    FindingMaker& at(int node, int port, qint64 slot)
    {
        m_finding.slot = slot;
        return at(node, port);
    }
    FindingMaker& of(const Transmission& transmission)
    {
        m_finding.transmissions.push_back(transmission);
        return *this;
    }
    FindingMaker& of(const ScheduledTransmission& transmission)
    {
        return of(Transmission{transmission.flowID, transmission.seq});
    }
    FindingMaker& of(std::vector<Transmission> transmissions)
    {
        m_finding.transmissions = std::move(transmissions);
        return *this;
    }
    FindingMaker& ofFlow(int flowID) { return of(Transmission{flowID, Transmission::wholeFlow}); }
    FindingMaker& numbers(qint64 found, qint64 low, qint64 high)
    {
        m_finding.found = found;
        m_finding.low = low;
        m_finding.high = high;
        return *this;
    }
    FindingMaker& because(Reason reason)
    {
        m_finding.reason = reason;
        return *this;
    }

    operator Finding() const { return m_finding; }

private:
    Finding m_finding;
};

using FindingList = std::vector<Finding>;

} // namespace verification
