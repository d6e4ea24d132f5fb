#include "synthesis/PortTable.h"

#include <algorithm>
#include <numeric>

namespace synthesis
{

PortTable::PortTable(const SearchModel& model) : m_model(model), m_ports(model.portCount())
{
    std::size_t cells = 0;
    for (const SearchFlow& flow : model.flows()) {
        for (const Pattern& pattern : flow.patterns) {
            for (const Reservation& reservation : pattern.reservations) {
                std::vector<Table>& tables = m_ports[reservation.port].tables;
                const bool isKnown =
                    std::any_of(tables.begin(), tables.end(),
                                [&flow](const Table& table) { return table.ring == flow.ring; });
                if (isKnown)
                    continue;
                tables.push_back({flow.ring, cells});
                cells += flow.ring;
            }
        }
    }
    m_cells.resize(cells);
}

const PortTable::Table& PortTable::tableOf(quint32 port, quint32 ring) const
{
    const std::vector<Table>& tables = m_ports[port].tables;
    return *std::find_if(tables.begin(), tables.end(),
                         [ring](const Table& table) { return table.ring == ring; });
}

quint64 PortTable::addCosts(const SearchFlow& flow, const Pattern& pattern,
                            std::vector<quint64>& costs) const
{
    const quint32 choices = pattern.choices(flow.ringSlots);
    const quint32 step = m_model.repetition().cellsPerSlot() % flow.ring;
    quint64 looks = 0;
    for (const Reservation& reservation : pattern.reservations) {
        const quint32* cells = &m_cells[tableOf(reservation.port, flow.ring).first];
        quint32 cell = m_model.cellOf(flow, reservation, pattern.first);
        for (quint32 choice = 0; choice < choices; ++choice) {
            quint32 at = cell;
            for (quint32 i = 0; i < reservation.length; ++i) {
                costs[choice] += cells[at];
                at = at + 1 == flow.ring ? 0 : at + 1;
            }
            cell += step;
            cell = cell >= flow.ring ? cell - flow.ring : cell;
        }
        looks += quint64(choices) * reservation.length;
    }
    return looks;
}

/// Weights are added modulo 2^32, so that a weight is taken back by adding its negative.
void PortTable::add(const Port& port, const Occupant& occupant, quint32 weight)
{
    for (const Table& table : port.tables) {
        const quint32 common = std::gcd(table.ring, occupant.ring);
        const quint32 length = std::min(occupant.length, common);
        quint32* cells = &m_cells[table.first];
        for (quint32 turn = 0; turn < table.ring; turn += common) {
            quint32 at = turn + occupant.start % common;
            for (quint32 i = 0; i < length; ++i) {
                cells[at >= table.ring ? at - table.ring : at] += weight;
                ++at;
            }
        }
    }
}

void PortTable::occupy(quint32 flow, const Pattern& pattern, qint32 slot, quint32 weight)
{
    const SearchFlow& record = m_model.flows()[flow];
    for (const Reservation& reservation : pattern.reservations) {
        Port& port = m_ports[reservation.port];
        port.occupants.push_back(
            {flow, record.ring, m_model.cellOf(record, reservation, slot), reservation.length});
        add(port, port.occupants.back(), weight);
    }
}

void PortTable::release(quint32 flow, const Pattern& pattern, quint32 weight)
{
    for (const Reservation& reservation : pattern.reservations) {
        Port& port = m_ports[reservation.port];
        const auto found =
            std::find_if(port.occupants.begin(), port.occupants.end(),
                         [flow](const Occupant& occupant) { return occupant.flow == flow; });
        add(port, *found, 0U - weight);
        port.occupants.erase(found);
    }
}

/// Whether two ranges of cells meet when their rings turn.
static bool meet(quint32 start, quint32 length, quint32 otherStart, quint32 otherLength,
                 quint32 common)
{
    const quint32 behind = (start % common + common - otherStart % common) % common;
    const quint32 ahead = common - behind; // with nothing behind, the other one has the cell
    return behind < otherLength || ahead < length;
}

void PortTable::findOccupants(const SearchFlow& flow, const Pattern& pattern, qint32 slot,
                              std::vector<quint32>& occupants) const
{
    for (const Reservation& reservation : pattern.reservations) {
        const quint32 start = m_model.cellOf(flow, reservation, slot);
        for (const Occupant& occupant : m_ports[reservation.port].occupants) {
            if (!meet(start, reservation.length, occupant.start, occupant.length,
                      std::gcd(flow.ring, occupant.ring)))
                continue;
            if (std::find(occupants.begin(), occupants.end(), occupant.flow) == occupants.end())
                occupants.push_back(occupant.flow);
        }
    }
}

} // namespace synthesis
