#pragma once

#include "tests/driver/Editor.h"
#include "tests/driver/MainWindowProbe.h"

#include <memory>

class AddVLineForm;
class QPushButton;
class VLineNodeSelectForm;

/// The whole studio in its real window, worked by real clicks.
class Studio
{
public:
    /// In a window of its own, shown.
    Studio();
    /// In a window that the caller shows and owns.
    explicit Studio(MainWindow& shown);

private:
    std::unique_ptr<MainWindow> m_own;

public:
    MainWindow& window;
    MainWindowProbe probe;
    Editor editor;

    void clickToolBar(const QString& text);
    /// Opens the file menu and clicks the entry.
    void clickFileMenu(const QString& text);
    /// "打开工程" and "保存工程" with this path typed into the file dialog.
    void openProject(const QString& path);
    void saveProject(const QString& path);

    /// Draws, names and fills a node through its dialog.
    DiagramItem* drawNode(DiagramItem::DiagramType type, const QPointF& center, const char* name);
    /// Draws a link and fills its ports and bandwidth through its dialog.
    Arrow* drawLink(DiagramItem* from, int fromPort, DiagramItem* to, int toPort);
    /// Hosts A, B, C on switches S1, S2: A - S1 - S2 - B, C at S2. Ports count from 0 at each node.
    void drawSmallNetwork();
    DiagramItem* node(const char* name);

    /// Presses "添加" of the dock and returns the form.
    VLineEditorForm* openVLineEditor();
    FlowEditorForm* openFlowEditor();
    AddVLineForm* openPath(VLineEditorForm* form);
    VLineNodeSelectForm* openNodeChoice(AddVLineForm* form);
    /// Adds a path through these nodes to the form, by the dialogs.
    void addPath(VLineEditorForm* form, const QStringList& names);
    /// Defines a virtual link from its first to its last dialog.
    void defineVLine(const char* id, const QList<QStringList>& paths);
    /// Defines a flow; rcvWindows are low and high of each listener, in order.
    void defineFlow(const char* type, const char* id, const char* period, const char* vLineId,
                    const QStringList& sendWindow, const QList<QStringList>& rcvWindows);
    /// Fills the receive window of the listener that the form's list shows.
    void fillReceiveWindow(FlowEditorForm* form, const QStringList& window);

    static QPushButton* dockButton(QDockWidget* dock, const QString& text);
};
