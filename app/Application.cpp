#include "app/Application.h"

#include "app/SplashWindow.h"

#include <QApplication>
#include <QDateTime>
#include <QIcon>
#include <QSettings>

static constexpr int splashSeconds = 2;

// Waits without delivering any event, so that the splash stays however fast the start-up work is.
static void holdSplash()
{
    const QDateTime start = QDateTime::currentDateTime();
    QDateTime now = start;
    while (start.secsTo(now) < splashSeconds)
        now = QDateTime::currentDateTime();
}

static int runTurn(int& argc, char** argv)
{
    const QApplication application(argc, argv);
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/images/icon.png")));
    const QSettings settings;
    SplashWindow splash;
    splash.show();
    holdSplash();
    return QApplication::exec();
}

int runApplication(int argc, char** argv)
{
    QCoreApplication::setApplicationName(QStringLiteral("Rotunda"));
    QCoreApplication::setOrganizationDomain(QStringLiteral("rotunda.example"));
    QCoreApplication::setOrganizationName(QStringLiteral("Corvane"));
    int result = runTurn(argc, argv);
    while (result == RestartExitCode)
        result = runTurn(argc, argv);
    return result;
}
