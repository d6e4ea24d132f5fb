#include "verification/PlanFigures.h"
#include "verification/PlanVerifier.h"

#include "tests/support/Documents.h"
#include "tests/support/PeakMemory.h"
#include "tests/support/TemporaryFolder.h"

#include <QtTest>

// Documents in which one thing is endless are judged in seconds, within a stated multiple of the
// file.

using namespace verification;

namespace
{

#if defined(__SANITIZE_ADDRESS__) // looks at each character
constexpr int endless = 20000000;
constexpr int siblings = 500000;
#else
constexpr int endless = 100000000;
constexpr int siblings = 2000000;
#endif

QByteArray document(const char* name)
{
    return readFile(QStringLiteral(ROTUNDA_SOURCE_FOLDER "/tests/verification/cases/sound-plan/") +
                    QString::fromLatin1(name));
}

/// Puts units behind the first tag; what stood there follows.
void writeEndless(const char* name, const QByteArray& tag, const QByteArray& unit, int count)
{
    const QByteArray whole = document(name);
    const int place = whole.indexOf(tag) + tag.size();
    writeRepeated(QString::fromLatin1(name), whole.left(place), unit, count, whole.mid(place));
}

/// 0 for a sound plan, else 1.
int judge()
{
    const PlanRecords plan =
        readPlan({QStringLiteral("vek_input.xml")}, {QStringLiteral("vek_output.xml")});
    figuresOf(plan);
    return verifyPlan(plan).sound() ? 0 : 1;
}

} // namespace

class LargePlansTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_folder = std::make_unique<TemporaryFolder>();
        for (const char* name : {"vek_input.xml", "vek_output.xml"})
            writeFile(QString::fromLatin1(name), document(name));
    }
    void cleanup() { m_folder.reset(); }

    void endlessTextIsJudged_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("tag");
        QTest::addColumn<QByteArray>("unit");
        QTest::addColumn<int>("result");
        const QByteArray input("vek_input.xml");
        const QByteArray output("vek_output.xml");
        QTest::newRow("period") << input << QByteArray("<period>") << QByteArray("1") << 1;
        QTest::newRow("window") << input << QByteArray("<txwin>") << QByteArray("[") << 1;
        QTest::newRow("name") << input << QByteArray("<hostname>") << QByteArray("A") << 1;
        QTest::newRow("cycle") << output << QByteArray("<schedCycle>") << QByteArray("1") << 1;
        QTest::newRow("slot") << output << QByteArray("<txslotID>") << QByteArray("0") << 1;
    }

    void endlessTextIsJudged()
    {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, tag);
        QFETCH(QByteArray, unit);
        writeEndless(name.constData(), tag, unit, endless);
        const Measured run = measured(&judge);
        QTEST(run.result, "result");
        QVERIFY(staysWithin(run, 9, QString::fromLatin1(name)));
    }

    void endlessSiblingsAreJudged()
    {
        writeEndless("vek_input.xml", "<topology>", "<a/>", siblings);
        const Measured input = measured(&judge);
        QCOMPARE(input.result, 0);
        QVERIFY(staysWithin(input, 40, QStringLiteral("vek_input.xml")));

        writeFile(QStringLiteral("vek_input.xml"), document("vek_input.xml"));
        writeEndless("vek_output.xml", "</Instance>", "<a/>", siblings);
        const Measured output = measured(&judge);
        QCOMPARE(output.result, 1);
        QVERIFY(staysWithin(output, 400, QStringLiteral("vek_output.xml")));
    }

private:
    std::unique_ptr<TemporaryFolder> m_folder;
};

QTEST_GUILESS_MAIN(LargePlansTest)
#include "LargePlansTest.moc"
