#include "tests/support/ProgramRun.h"

#include <QtTest>

static ProgramRun verify(const char* aCase, const QStringList& options = {})
{
    const QString folder = QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases/") +
                           QString::fromLatin1(aCase);
    return runProgram(QStringLiteral(ROTUNDA_VERIFY_PLAN),
                      options + QStringList{folder + QStringLiteral("/vek_input.xml"),
                                            folder + QStringLiteral("/vek_output.xml")});
}

static QList<QByteArray> linesOf(const QByteArray& output)
{
    QList<QByteArray> lines = output.split('\n');
    lines.removeLast();
    return lines;
}

// Findings as a program tells them to scripts.
class VerifyPlanTest : public QObject
{
    Q_OBJECT

private slots:
    void soundPlanHasNoLineAndEndsWithZero()
    {
        const ProgramRun run = verify("sound-plan");
        QCOMPARE(run.code, 0);
        QCOMPARE(run.output, QByteArray());
        QVERIFY(run.errors.last().endsWith(QStringLiteral(", findings: 0, faults among them: 0")));
    }

    void findingsAreTextALine()
    {
        const ProgramRun run = verify("slot-shared-on-a-port");
        QCOMPARE(run.code, 1);
        QCOMPARE(
            linesOf(run.output),
            (QList<QByteArray>{
                "fault, shared slot, node 1, port 1, slot 0, flow 1-0, 2-0, 2 instead of 1",
                "fault, shared slot, node 11, port 2, slot 1, flow 1-0, 2-0, 2 instead of 1",
                "fault, shared slot, node 12, port 2, slot 2, flow 1-0, 2-0, 2 instead of 1"}));
    }

    void findingsAreCsvWithAHead()
    {
        const ProgramRun run = verify("slot-shared-on-a-port", {QStringLiteral("--csv")});
        QCOMPARE(run.code, 1);
        QCOMPARE(
            linesOf(run.output),
            (QList<QByteArray>{"severity,kind,node,port,slot,transmissions,found,low,high,detail",
                               "fault,shared slot,1,1,0,1-0 2-0,2,1,1,\"\"",
                               "fault,shared slot,11,2,1,1-0 2-0,2,1,1,\"\"",
                               "fault,shared slot,12,2,2,1-0 2-0,2,1,1,\"\""}));
    }

    void csvQuotesWhatADocumentSays()
    {
        const ProgramRun run = verify("input-document-without-topology", {QStringLiteral("--csv")});
        QCOMPARE(run.code, 1);
        QVERIFY2(run.output.contains("\"\"topology\"\""), run.output.constData());
    }

    void remarkIsAFindingToo()
    {
        const ProgramRun run = verify("frame-longer-than-a-slot");
        QCOMPARE(run.code, 1);
        QVERIFY(run.output.startsWith("remark, frame longer than a slot, flow 1"));
    }

    void wrongUseAndMissingFilesEndWithTwo()
    {
        QCOMPARE(verify("output-document-missing").code, 2);
        QCOMPARE(runProgram(QStringLiteral(ROTUNDA_VERIFY_PLAN), {}).code, 2);
    }
};

QTEST_GUILESS_MAIN(VerifyPlanTest)
#include "VerifyPlanTest.moc"
