#pragma once

#include <QMainWindow>

class QAction;
class QComboBox;
class QListWidget;
class TimeSlotInfo;

/// What shows the loaded schedule: nodes at the left, grid and cards of the chosen node at the
/// right.
///
/// Its widgets are found by objectName; the members are for connecting them.
class PlanInfoWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit PlanInfoWindow(QWidget* parent);

    QAction* importAction = nullptr;
    QAction* exportAction = nullptr;
    QComboBox* tableType = nullptr;
    QListWidget* nodeList = nullptr;
    TimeSlotInfo* sendTable = nullptr;
    TimeSlotInfo* receiveTable = nullptr;

private:
    void createToolBars();
    QWidget* createPage(const QString& variant, TimeSlotInfo*& table);
    void createPages();
};
