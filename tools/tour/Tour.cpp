#include "tools/tour/Tour.h"

#include "app/FlowScheduleForm.h"
#include "app/MainWindow.h"
#include "app/SplashWindow.h"

#include <QApplication>
#include <QDebug>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QToolBar>
#include <QtTest>

static constexpr int lookInterval_ms = 100;
static constexpr int mostLooksAtOneStage = 600;

/// The visible top-level window of a class; null when there is none.
template <typename Window>
static Window* visibleWindow()
{
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* window = qobject_cast<Window*>(widget);
        if (window && window->isVisible())
            return window;
    }
    return nullptr;
}

template <typename Window>
static bool isShown()
{
    return visibleWindow<Window>() != nullptr;
}

static void clickToolBar(const QString& text)
{
    auto* bar = visibleWindow<MainWindow>()->findChild<QToolBar*>(QStringLiteral("Toolbar"));
    for (QAction* action : bar->actions()) {
        if (action->text() == text)
            QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
    }
}

template <typename Window>
static void clickButton(const char* name)
{
    auto* window = visibleWindow<Window>();
    QTest::mouseClick(window->template findChild<QPushButton*>(QString::fromUtf8(name)),
                      Qt::LeftButton);
}

static void chooseFile(const QString& path)
{
    auto* edit =
        visibleWindow<QFileDialog>()->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    edit->setText(path);
    QTest::keyClick(edit, Qt::Key_Enter);
}

Tour::Tour(const QString& examples, const QString& pictures, QObject* parent)
    : QObject(parent),
      m_examples(examples),
      m_pictures(pictures)
{
    addStartStages();
    addRunStages(QStringLiteral("avionics-line/vek_input.xml"));
    m_stages.push_back({QStringLiteral("end"), [] { return !isShown<QMessageBox>(); },
                        [] { visibleWindow<MainWindow>()->close(); }});
    connect(&m_timer, &QTimer::timeout, this, &Tour::look);
    m_timer.start(lookInterval_ms);
}

void Tour::addStartStages()
{
    m_stages.push_back({QStringLiteral("main-window"), &isShown<MainWindow>,
                        [] { visibleWindow<MainWindow>()->resize(1280, 800); }});
    m_stages.push_back({QStringLiteral("studio"),
                        [] { return visibleWindow<MainWindow>()->width() == 1280; },
                        [] { clickToolBar(QStringLiteral(u"调度规划")); }});
}

void Tour::addRunStages(const QString& document)
{
    m_stages.push_back({QStringLiteral("schedule-dialog"), &isShown<FlowScheduleForm>,
                        [] { clickButton<FlowScheduleForm>("PlanByUserInputButton"); }});
    m_stages.push_back({QStringLiteral("choose-document"), &isShown<QFileDialog>, [this, document] {
                            chooseFile(m_examples + QLatin1Char('/') + document);
                        }});
    m_stages.push_back({QStringLiteral("outcome"), &isShown<QMessageBox>, [] {
                            auto* box = visibleWindow<QMessageBox>();
                            qInfo().noquote() << "tour:" << box->windowTitle() << box->text();
                            QTest::mouseClick(box->buttons().first(), Qt::LeftButton);
                        }});
}

// Acting may block in a dialog that the next stage answers, so it happens outside of this slot: a
// timer is silent while its own slot is running.
void Tour::look()
{
    if (m_stages.empty())
        return;
    if (!m_stages.front().isReached()) {
        if (++m_looksAtStage > mostLooksAtOneStage) {
            qWarning().noquote() << "tour: did not come to" << m_stages.front().name;
            QCoreApplication::exit(1);
        }
        return;
    }
    m_looksAtStage = 0;
    const Stage stage = m_stages.front();
    m_stages.pop_front();
    QTest::qWait(lookInterval_ms); // lets the stage be painted before its picture is taken
    takePicture(stage.name);
    QTimer::singleShot(0, this, stage.act);
}

void Tour::takePicture(const QString& name)
{
    const QString path = QStringLiteral("%1/%2-%3.png")
                             .arg(m_pictures)
                             .arg(++m_pictureCount, 2, 10, QLatin1Char('0'))
                             .arg(name);
    if (!QGuiApplication::primaryScreen()->grabWindow(0).save(path))
        qWarning().noquote() << "tour: cannot save" << path;
}
