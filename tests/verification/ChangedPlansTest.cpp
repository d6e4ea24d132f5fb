#include "verification/PlanVerifier.h"

#include "tests/planner/twin/RunRecord.h"
#include "tests/support/RandomSource.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/verification/NaiveJudge.h"
#include "tests/verification/PlainNetworks.h"

#include <QLoggingCategory>
#include <QtTest>

#include <tinyxml2.h>

#include <map>

using namespace verification;

/// Sound plans of random networks, changed in one number or transmission, are judged by the library
/// and by a naive second definition.
class ChangedPlansTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void plansAreJudgedAlike();
    void changesAreNoticed_data();
    void changesAreNoticed();
    void everyKindOfNumberWasChanged();

private:
    int m_unsound = 0;
    int m_sound = 0;
    std::map<QByteArray, int> m_changes; ///< by name of the element
};

namespace
{

constexpr quint64 networkCount = 1000;

/// Plans the network in the current directory; the schedule, empty when the rules refuse it.
QByteArray plan(quint64 seed)
{
    RandomNetwork network;
    network.files.push_back({QStringLiteral(u"vek_input.xml"), documentOf(plainNetwork(seed))});
    const RunRecord record = runProduct(network);
    return record.succeeded() ? record.schedule : QByteArray();
}

Verification verify(const QByteArray& schedule)
{
    tinyxml2::XMLDocument input(true, tinyxml2::PRESERVE_WHITESPACE);
    tinyxml2::XMLDocument output(true, tinyxml2::PRESERVE_WHITESPACE);
    input.LoadFile("ResourceXML/vek_input.xml");
    output.Parse(schedule.constData(), static_cast<size_t>(schedule.size()));
    return verifyPlan(readPlan(input, output));
}

/// Places of all numbers in a document: name of the element, first character, length.
struct NumberPlace {
    QByteArray element;
    int begin = 0;
    int length = 0;
};

std::vector<NumberPlace> numbersIn(const QByteArray& document)
{
    std::vector<NumberPlace> places;
    for (int end = document.indexOf("</"); end >= 0; end = document.indexOf("</", end + 2)) {
        int begin = end;
        while (begin > 0 && document.at(begin - 1) != '>')
            --begin;
        const QByteArray element = document.mid(end + 2, document.indexOf('>', end) - end - 2);
        bool isNumber = false;
        document.mid(begin, end - begin).toLongLong(&isNumber);
        if (isNumber)
            places.push_back({element, begin, end - begin});
    }
    return places;
}

qint64 changedNumber(RandomSource& random, qint64 number, qint64 cycleSlots)
{
    switch (random.below(6)) {
    case 0:
        return number + 1;
    case 1:
        return number == 0 ? 1 : number - 1;
    case 2:
        return number + cycleSlots;
    case 3:
        return number + random.between(2, 9);
    case 4:
        return random.below(static_cast<int>(cycleSlots));
    default:
        return random.below(110);
    }
}

QByteArray withNumber(const QByteArray& document, const NumberPlace& place, qint64 number)
{
    return QByteArray(document).replace(place.begin, place.length, QByteArray::number(number));
}

/// Moves all slots of the transmission that the place lies in.
QByteArray withMovedTransmission(const QByteArray& document, const NumberPlace& place,
                                 int slotCount)
{
    const int begin = document.lastIndexOf("<Instance>", place.begin);
    if (begin < 0)
        return document;
    QByteArray instance = document.mid(begin, document.indexOf("</Instance>", begin) - begin);
    const int length = instance.size();
    const std::vector<NumberPlace> places = numbersIn(instance);
    for (auto number = places.rbegin(); number != places.rend(); ++number) {
        if (number->element.endsWith("slotID"))
            instance =
                withNumber(instance, *number,
                           instance.mid(number->begin, number->length).toLongLong() + slotCount);
    }
    return QByteArray(document).replace(begin, length, instance);
}

QByteArray changedPlan(RandomSource& random, const QByteArray& schedule, const NumberPlace& place)
{
    if (random.chance(30))
        return withMovedTransmission(schedule, place, random.between(-3, 3));
    const qint64 longestCycle = 16000 / 200;
    const qint64 number = schedule.mid(place.begin, place.length).toLongLong();
    return withNumber(schedule, place, changedNumber(random, number, longestCycle));
}

QString linesOf(const Verification& verification)
{
    QStringList lines;
    for (const Finding& finding : verification.findings)
        lines.append(describe(finding));
    return lines.join(QLatin1Char('\n'));
}

} // namespace

// Nobody reads the log here, and composing it takes most of the time.
void ChangedPlansTest::initTestCase()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
}

// What the rules give is not always sound, not even on networks without anything odd.
void ChangedPlansTest::plansAreJudgedAlike()
{
    const TemporaryFolder folder;
    int sound = 0;
    int faulty = 0;
    for (quint64 seed = 1; seed <= networkCount; ++seed) {
        const QByteArray schedule = plan(seed);
        if (schedule.isEmpty())
            continue;
        const QString unsound = unsoundness(schedule);
        const Verification verification = verify(schedule);
        // The naive definition wants each receive slot to be the one in which the frame comes.
        const bool onlyReceiveSlots = unsound == QStringLiteral(u"receive slot") ||
                                      unsound == QStringLiteral(u"listener slot");
        if (!unsound.isEmpty() && !onlyReceiveSlots)
            QVERIFY2(!verification.sound(), qPrintable(QString::number(seed) + unsound));
        if (unsound.isEmpty())
            QVERIFY2(verification.sound(),
                     qPrintable(QString::number(seed) + linesOf(verification)));
        sound += verification.sound() ? 1 : 0;
        faulty += verification.sound() ? 0 : 1;
    }
    qInfo("sound plans %d, plans with a fault %d", sound, faulty);
    QVERIFY(sound > 800);
    QVERIFY(faulty > 10);
}

void ChangedPlansTest::changesAreNoticed_data()
{
    QTest::addColumn<quint64>("first");
    for (quint64 first = 1; first <= networkCount; first += 200)
        QTest::newRow(qPrintable(QStringLiteral(u"from seed %1").arg(first))) << first;
}

void ChangedPlansTest::changesAreNoticed()
{
    QFETCH(quint64, first);
    const TemporaryFolder folder;
    for (quint64 seed = first; seed < first + 200; ++seed) {
        const QByteArray schedule = plan(seed);
        if (schedule.isEmpty() || !verify(schedule).findings.empty())
            continue;
        RandomSource random(seed);
        const std::vector<NumberPlace> places = numbersIn(schedule);
        for (int change = 0; change < 12; ++change) {
            const NumberPlace& place = random.pick(places);
            const QByteArray changed = changedPlan(random, schedule, place);
            if (changed == schedule)
                continue;
            ++m_changes[place.element];
            const QString unsound = unsoundness(changed);
            const Verification verification = verify(changed);
            const QString what =
                QStringLiteral(u"seed %1, %2 at %3, naively: %4, findings: %5")
                    .arg(QString::number(seed), QString::fromUtf8(place.element),
                         QString::number(place.begin), unsound, linesOf(verification));
            QVERIFY2(unsound.isEmpty() ? verification.sound() : !verification.findings.empty(),
                     qPrintable(what));
            m_unsound += unsound.isEmpty() ? 0 : 1;
            m_sound += unsound.isEmpty() ? 1 : 0;
        }
    }
}

void ChangedPlansTest::everyKindOfNumberWasChanged()
{
    qInfo("changes that made a plan unsound: %d, that did not: %d", m_unsound, m_sound);
    for (const char* element : {"schedCycle", "slotLen", "flowID", "seq", "nodeID", "outport",
                                "inport", "txslotID", "rxslotID"})
        QVERIFY2(m_changes[element] > 50, element);
    QVERIFY(m_unsound > 5000);
    QVERIFY(m_sound > 500);
}

QTEST_GUILESS_MAIN(ChangedPlansTest)
#include "ChangedPlansTest.moc"
