#pragma once

#include "synthesis/SearchModel.h"

namespace synthesis
{

/// Who takes up which cells of which port.
///
/// Each port has a table for each ring of the flows that pass it, in which a cell holds the weights
/// of all that meet it when the rings turn. So a flow finds what is in its way by looking at the
/// cells of its own ring, however the others repeat.
class PortTable
{
public:
    /// Refers to the model. Patterns may be added to its flows later, on the same ports.
    explicit PortTable(const SearchModel& model);

    /// Adds to costs, for each choice of the pattern from its first slot on, the weight in its way.
    ///
    /// A flow in the way of several cells counts as often. Returns the cells that were looked at.
    quint64 addCosts(const SearchFlow& flow, const Pattern& pattern,
                     std::vector<quint64>& costs) const;

    /// Lets the flow with this number in the model take up the cells, which may be in use.
    void occupy(quint32 flow, const Pattern& pattern, qint32 slot, quint32 weight);
    /// Takes back what occupy() was called with; a flow stands in one place at a time.
    void release(quint32 flow, const Pattern& pattern, quint32 weight);

    /// Appends the flows that are in the way, each once, in the order in which they are met.
    void findOccupants(const SearchFlow& flow, const Pattern& pattern, qint32 slot,
                       std::vector<quint32>& occupants) const;

private:
    struct Table {
        quint32 ring;      ///< cells
        std::size_t first; ///< cell of m_cells
    };
    struct Occupant {
        quint32 flow;
        quint32 ring;
        quint32 start;
        quint32 length;
    };
    struct Port {
        std::vector<Table> tables; ///< in order of the rings' first use
        std::vector<Occupant> occupants;
    };

    const Table& tableOf(quint32 port, quint32 ring) const;
    void add(const Port& port, const Occupant& occupant, quint32 weight);

    const SearchModel& m_model;
    std::vector<Port> m_ports;
    std::vector<quint32> m_cells; ///< weights; those of one cell do not pass 32 bits
};

} // namespace synthesis
