#include "tests/support/Tally.h"

#include <QtTest>

/// Judges what all shards of the search for planted plans have found together.
class PlantedShareTest : public QObject
{
    Q_OBJECT

private slots:
    void nearlyAllAreFound()
    {
        const Tally tally = Tally::ofAllShards();
        for (const auto& [name, count] : tally.below(QString()))
            qInfo("%7d  %s", count, qPrintable(name));
        const int networks = tally.of(QStringLiteral(u"networks"));
        QVERIFY2(networks >= 2000, "shards are missing");
        QVERIFY(tally.of(QStringLiteral(u"found")) * 100 >= networks * 90);
        QVERIFY(tally.of(QStringLiteral(u"with waiting")) > 0);
    }
};

QTEST_GUILESS_MAIN(PlantedShareTest)
#include "PlantedShareTest.moc"
