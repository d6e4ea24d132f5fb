#include "tests/support/Documents.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Text.h"

#include <QProcess>
#include <QtTest>

#include <unistd.h>

#include <cerrno>
#include <csignal>

// Closing the main window, with each form open and at each moment of a run, ends the process.

/// A process and all that it starts, known by their number.
class ProcessGroup : public QProcess
{
protected:
    void setupChildProcess() override { setsid(); }
};

class ClosingTest : public QObject
{
    Q_OBJECT

private slots:
    void endsTheProcess_data()
    {
        QTest::addColumn<QByteArray>("open");
        QTest::addColumn<bool>("isPlanned");
        const QList<QPair<const char*, QByteArray>> forms{
            {"nothing", ""},
            {"node", "EditItemWindow"},
            {"link", "EditLineWindow"},
            {"virtual-link", "VLineEditorForm"},
            {"path", "AddVLineForm"},
            {"path-node", "VLineNodeSelectForm"},
            {"path-list", "ShowVLineInfoForm"},
            {"flow", "FlowEditorForm"},
            {"listener", "AddDstNodeForm"},
            {"run", "FlowScheduleForm"},
            {"check", "PlanCheckForm"},
            {"search", "SynthesisForm"},
            {"import", "ImportVekForm"},
            {"export", "OutportVekForm"},
            {"open-project", "QFileDialog"},
            {"save-project", "QFileDialog"},
        };
        for (const auto& [place, form] : forms)
            QTest::newRow(place) << form << false;
        for (const char* moment : {"text-0", "text-1", "text-2", "text-3"})
            QTest::newRow(moment) << QByteArray() << true;
        QTest::newRow("box") << QByteArray("QMessageBox") << true;
    }

    void endsTheProcess()
    {
        QFETCH(QByteArray, open);
        QFETCH(bool, isPlanned);
        constexpr int patience_ms = 60000;
        const TemporaryFolder folder;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u("XDG_CONFIG_HOME"), folder.path(u("settings")));
        ProcessGroup process;
        process.setProcessEnvironment(environment);
        process.start(u(ROTUNDA_CLOSE_STUDIO), {u(QTest::currentDataTag())});
        QVERIFY(process.waitForStarted());
        const auto group = static_cast<pid_t>(process.processId());
        QVERIFY2(process.waitForFinished(patience_ms), "it goes on");
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0,
                 process.readAllStandardError().constData());
        QVERIFY(process.readAllStandardOutput().contains(open));
        QVERIFY(kill(-group, 0) != 0 && errno == ESRCH); // it has left nobody behind
        QVERIFY(readFile(folder.path(u("settings/Corvane/Rotunda.conf"))).contains("app_size"));
        QCOMPARE(readFile(u("OutputXML/vek_output.xml")).endsWith("</vek_output>\n"), isPlanned);
    }
};

QTEST_GUILESS_MAIN(ClosingTest)
#include "ClosingTest.moc"
