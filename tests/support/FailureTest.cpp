#include "tests/support/Failure.h"

#include "tests/support/ProgramRun.h"
#include "tests/support/Text.h"

#include <QtTest>

/// The test that FailureTest runs: a helper of its first function cannot do its work.
class BrokenHelperTest : public QObject
{
    Q_OBJECT

private slots:
    void helperFails() { failTest("the helper says so"); }
    void othersStillRun() {}
};

class FailureTest : public QObject
{
    Q_OBJECT

private slots:
    void onlyTheTestFunctionOfAHelperFails()
    {
        const ProgramRun run =
            runProgram(QCoreApplication::applicationFilePath(), {u("--broken-helper")});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.output.contains("FAIL!  : BrokenHelperTest::helperFails() the helper says so"),
                 run.output.constData());
        QVERIFY2(run.output.contains("FailureTest.cpp(14)]"), run.output.constData());
        QVERIFY2(run.output.contains("PASS   : BrokenHelperTest::othersStillRun()"),
                 run.output.constData());
    }

    void programWithoutTestFunctionsEndsWithTheMessage()
    {
        const ProgramRun run =
            runProgram(QCoreApplication::applicationFilePath(), {u("--no-test")});
        QCOMPARE(run.code, 1);
        QCOMPARE(run.errors.size(), 1);
        QVERIFY2(run.errors.first().endsWith(u(": no test runs")), qPrintable(run.errors.first()));
    }
};

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QByteArray mode = argc > 1 ? argv[1] : "";
    if (mode == "--no-test")
        failTest("no test runs");
    if (mode == "--broken-helper") {
        BrokenHelperTest broken;
        return QTest::qExec(&broken, QStringList(u("FailureTest")));
    }
    FailureTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "FailureTest.moc"
