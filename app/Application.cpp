#include "app/Application.h"

#include "app/SplashWindow.h"

#include <QApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QIcon>
#include <QLibraryInfo>
#include <QSettings>
#include <QTranslator>
#include <QWindow>

static constexpr int splashSeconds = 2;
static constexpr int longestWaitForSplash = 500; // milliseconds

// Waits without delivering any event, so that the splash stays however fast the start-up work is.
static void holdSplash()
{
    const QDateTime start = QDateTime::currentDateTime();
    QDateTime now = start;
    while (start.secsTo(now) < splashSeconds)
        now = QDateTime::currentDateTime();
}

namespace
{

/// Notices when a window is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget& window) { window.installEventFilter(this); }

    bool painted() const { return m_painted; }
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_painted = m_painted || event->type() == QEvent::Paint;
        return false;
    }

private:
    bool m_painted = false;
};

} // namespace

// Without this nobody would see the splash: a window manager decides about it some time after it is
// shown, and only then can it be painted.
static void waitUntilSeen(QWidget& splash, const PaintWatch& watch)
{
    QElapsedTimer timer;
    timer.start();
    const auto isSeen = [&] { return splash.windowHandle()->isExposed() && watch.painted(); };
    while (!isSeen() && timer.elapsed() < longestWaitForSplash)
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

// The texts of the library's own dialogs and boxes, whatever the language of the desktop.
static void translateLibraryTexts(QTranslator& translator)
{
    if (translator.load(QStringLiteral("qtbase_zh_CN"),
                        QLibraryInfo::location(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator);
}

static int runTurn(int& argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/images/icon.png")));
    QTranslator libraryTexts;
    translateLibraryTexts(libraryTexts);
    const QSettings settings;
    SplashWindow splash;
    PaintWatch watch(splash);
    splash.show();
    waitUntilSeen(splash, watch);
    holdSplash();
    return QApplication::exec();
}

int runApplication(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("Rotunda"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("rotunda.example"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvane"));
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    // Of the forms that a character has in several languages the Chinese one, on any desktop.
    qputenv("FC_LANG", "zh-cn");
    int result = runTurn(argc, argv);
    while (result == RestartExitCode)
        result = runTurn(argc, argv);
    return result;
}
