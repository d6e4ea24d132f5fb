#include "app/SynthesisForm.h"

#include "app/NarrowedFlows.h"
#include "app/SynthesisText.h"
#include "traffic/FlowText.h"
#include "widgets/RowTable.h"

#include "ui_SynthesisForm.h"

#include <QHeaderView>
#include <QStyle>

#include <algorithm>

using namespace synthesis;

static constexpr int summaryIconSize = 24;
static constexpr int lineHeight = 20;
static constexpr int mostObstaclesShown = 4; ///< without scrolling

SynthesisForm::SynthesisForm(const QByteArray& document, const QList<FlowInfo>& flows,
                             WindowSearch search, QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::SynthesisForm>()),
      m_task(document),
      m_flows(flows),
      m_search(search)
{
    ui->setupUi(this);
    ui->outdatedLabel->hide();
    ui->adoptButton->setEnabled(false);
    ui->adoptButton->setToolTip(QStringLiteral(u"把求解后的窗口写入流量配置"));
    listObstacles(m_task.network.obstructed);
    listWindows();
    connect(ui->cancelButton, &QPushButton::clicked, this, &SynthesisForm::cancel);
    connect(ui->adoptButton, &QPushButton::clicked, this, &SynthesisForm::adopted);
    connect(ui->closeButton, &QPushButton::clicked, this, &QWidget::close);
    connect(this, &SingleDialog::windowClosed, this, [this] { m_run.reset(); });
}

SynthesisForm::~SynthesisForm() = default;

void SynthesisForm::start()
{
    const InputNetwork& network = m_task.network;
    if (network.isSearchable()) {
        say(QStringLiteral(u"正在原窗口内求解…"), QStyle::SP_MessageBoxInformation);
        m_run = std::make_unique<SynthesisRun>(m_task, m_search, nullptr);
        connect(m_run.get(), &SynthesisRun::progressed, this, &SynthesisForm::showProgress);
        connect(m_run.get(), &SynthesisRun::finished, this, &SynthesisForm::showOutcome);
        return;
    }
    endSearch();
    ui->resultTable->hide();
    ui->obstacleTable->setMaximumHeight(QWIDGETSIZE_MAX);
    QList<int> flows;
    for (const ObstructedFlow& each : network.obstructed) {
        if (preventsSearch(each.obstacle))
            flows.append(static_cast<int>(each.flow));
    }
    say(network.damage.isEmpty()
            ? QStringLiteral(u"无法求解：有 %1 条流须先更正。").arg(flows.size())
            : QStringLiteral(u"无法求解：配置不完整（%1）。").arg(network.damage),
        QStyle::SP_MessageBoxCritical);
    emit flowsInTheWayFound(flows);
}

void SynthesisForm::say(const QString& text, int icon)
{
    ui->summaryLabel->setText(text);
    ui->summaryIcon->setPixmap(
        style()->standardIcon(QStyle::StandardPixmap(icon)).pixmap(summaryIconSize));
}

void SynthesisForm::showProgress(int placed, int total)
{
    ui->progressBar->setMaximum(total);
    ui->progressBar->setValue(placed);
}

void SynthesisForm::cancel()
{
    m_isCancelled = true;
    ui->cancelButton->setEnabled(false);
    m_run->stop();
}

void SynthesisForm::endSearch()
{
    ui->progressBar->hide();
    ui->cancelButton->hide();
    ui->closeButton->setFocus();
}

void SynthesisForm::markOutdated()
{
    m_isOutdated = true;
    ui->outdatedLabel->show();
    ui->adoptButton->setEnabled(false);
}

// ---- The end of the search

void SynthesisForm::showOutcome()
{
    endSearch();
    // Whoever cancels wants nothing that was found in the same moment.
    const Outcome outcome = m_isCancelled ? Outcome(Stopped()) : m_run->outcome();
    const InputNetwork& network = m_task.network;
    if (const auto* plan = std::get_if<Found>(&outcome)) {
        m_windows = narrowedWindows(m_task.document, network, *plan);
        m_windows.erase(std::remove_if(m_windows.begin(), m_windows.end(),
                                       [](const auto& each) { return !changesAnything(each); }),
                        m_windows.end());
        listWindows();
        say(summaryOf(network, outcome) +
                (m_windows.empty()
                     ? QStringLiteral(u"窗口无须改动。")
                     : QStringLiteral(u"%1 条流的窗口收窄如下。").arg(m_windows.size())),
            QStyle::SP_DialogApplyButton);
        ui->adoptButton->setEnabled(!m_windows.empty() && !m_isOutdated);
        if (ui->adoptButton->isEnabled())
            ui->adoptButton->setFocus();
        return;
    }
    const bool isStopped = std::holds_alternative<Stopped>(outcome);
    say(summaryOf(network, outcome),
        isStopped ? QStyle::SP_MessageBoxInformation : QStyle::SP_MessageBoxWarning);
    QList<int> flows;
    for (const std::size_t flow : flowsInTheWay(network, outcome))
        flows.append(static_cast<int>(flow));
    listFlows(flows);
    if (!m_isOutdated && !flows.isEmpty())
        emit flowsInTheWayFound(flows);
}

// ---- Tables

/// Number in the flow table and number of the flow, then the texts.
static void appendFlowRow(QTableWidget* table, int place, const FlowInfo& flow,
                          const QStringList& texts)
{
    const int row = table->rowCount();
    table->insertRow(row);
    const QStringList all = QStringList{QString::number(place + 1), flow.flowId} + texts;
    int lines = 1;
    for (int column = 0; column < all.size(); ++column) {
        table->setItem(row, column, centredItem(all.at(column)));
        lines = std::max(lines, all.at(column).count(QLatin1Char('\n')) + 1);
    }
    if (lines > 1)
        table->setRowHeight(row, lines * lineHeight);
}

static void setColumns(QTableWidget* table, const QStringList& headers)
{
    table->setColumnCount(headers.size());
    table->setHorizontalHeaderLabels(headers);
    QHeaderView* header = table->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::Stretch);
    for (const int column : {0, 1})
        header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

/// A line each listener.
static QString receiveWindowsText(const FlowInfo& flow)
{
    QStringList lines;
    for (const DstNodeInfo& listener : flow.dstNodes)
        lines.append(receiveWindowText(listener));
    return lines.join(QLatin1Char('\n'));
}

void SynthesisForm::listObstacles(const std::vector<ObstructedFlow>& obstructed)
{
    setColumns(ui->obstacleTable, {QStringLiteral(u"序号"), QStringLiteral(u"流标识"),
                                   QStringLiteral(u"流类型"), QStringLiteral(u"原因")});
    ui->obstacleTable->horizontalHeader()->setSectionResizeMode(2, QHeaderView::ResizeToContents);
    for (const ObstructedFlow& each : obstructed) {
        const int place = static_cast<int>(each.flow);
        const FlowInfo& flow = m_flows.at(place);
        appendFlowRow(ui->obstacleTable, place, flow, {flow.flowType, textOf(each.obstacle)});
    }
    // The room is for what is found, unless nothing can be searched.
    const int shownRows = std::min<int>(mostObstaclesShown, ui->obstacleTable->rowCount());
    ui->obstacleTable->setMaximumHeight(
        (shownRows + 1) * ui->obstacleTable->verticalHeader()->defaultSectionSize() +
        2 * ui->obstacleTable->frameWidth());
    ui->obstacleLabel->setVisible(!obstructed.empty());
    ui->obstacleTable->setVisible(!obstructed.empty());
}

void SynthesisForm::listWindows()
{
    setColumns(ui->resultTable, {QStringLiteral(u"序号"), QStringLiteral(u"流标识"),
                                 QStringLiteral(u"发送窗口(us)"), QStringLiteral(u"求解后(us)"),
                                 QStringLiteral(u"接收窗口(us)"), QStringLiteral(u"求解后(us)")});
    for (const NarrowedFlow& each : m_windows) {
        const int place = static_cast<int>(each.place);
        const FlowInfo& before = m_flows.at(place);
        const FlowInfo after = narrowed(before, each);
        appendFlowRow(ui->resultTable, place, before,
                      {sendWindowText(before), sendWindowText(after), receiveWindowsText(before),
                       receiveWindowsText(after)});
    }
}

void SynthesisForm::listFlows(const QList<int>& flows)
{
    setColumns(ui->resultTable,
               {QStringLiteral(u"序号"), QStringLiteral(u"流标识"), QStringLiteral(u"周期(us)"),
                QStringLiteral(u"发送窗口(us)"), QStringLiteral(u"接收窗口(us)")});
    for (const int place : flows) {
        const FlowInfo& flow = m_flows.at(place);
        appendFlowRow(ui->resultTable, place, flow,
                      {flow.flowPeriod, sendWindowText(flow), receiveWindowsText(flow)});
    }
}
