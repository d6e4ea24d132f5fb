#pragma once

class QDockWidget;
class QPushButton;
class QString;
class QTableWidget;
class QWidget;

// What the docks of virtual links and of flows share.

/// The two buttons of a table's dock.
struct TrafficDockButtons {
    QPushButton* add = nullptr;
    QPushButton* remove = nullptr;
};

/// A visible dock that takes the table, below its two buttons "添加" and "删除".
QDockWidget* createTrafficDock(const QString& title, const QString& objectName, QTableWidget* table,
                               QWidget* parent, TrafficDockButtons& buttons);
