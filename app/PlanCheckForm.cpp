#include "app/PlanCheckForm.h"

#include "app/FindingText.h"
#include "app/PlanTableModel.h"
#include "app/ShareDelegate.h"

#include "ui_PlanCheckForm.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QStyle>

static constexpr int rowsMeasuredForWidths = 200;
static constexpr int summaryIconSize = 24;

PlanCheckForm::PlanCheckForm(QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::PlanCheckForm>())
{
    ui->setupUi(this);
    addPage(ui->findingTable, &findingTable);
    addPage(ui->loadTable, &loadTable);
    addPage(ui->latencyTable, &latencyTable);
    addPage(ui->occupancyTable, &occupancyTable);
    ui->copyButton->setShortcut(QKeySequence::Copy);
    ui->copyButton->setToolTip(
        QStringLiteral(u"复制本页，可粘贴到电子表格（%1）")
            .arg(ui->copyButton->shortcut().toString(QKeySequence::NativeText)));
    ui->goButton->setToolTip(QStringLiteral(u"在调度表中显示（双击或回车）"));
    connect(ui->pages, &QTabWidget::currentChanged, this, &PlanCheckForm::fillCurrentPage);
    connect(ui->copyButton, &QPushButton::clicked, this, &PlanCheckForm::copyPage);
    connect(ui->goButton, &QPushButton::clicked, this, &PlanCheckForm::goToCurrentRow);
    connect(ui->closeButton, &QPushButton::clicked, this, &QWidget::close);
    ui->findingTable->setFocus();
    showCheck(nullptr);
}

PlanCheckForm::~PlanCheckForm() = default;

void PlanCheckForm::addPage(QTableView* view, PlanTable (*tableOf)(const SharedPlanCheck&))
{
    auto* model = new PlanTableModel(this);
    view->setModel(model);
    view->setItemDelegate(new ShareDelegate(this));
    QHeaderView* header = view->horizontalHeader();
    header->setResizeContentsPrecision(rowsMeasuredForWidths);
    header->setHighlightSections(false);
    header->setSortIndicator(-1, Qt::AscendingOrder); // the order of the table, until a click
    view->setSortingEnabled(true);
    connect(view, &QTableView::activated, this, &PlanCheckForm::goTo);
    m_pages.push_back({view, model, tableOf, false});
}

// Fitting takes the last column from the edge to which it was stretched.
static void fitColumns(QTableView* view)
{
    QHeaderView* header = view->horizontalHeader();
    header->setStretchLastSection(false);
    view->resizeColumnsToContents();
    header->setStretchLastSection(true);
}

PlanCheckForm::Page& PlanCheckForm::currentPage()
{
    return m_pages[size_t(ui->pages->currentIndex())];
}

void PlanCheckForm::showCheck(const SharedPlanCheck& check)
{
    m_check = check;
    for (Page& page : m_pages) {
        page.model->showTable({});
        page.filled = false;
    }
    showSummary();
    fillCurrentPage();
}

void PlanCheckForm::showSummary()
{
    ui->summaryLabel->setText(summaryOf(m_check.get()));
    QStyle::StandardPixmap icon = QStyle::SP_DialogApplyButton;
    if (!m_check || !m_check->result().findings.empty())
        icon = QStyle::SP_MessageBoxInformation;
    if (m_check && !m_check->result().sound())
        icon = QStyle::SP_MessageBoxCritical;
    ui->summaryIcon->setPixmap(style()->standardIcon(icon).pixmap(summaryIconSize));
}

void PlanCheckForm::fillCurrentPage()
{
    Page& page = currentPage();
    if (!page.filled && m_check) {
        page.model->showTable(page.tableOf(m_check));
        fitColumns(page.view);
        page.view->setCurrentIndex(page.model->index(0, 0));
        page.filled = true;
    }
    ui->goButton->setEnabled(page.model->rowCount() > 0);
}

void PlanCheckForm::copyPage()
{
    QGuiApplication::clipboard()->setText(tabSeparated(*currentPage().model));
}

void PlanCheckForm::goToCurrentRow()
{
    goTo(currentPage().view->currentIndex());
}

void PlanCheckForm::goTo(const QModelIndex& row)
{
    if (row.isValid())
        emit placeChosen(currentPage().model->placeOf(row.row()));
}
