#include "tests/support/SeedRange.h"

#include <QtTest>

static quint64 environmentNumber(const char* name, quint64 preset)
{
    bool ok = false;
    const quint64 value = qEnvironmentVariable(name).toULongLong(&ok);
    return ok ? value : preset;
}

SeedRange SeedRange::fromEnvironment(quint64 preset)
{
    return {environmentNumber("ROTUNDA_SEED", 1), environmentNumber("ROTUNDA_NETWORKS", preset)};
}

void SeedRange::addBlocks(quint64 block) const
{
    QTest::addColumn<quint64>("first");
    QTest::addColumn<quint64>("count");
    for (quint64 seed = first; seed < end(); seed += block)
        QTest::newRow(qPrintable(QStringLiteral(u"from seed %1").arg(seed)))
            << seed << qMin(block, end() - seed);
}
