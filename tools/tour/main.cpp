#include "tools/tour/Tour.h"

#include "app/Application.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QPointer>

// Usage: rotunda_tour EXAMPLES TARGET
//
// Runs the studio in TARGET, where the run leaves its documents, and keeps pictures in
// TARGET/pictures.

static QString examplesFolder;
static bool tourComplete = false;

static void startTour()
{
    auto* tour = new Tour(examplesFolder,
                          QDir::current().absoluteFilePath(QStringLiteral("pictures")), qApp);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit,
                     [tour] { tourComplete = tour->complete(); });
}

static void keepWarningsOnly(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg)
        fprintf(stderr, "%s\n", qPrintable(message));
}

int main(int argc, char** argv)
{
    if (argc != 3) {
        fprintf(stderr, "usage: rotunda_tour EXAMPLES TARGET\n");
        return 2;
    }
    examplesFolder = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    QDir target(QString::fromLocal8Bit(argv[2]));
    if (!target.removeRecursively() ||
        !QDir().mkpath(target.filePath(QStringLiteral("pictures"))) ||
        !QDir::setCurrent(target.absolutePath())) {
        fprintf(stderr, "rotunda_tour: cannot use the folder %s\n", argv[2]);
        return 2;
    }
    // A first start: no settings of the user, and none left behind.
    qputenv("XDG_CONFIG_HOME",
            QDir::current().absoluteFilePath(QStringLiteral("settings")).toLocal8Bit());
    qInstallMessageHandler(&keepWarningsOnly);
    qAddPreRoutine(&startTour);
    const int result = runApplication(argc, argv);
    printf("%s: pictures and documents are in %s\n",
           tourComplete ? "The studio toured" : "The tour broke off",
           qPrintable(QDir::currentPath()));
    return tourComplete ? result : 1;
}
