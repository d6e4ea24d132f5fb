#pragma once

#include "traffic/VLineInfo.h"
#include "widgets/SingleDialog.h"

#include <memory>

class TopologyWindow;
class VLineNodeSelectForm;

namespace Ui
{
class AddVLineForm;
}

/// Builds one data path node by node; all paths of a virtual link start at the talker of its first.
class AddVLineForm : public SingleDialog
{
    Q_OBJECT

public:
    /// vLine is the virtual link so far.
    AddVLineForm(TopologyWindow* topologyWindow, const VLineInfo& vLine, QWidget* parent);
    ~AddVLineForm() override;

public slots:
    void rcvItem(DiagramItem* currentItem);
    void delCurrentVLineNode();

signals:
    void sendItems(VLineItems items);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void addNode();
    VLineNodeSelectForm* createSelectForm();
    void confirm();
    void showPath();
    bool reachesAHost() const;
    void forgetGoneNodes(const GoneNodes& nodes);

    std::unique_ptr<Ui::AddVLineForm> ui;
    TopologyWindow* topologyWindow;
    VLineInfo vLineInfo;
    VLineItems path;
    VLineNodeSelectForm* nodeSelectForm = nullptr; ///< null while closed
};
