#include "synthesis/PortTable.h"

#include "tests/support/RandomSource.h"
#include "tests/support/Spoken.h"
#include "tests/synthesis/ModelOfNetwork.h"

#include <QtTest>

#include <numeric>

// The table of what is in a flow's way, against one that turns all rings cell by cell.

using namespace synthesis;

namespace
{

/// A flow that takes up a port.
struct Guest {
    quint32 flow;
    const Pattern* pattern;
    qint32 slot;
    quint32 weight;
};

class NaiveTable
{
public:
    explicit NaiveTable(const SearchModel& model) : m_model(model) {}

    std::vector<qint64> costs(const SearchFlow& flow, const Pattern& pattern) const
    {
        std::vector<qint64> costs(pattern.choices(flow.ringSlots), 0);
        for (std::size_t choice = 0; choice < costs.size(); ++choice) {
            const qint32 slot = pattern.first + static_cast<qint32>(choice);
            for (const Reservation& own : pattern.reservations)
                costs[choice] += costOf(flow, own, slot);
        }
        return costs;
    }

    std::vector<int> occupants(const SearchFlow& flow, const Pattern& pattern, qint32 slot) const
    {
        std::vector<int> found;
        for (const Reservation& own : pattern.reservations) {
            for (const Guest& guest : guests) {
                const int number = static_cast<int>(guest.flow);
                if (std::find(found.begin(), found.end(), number) == found.end() &&
                    weightInWay(flow, own, slot, guest) > 0)
                    found.push_back(number);
            }
        }
        return found;
    }

    std::vector<Guest> guests;

private:
    qint64 costOf(const SearchFlow& flow, const Reservation& own, qint32 slot) const
    {
        qint64 cost = 0;
        for (const Guest& guest : guests)
            cost += weightInWay(flow, own, slot, guest);
        return cost;
    }

    /// The weight of a guest for each cell of ours that it meets, and each of its windows.
    qint64 weightInWay(const SearchFlow& flow, const Reservation& own, qint32 slot,
                       const Guest& guest) const
    {
        const SearchFlow& other = m_model.flows()[guest.flow];
        const qint64 common = std::gcd(flow.ring, other.ring);
        qint64 weight = 0;
        for (const Reservation& theirs : guest.pattern->reservations) {
            if (theirs.port != own.port)
                continue;
            for (quint32 i = 0; i < own.length; ++i) {
                if (meets(cellAt(own, slot, i), cellAt(theirs, guest.slot, 0), theirs.length,
                          common))
                    weight += guest.weight;
            }
        }
        return weight;
    }

    qint64 cellAt(const Reservation& reservation, qint32 slot, quint32 i) const
    {
        return qint64(slot) * m_model.repetition().cellsPerSlot() + reservation.start + i;
    }

    static bool meets(qint64 cell, qint64 start, quint32 length, qint64 common)
    {
        for (quint32 i = 0; i < length; ++i) {
            if ((cell - start - i) % common == 0)
                return true;
        }
        return false;
    }

    const SearchModel& m_model;
};

PlantedStyle styleOf(RandomSource& random)
{
    static const std::vector<std::vector<quint32>> pools = {
        {2000, 3000, 5000}, {1000}, {1200, 1800}, {500, 750}, {700, 1400}, {600, 4000}};
    PlantedStyle style;
    style.periods = random.pick(pools);
    style.switches = random.between(1, 4);
    style.hosts = random.between(2, 5);
    style.flows = random.between(2, 12);
    style.windows = random.pick({PlantedStyle::Wide, PlantedStyle::Mixed});
    style.multicastPercent = 30;
    style.waitPercent = 60;
    return style;
}

/// What happens to a table, at random.
class Visits
{
public:
    Visits(quint64 seed, ModelOfNetwork& network)
        : m_random(seed),
          m_model(network.model),
          m_table(m_model),
          m_naive(m_model)
    {
        for (std::size_t flow = 0; flow < m_model.flows().size(); ++flow)
            m_model.addWaitingPatterns(flow);
    }

    void change()
    {
        const Guest guest = anyGuest();
        if (!guest.pattern)
            return;
        if (m_random.chance(70) && !isPresent(guest.flow)) {
            m_table.occupy(guest.flow, *guest.pattern, guest.slot, guest.weight);
            m_naive.guests.push_back(guest);
        } else if (!m_naive.guests.empty()) {
            const auto gone = m_naive.guests.begin() + m_random.below(int(m_naive.guests.size()));
            m_table.release(gone->flow, *gone->pattern, gone->weight);
            m_naive.guests.erase(gone);
        }
    }

    void compare()
    {
        const Guest guest = anyGuest();
        if (!guest.pattern)
            return;
        const SearchFlow& flow = m_model.flows()[guest.flow];
        std::vector<quint64> costs(guest.pattern->choices(flow.ringSlots), 0);
        const quint64 looks = m_table.addCosts(flow, *guest.pattern, costs);
        quint64 cells = 0;
        for (const Reservation& reservation : guest.pattern->reservations)
            cells += reservation.length;
        QCOMPARE(looks, cells * costs.size());
        QCOMPARE((std::vector<qint64>(costs.begin(), costs.end())),
                 m_naive.costs(flow, *guest.pattern));
        std::vector<quint32> occupants;
        m_table.findOccupants(flow, *guest.pattern, guest.slot, occupants);
        QCOMPARE((std::vector<int>(occupants.begin(), occupants.end())),
                 m_naive.occupants(flow, *guest.pattern, guest.slot));
    }

private:
    bool isPresent(quint32 flow) const
    {
        return std::any_of(m_naive.guests.begin(), m_naive.guests.end(),
                           [flow](const Guest& guest) { return guest.flow == flow; });
    }

    /// A choice of a flow; without a pattern where it has none.
    Guest anyGuest()
    {
        Guest guest{static_cast<quint32>(m_random.below(int(m_model.flows().size()))), nullptr, 0,
                    static_cast<quint32>(m_random.between(1, 30000))};
        const SearchFlow& flow = m_model.flows()[guest.flow];
        if (flow.patterns.empty())
            return guest;
        guest.pattern = &m_random.pick(flow.patterns);
        const int choices = static_cast<int>(guest.pattern->choices(flow.ringSlots));
        guest.slot = guest.pattern->first + m_random.below(std::max(1, choices));
        return guest;
    }

    RandomSource m_random;
    SearchModel& m_model;
    PortTable m_table;
    NaiveTable m_naive;
};

} // namespace

class PortTableTest : public QObject
{
    Q_OBJECT

private slots:
    void whatIsInTheWayIsWhatMeetsWhenTheRingsTurn()
    {
        for (quint64 seed = 1; seed <= 60; ++seed) {
            RandomSource random(seed);
            ModelOfNetwork network(plantedNetwork(styleOf(random), seed).draft);
            if (network.places.empty())
                continue;
            Visits visits(seed, network);
            for (int i = 0; i < 30; ++i) {
                visits.change();
                visits.compare();
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }
};

QTEST_GUILESS_MAIN(PortTableTest)
#include "PortTableTest.moc"
