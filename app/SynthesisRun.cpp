#include "app/SynthesisRun.h"

#include "planner/PlanningLog.h"
#include "verification/PlanVerifier.h"

#include <QThread>

using synthesis::Found;
using synthesis::Options;
using synthesis::Progress;
using tinyxml2::XMLDocument;

static constexpr int reportInterval_ms = 50;

/// Parses with the options of the planning.
static bool parse(XMLDocument& document, const QByteArray& bytes)
{
    return document.Parse(bytes.constData(), static_cast<size_t>(bytes.size())) ==
           tinyxml2::XML_SUCCESS;
}

SynthesisTask::SynthesisTask(const QByteArray& documentBytes)
    : bytes(documentBytes),
      document(true, tinyxml2::PRESERVE_WHITESPACE)
{
    const planner::QuietPlanning quiet;
    const bool isParsed = parse(document, bytes);
    network = synthesis::readNetwork(document);
    if (!isParsed)
        network.damage = QString::fromUtf8(document.ErrorStr());
}

/// Whether a plan whose windows overlap has no fault, by its documents.
static bool isFaultless(const QByteArray& input, const QByteArray& output)
{
    XMLDocument inputDocument(true, tinyxml2::PRESERVE_WHITESPACE);
    XMLDocument outputDocument(true, tinyxml2::PRESERVE_WHITESPACE);
    return parse(inputDocument, input) && parse(outputDocument, output) &&
           verifyPlan(verification::readPlan(inputDocument, outputDocument)).sound();
}

SynthesisRun::SynthesisRun(const SynthesisTask& task, WindowSearch windowSearch, QObject* parent)
    : QObject(parent),
      m_task(task),
      m_thread(QThread::create([this, windowSearch] { search(windowSearch); }))
{
    connect(&m_reportTimer, &QTimer::timeout, this, &SynthesisRun::report);
    connect(m_thread.get(), &QThread::finished, this, [this] {
        m_reportTimer.stop();
        emit finished();
    });
    m_reportTimer.start(reportInterval_ms);
    m_thread->start();
}

SynthesisRun::~SynthesisRun()
{
    stop();
    m_thread->wait();
}

// Runs in the thread of the search. Whoever reads the outcome has seen the thread end.
void SynthesisRun::search(WindowSearch windowSearch)
{
    Options options;
    options.progress = [this](const Progress& progress) {
        m_placed = static_cast<int>(progress.placed);
        m_total = static_cast<int>(progress.total);
        return !m_isStopped;
    };
    options.isFaultless = [this](const Found& plan, const QByteArray& output) {
        return isFaultless(narrowedDocument(m_task.document, m_task.network, plan), output);
    };
    m_outcome = windowSearch(m_task.network.context, options);
}

void SynthesisRun::report()
{
    if (m_total > 0)
        emit progressed(m_placed, m_total);
}
