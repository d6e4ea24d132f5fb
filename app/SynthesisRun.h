#pragma once

#include "synthesis/NetworkDocument.h"

#include <QObject>
#include <QTimer>

#include <tinyxml2.h>

#include <atomic>
#include <memory>

class QThread;

/// What looks for windows; synthesis::synthesizeWindows() but for tests.
using WindowSearch = synthesis::Outcome (*)(const planner::PlanningContext&,
                                            const synthesis::Options&);

/// An input document in memory and what the planning reads from it.
struct SynthesisTask {
    /// Parses and reads the bytes without a log line; what is wrong stands in the network.
    explicit SynthesisTask(const QByteArray& bytes);

    const QByteArray bytes;
    tinyxml2::XMLDocument document;
    synthesis::InputNetwork network;
};

/// A search for windows in a thread of its own.
///
/// Belongs to one thread and reports there. Destroying it stops the search and waits for its end,
/// a matter of milliseconds.
class SynthesisRun : public QObject
{
    Q_OBJECT

public:
    /// Begins at once. The task must outlive the run; until finished() only its network may be
    /// read, and nothing be changed.
    SynthesisRun(const SynthesisTask& task, WindowSearch windowSearch, QObject* parent);
    ~SynthesisRun() override;

    /// Asks the search to end; finished() follows.
    void stop() { m_isStopped = true; }

    /// How the search ended; only after finished().
    const synthesis::Outcome& outcome() const { return m_outcome; }

signals:
    /// So many flows have their slots at the moment, a few times a second.
    void progressed(int placed, int total);
    void finished();

private:
    void search(WindowSearch windowSearch);
    void report();

    const SynthesisTask& m_task;
    synthesis::Outcome m_outcome = synthesis::Stopped();
    std::atomic<bool> m_isStopped{false};
    std::atomic<int> m_placed{0};
    std::atomic<int> m_total{0};
    QTimer m_reportTimer;
    std::unique_ptr<QThread> m_thread;
};
