#include "topology/EditLineWindow.h"

#include "topology/Arrow.h"
#include "topology/DiagramItem.h"
#include "topology/RecordNotifier.h"
#include "widgets/LabelColumn.h"

#include "ui_EditLineWindow.h"

EditLineWindow::EditLineWindow(QWidget* parent, Arrow* link)
    : QDialog(parent),
      ui(std::make_unique<Ui::EditLineWindow>())
{
    ui->setupUi(this);
    alignLabels(this);
    setAttribute(Qt::WA_QuitOnClose, false);
    connect(ui->confirmButton, &QPushButton::clicked, this, &EditLineWindow::confirmButtonClicked);
    connect(ui->cancelButton, &QPushButton::clicked, this, &EditLineWindow::close);
    connect(&RecordNotifier::instance(), &RecordNotifier::linkGone, this,
            [this](const Arrow* gone) {
                if (arrow == gone)
                    arrow = nullptr;
            });
    setArrow(link);
}

EditLineWindow::~EditLineWindow() = default;

static QString nodeText(const QString& name, const DiagramItem* node)
{
    return name + QStringLiteral(u"(节点id:%1)").arg(node->nodeId);
}

void EditLineWindow::setArrow(Arrow* link)
{
    if (!link)
        return;
    arrow = link;
    ui->lineEdit_vLineName->setText(arrow->lineName);
    ui->lineEdit_srcNode->setText(nodeText(arrow->srcNode, arrow->startItem));
    ui->lineEdit_dstNode->setText(nodeText(arrow->dstNode, arrow->endItem));
    ui->lineEdit_srcPort->setText(arrow->srcPort);
    ui->lineEdit_dstPort->setText(arrow->dstPort);
    ui->lineEdit_bandWidth->setText(arrow->bandWidth);
    // The dialog still has the focus where the link before it was left.
    ui->lineEdit_vLineName->setFocus();
    ui->lineEdit_vLineName->selectAll();
}

// The two node texts are composed with the id and never read back.
void EditLineWindow::confirmButtonClicked()
{
    if (arrow) {
        arrow->lineName = ui->lineEdit_vLineName->text();
        arrow->srcPort = ui->lineEdit_srcPort->text();
        arrow->dstPort = ui->lineEdit_dstPort->text();
        arrow->bandWidth = ui->lineEdit_bandWidth->text();
        arrow->compareWithBounds();
    }
    close();
    emit updateGraphics();
}
