#pragma once

#include "app/SynthesisRun.h"
#include "traffic/FlowInfo.h"
#include "widgets/SingleDialog.h"

#include <QList>

#include <memory>
#include <vector>

class QTableWidget;

namespace Ui
{
class SynthesisForm;
}

/// Looks for windows with a plan, shows how far it is, and then what it found or why it did not.
///
/// Begins when it is shown first. Flows that take no part are listed before that; when one of them
/// prevents a search, there is none. Closing it ends the search.
class SynthesisForm : public SingleDialog
{
    Q_OBJECT

public:
    /// The flows are those of the document, one an element, in its order.
    SynthesisForm(const QByteArray& document, const QList<FlowInfo>& flows, WindowSearch search,
                  QWidget* parent);
    ~SynthesisForm() override;

    /// Begins the search, unless a flow prevents it. Once.
    void start();

    /// The document whose flows are searched.
    const QByteArray& document() const { return m_task.bytes; }

    /// The windows that were found, by place of their flows; none before that.
    const std::vector<synthesis::NarrowedFlow>& windows() const { return m_windows; }

public slots:
    /// Says that the flows are not those of the document any more: what was found is of no use.
    void markOutdated();

signals:
    /// The user wants the windows that were found.
    void adopted();
    /// These flows are in the way of a plan, by place, ascending.
    void flowsInTheWayFound(const QList<int>& flows);

private slots:
    void showProgress(int placed, int total);
    void cancel();
    void showOutcome();

private:
    void listObstacles(const std::vector<synthesis::ObstructedFlow>& obstructed);
    void listWindows();
    void listFlows(const QList<int>& flows);
    void say(const QString& text, int icon);
    void endSearch();

    std::unique_ptr<Ui::SynthesisForm> ui;
    const SynthesisTask m_task;
    const QList<FlowInfo> m_flows;
    const WindowSearch m_search;
    std::vector<synthesis::NarrowedFlow> m_windows; ///< only those that change something
    bool m_isCancelled = false;
    bool m_isOutdated = false;
    std::unique_ptr<SynthesisRun> m_run; ///< last, so that it ends before what it reads
};
