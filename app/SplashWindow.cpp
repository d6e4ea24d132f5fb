#include "app/SplashWindow.h"

#include "app/MainWindow.h"
#include "app/VersionResolveWorker.h"
#include "widgets/ScreenPicture.h"

#include <QLabel>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

static constexpr QSize splashSize(512, 320);

SplashWindow::SplashWindow() : QMainWindow(nullptr, Qt::SplashScreen)
{
    setCentralWidget(createSplashWidget());
    setFixedSize(splashSize);
    setStyleSheet(
        QStringLiteral("QLabel { background-color: transparent; color: white; padding: 0 }"));
    startWorker();
}

// Thread and worker delete themselves once the worker is done.
void SplashWindow::startWorker()
{
    auto* thread = new QThread;
    auto* worker = new VersionResolveWorker;
    worker->moveToThread(thread);
    connect(worker, &VersionResolveWorker::versionResolved, this,
            &SplashWindow::handleVersionResolved);
    connect(worker, &VersionResolveWorker::finished, this,
            &SplashWindow::handleVersionResolveFinished);
    connect(thread, &QThread::started, worker, &VersionResolveWorker::resolveVersions);
    connect(worker, &VersionResolveWorker::finished, thread, &QThread::quit);
    connect(worker, &VersionResolveWorker::finished, worker, &QObject::deleteLater);
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    thread->start(QThread::InheritPriority);
}

static QFont overlayFont(const QLabel& label)
{
    QFont font = label.font();
    font.setPointSize(10);
    return font;
}

static QLabel* createOverlay(QWidget* parent, Qt::Alignment alignment, const QMargins& margins)
{
    auto* overlay = new QLabel(parent);
    overlay->setFixedSize(splashSize);
    overlay->setAlignment(alignment);
    overlay->setContentsMargins(margins);
    return overlay;
}

QWidget* SplashWindow::createSplashWidget()
{
    auto* widget = new QWidget(this);
    auto* layout = new QVBoxLayout(widget);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* picture = new QLabel(this);
    picture->setPixmap(screenPicture(QStringLiteral(":/images/splash.png")));
    layout->addWidget(picture);

    // Places for start-up texts over the picture; all blank at present.
    const Qt::Alignment lowerLeft = Qt::AlignLeft | Qt::AlignBottom;
    QLabel* const overlays[] = {
        createOverlay(widget, lowerLeft, QMargins(10, 0, 0, 72)),
        createOverlay(widget, lowerLeft, QMargins(10, 0, 0, 40)),
        createOverlay(widget, Qt::AlignRight, QMargins(0, 2, 4, 0)),
    };
    const QFont font = overlayFont(*overlays[0]);
    for (QLabel* overlay : overlays)
        overlay->setFont(font);
    overlays[2]->setText(QString());
    return widget;
}

void SplashWindow::handleVersionResolved(QString binary, QString version)
{
    versions.insert(binary, version);
}

// Showing a splash lets events through once, before the event loop runs; the main window waits for
// the loop itself, so that it never appears while the splash is being held.
void SplashWindow::handleVersionResolveFinished()
{
    if (QThread::currentThread()->loopLevel() == 0) {
        QTimer::singleShot(0, this, &SplashWindow::handleVersionResolveFinished);
        return;
    }
    auto* mainWindow = new MainWindow(versions, nullptr);
    mainWindow->show();
    close();
}
