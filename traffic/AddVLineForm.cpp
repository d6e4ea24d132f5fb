#include "traffic/AddVLineForm.h"

#include "traffic/VLineNodeSelectForm.h"
#include "widgets/DefaultButton.h"

#include "ui_AddVLineForm.h"

AddVLineForm::AddVLineForm(TopologyWindow* window, const VLineInfo& vLine, QWidget* parent)
    : SingleDialog(parent),
      ui(std::make_unique<Ui::AddVLineForm>()),
      topologyWindow(window),
      vLineInfo(vLine)
{
    ui->setupUi(this);
    connect(ui->addNodeButton, &QPushButton::clicked, this, &AddVLineForm::addNode);
    connect(ui->delNodeButton, &QPushButton::clicked, this, &AddVLineForm::delCurrentVLineNode);
    connect(ui->confirmButton, &QPushButton::clicked, this, &AddVLineForm::confirm);
    connect(ui->cancelButton, &QPushButton::clicked, this, &AddVLineForm::close);
    connect(&RecordNotifier::instance(), &RecordNotifier::nodesGone, this,
            &AddVLineForm::forgetGoneNodes);
    if (!vLineInfo.vLinePaths.isEmpty())
        path.append(talkerOf(vLineInfo));
    showPath();
}

AddVLineForm::~AddVLineForm() = default;

void AddVLineForm::addNode()
{
    if (nodeSelectForm)
        return;
    nodeSelectForm = createSelectForm();
    connect(nodeSelectForm, &VLineNodeSelectForm::windowClosed, this,
            [this] { forgetDialog(nodeSelectForm); });
    connect(nodeSelectForm, &VLineNodeSelectForm::sendItem, this, &AddVLineForm::rcvItem);
    nodeSelectForm->show();
}

VLineNodeSelectForm* AddVLineForm::createSelectForm()
{
    if (path.size() >= 2)
        return new VLineNodeSelectForm(path.at(path.size() - 2), path.last(), this);
    if (path.size() == 1)
        return new VLineNodeSelectForm(nullptr, path.first(), this);
    if (vLineInfo.vLinePaths.isEmpty())
        return new VLineNodeSelectForm(topologyWindow, this);
    return new VLineNodeSelectForm(nullptr, talkerOf(vLineInfo), this);
}

void AddVLineForm::rcvItem(DiagramItem* currentItem)
{
    path.append(currentItem);
    showPath();
}

void AddVLineForm::delCurrentVLineNode()
{
    if (!path.isEmpty())
        path.removeLast();
    showPath();
}

void AddVLineForm::confirm()
{
    if (!path.isEmpty())
        emit sendItems(path);
    close();
}

bool AddVLineForm::reachesAHost() const
{
    const DiagramItem* last = path.value(path.size() - 1);
    return path.size() >= 2 && last && last->diagramType == DiagramItem::Endpoint;
}

// Enter goes on along the path until there is a listener at its end.
void AddVLineForm::showPath()
{
    ui->lineEdit_vLineInfo->setText(pathText(path));
    makeDefault(reachesAHost() ? ui->confirmButton : ui->addNodeButton);
}

void AddVLineForm::forgetGoneNodes(const GoneNodes& nodes)
{
    forgetNodes(path, nodes);
    forgetNodes(vLineInfo.vLinePaths, nodes);
    showPath();
}

void AddVLineForm::closeEvent(QCloseEvent* event)
{
    closeDialog(nodeSelectForm);
    SingleDialog::closeEvent(event);
}
