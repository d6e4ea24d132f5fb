#pragma once

#include "app/PlanPlace.h"
#include "verification/PlanFigures.h"
#include "verification/PlanVerifier.h"

#include <QHash>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

/// One schedule with its input document, as examined when it was loaded.
///
/// It keeps what it read: documents that change later change nothing here. Whoever shows it shares
/// it, so that a newer one can take its place at any time.
class PlanCheck
{
public:
    /// Reads and examines these documents, absolute paths in the order in which they are read.
    ///
    /// Damaged and missing documents are among the findings.
    PlanCheck(const QStringList& inputPaths, const QStringList& outputPaths);

    const verification::Verification& result() const { return m_result; }

    /// Load, latency and occupancy; computed when first asked for, then kept.
    const verification::PlanFigures& figures() const;

    /// Name of a node as the input document has it, "节点7" for a node that it does not name.
    QString nodeName(int nodeID) const;

    /// The port through which the talker of a flow sends; a place without a node when it has none.
    PlanPlace talkerPort(int flowID) const;

    /// The findings at a node, places in result().findings in ascending order.
    const std::vector<size_t>& findingsAt(int nodeID) const;

private:
    void indexNodes();
    void indexFindings();

    verification::PlanRecords m_records;
    verification::Verification m_result;
    mutable std::optional<verification::PlanFigures> m_figures;
    QHash<int, QString> m_names;
    QHash<int, std::vector<size_t>> m_findingsOfNode;
};

/// A check that several views share; null before a schedule was loaded.
using SharedPlanCheck = std::shared_ptr<const PlanCheck>;

/// The debug lines that tell the outcome: one a finding, at most 20 of them and one more with the
/// number left out; or a single line when there is no finding.
QStringList logLines(const verification::Verification& result);
