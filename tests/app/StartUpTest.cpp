#include "app/Application.h"
#include "app/MainWindow.h"
#include "app/SplashWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGlyphRun>
#include <QLabel>
#include <QRawFont>
#include <QTemporaryDir>
#include <QTextLayout>
#include <QThread>
#include <QTimer>
#include <QtTest>

struct SplashWindowProbe {
    static const QMap<QString, QString>& versions(const SplashWindow& splash)
    {
        return splash.versions;
    }
};

/// What one turn of the application showed, seen at the moment when its main window appeared.
struct Turn {
    qint64 msUntilMainWindow = 0;
    bool inEventLoop = false;
    bool onMainThread = false;
    bool splashStillVisible = false;
    bool versionsEmpty = false;
    bool splashClosedAfterwards = false;
    qint64 msFromSplashPainted = -1;
    QString textOfOk;
    QString fontOfHan;
    const void* mainWindow = nullptr;
};

static QList<Turn> turns;
static QList<int> exitCodes;                     // one for each turn to end with
static QEvent::Type closesSplash = QEvent::None; // the event of the splash after which to close it

/// Watches one application object and ends its event loop once the main window is there.
class TurnWatcher : public QObject
{
public:
    explicit TurnWatcher(QObject* parent) : QObject(parent)
    {
        m_timer.start();
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<SplashWindow*>(object) &&
            !m_sincePaint.isValid())
            m_sincePaint.start();
        if (event->type() == closesSplash && qobject_cast<SplashWindow*>(object)) {
            closesSplash = QEvent::None;
            QCoreApplication::postEvent(object, new QCloseEvent);
        }
        auto* window = event->type() == QEvent::Show ? qobject_cast<MainWindow*>(object) : nullptr;
        if (window && !m_done) {
            m_done = true;
            observe(window);
            QTimer::singleShot(0, this, [] {
                turns.last().splashClosedAfterwards = findSplash() == nullptr;
                QCoreApplication::exit(exitCodes.takeFirst());
            });
        }
        return false;
    }

private:
    static SplashWindow* findSplash()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* splash = qobject_cast<SplashWindow*>(widget);
            if (splash && splash->isVisible())
                return splash;
        }
        return nullptr;
    }

    static QString fontOf(const QString& text)
    {
        QTextLayout layout(text);
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        return layout.glyphRuns().value(0).rawFont().familyName();
    }

    void observe(MainWindow* window)
    {
        Turn turn;
        turn.msUntilMainWindow = m_timer.elapsed();
        turn.inEventLoop = QThread::currentThread()->loopLevel() > 0;
        turn.onMainThread = QThread::currentThread() == qApp->thread();
        const SplashWindow* splash = findSplash();
        turn.splashStillVisible = splash != nullptr;
        turn.versionsEmpty = splash && SplashWindowProbe::versions(*splash).isEmpty();
        turn.mainWindow = window;
        turn.msFromSplashPainted = m_sincePaint.isValid() ? m_sincePaint.elapsed() : -1;
        turn.textOfOk = QCoreApplication::translate("QPlatformTheme", "OK");
        turn.fontOfHan = fontOf(QStringLiteral(u"直"));
        turns.append(turn);
    }

    QElapsedTimer m_timer;
    QElapsedTimer m_sincePaint;
    bool m_done = false;
};

static void watchTurn()
{
    new TurnWatcher(qApp);
}
Q_COREAPP_STARTUP_FUNCTION(watchTurn)

class StartUpTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        turns.clear();
        exitCodes.clear();
    }

    void restartCodeBuildsEverythingAnewAndAnyOtherCodeEnds()
    {
        exitCodes = {RestartExitCode, -7};
        QCOMPARE(run(), -7);
        QCOMPARE(turns.size(), 2);
        QVERIFY(turns[0].mainWindow != turns[1].mainWindow);
        QVERIFY(turns[1].splashStillVisible);
    }

    void mainWindowComesFromTheEventLoopTwoSecondsAfterTheSplash()
    {
        exitCodes = {0};
        QCOMPARE(run(), 0);
        const Turn& turn = turns.first();
        QVERIFY2(turn.msUntilMainWindow >= 2000,
                 qPrintable(QString::number(turn.msUntilMainWindow)));
        QVERIFY(turn.inEventLoop);
        QVERIFY(turn.onMainThread);
    }

    void splashClosesAfterTheMainWindowIsShownAndKnowsNoVersions()
    {
        exitCodes = {0};
        run();
        QVERIFY(turns.first().splashStillVisible);
        QVERIFY(turns.first().versionsEmpty);
        QVERIFY(turns.first().splashClosedAfterwards);
    }

    // What is asked for while no event gets through takes effect behind the wait.
    void splashThatIsClosedDoesNoHarm_data()
    {
        QTest::addColumn<int>("moment");
        QTest::newRow("as it appears") << int(QEvent::Show);
        QTest::newRow("while it is held") << int(QEvent::Paint);
    }
    void splashThatIsClosedDoesNoHarm()
    {
        QFETCH(int, moment);
        closesSplash = static_cast<QEvent::Type>(moment);
        exitCodes = {0};
        QCOMPARE(run(), 0);
        QVERIFY(closesSplash == QEvent::None);
        if (turns.isEmpty())
            return; // it was the last window
        QVERIFY(turns.first().inEventLoop);
        QVERIFY(turns.first().splashClosedAfterwards);
    }

    void splashIsPaintedBeforeTheWait()
    {
        exitCodes = {0};
        run();
        QVERIFY(turns.first().msFromSplashPainted >= 1900);
    }

    void textsAndLettersAreChineseWhateverTheLocale()
    {
        exitCodes = {0};
        run();
        QCOMPARE(turns.first().textOfOk, QStringLiteral(u"确定"));
        QVERIFY2(turns.first().fontOfHan.contains(QLatin1String("SC")),
                 qPrintable(turns.first().fontOfHan));
    }

    void screensOfHighResolutionAreUsed()
    {
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling));
        QVERIFY(QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps));
        turns.append(Turn());
    }

    void identityDecidesWhereSettingsAreKept()
    {
        exitCodes = {0};
        run();
        QCOMPARE(QCoreApplication::applicationName(), QStringLiteral("Rotunda"));
        QCOMPARE(QCoreApplication::organizationName(), QStringLiteral("Corvane"));
        QCOMPARE(QCoreApplication::organizationDomain(), QStringLiteral("rotunda.example"));
    }

    void splashShowsThePictureUnderThreeBlankOverlays()
    {
        int count = 1;
        char name[] = "test";
        char* arguments[] = {name, nullptr};
        const QApplication application(count, arguments);
        const SplashWindow splash;
        QCOMPARE(splash.size(), QSize(512, 320));
        QCOMPARE(splash.windowFlags() & Qt::WindowType_Mask, Qt::SplashScreen);
        QVERIFY(SplashWindowProbe::versions(splash).isEmpty());
        QCOMPARE(
            splash.styleSheet(),
            QStringLiteral("QLabel { background-color: transparent; color: white; padding: 0 }"));
        int pictures = 0;
        QList<QMargins> overlays;
        for (const QLabel* label : splash.findChildren<QLabel*>()) {
            if (!label->pixmap(Qt::ReturnByValue).isNull()) {
                ++pictures;
                QCOMPARE(label->pixmap(Qt::ReturnByValue).size(), QSize(512, 320));
            } else {
                overlays.append(label->contentsMargins());
                QCOMPARE(label->size(), QSize(512, 320));
                QCOMPARE(label->font().pointSize(), 10);
                QVERIFY(label->text().isEmpty());
            }
        }
        QCOMPARE(pictures, 1);
        QCOMPARE(overlays, (QList<QMargins>{{10, 0, 0, 72}, {10, 0, 0, 40}, {0, 2, 4, 0}}));
        turns.append(Turn());
    }

    void resolvedVersionsReplaceEarlierOnes()
    {
        int count = 1;
        char name[] = "test";
        char* arguments[] = {name, nullptr};
        const QApplication application(count, arguments);
        SplashWindow splash;
        for (const char* version : {"1", "2"}) {
            QMetaObject::invokeMethod(&splash, "handleVersionResolved",
                                      Q_ARG(QString, QStringLiteral("tool")),
                                      Q_ARG(QString, QString::fromUtf8(version)));
        }
        QCOMPARE(SplashWindowProbe::versions(splash),
                 (QMap<QString, QString>{{QStringLiteral("tool"), QStringLiteral("2")}}));
    }

private:
    static int run()
    {
        char name[] = "rotunda";
        char* arguments[] = {name, nullptr};
        return runApplication(1, arguments);
    }
};

int main(int argc, char** argv)
{
    const QTemporaryDir settings;
    qputenv("XDG_CONFIG_HOME", settings.path().toLocal8Bit());
    StartUpTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "StartUpTest.moc"
