#include "synthesis/ResolutionSearch.h"

#include "planner/search/PairKey.h"

#include <algorithm>

namespace synthesis
{

using namespace planner;

using Answer = ClauseSolver::Answer;

/// Plans that are tried at most; each costs the second stage and a judgement.
static constexpr int mostTrials = 1000;

ResolutionSearch::ResolutionSearch(const SearchModel& model, SearchBudget& budget)
    : m_model(model),
      m_budget(budget),
      m_ports(model, m_solver, budget),
      m_choices(model.flows().size()),
      m_slots(model.flows().size()),
      m_isLoose(model.flows().size(), false)
{
    for (quint32 flow = 0; flow < model.flows().size() && budget.mayGoOn(); ++flow) {
        m_alone.push_back(m_solver.newVariable());
        addFlow(flow);
    }
    m_ports.forbidSharing();
}

/// A flow whose transmissions stand for themselves would get slots for each of them.
bool ResolutionSearch::mayOverlap(quint32 flow) const
{
    return m_model.repetition().cellsPerSlot() == 1 &&
           m_model.repetition().transmissionsOnRing(*m_model.flows()[flow].flow) == 1;
}

void ResolutionSearch::addFlow(quint32 flow)
{
    const SearchFlow& record = m_model.flows()[flow];
    std::vector<int> any;
    for (quint32 number = 0; number < record.patterns.size(); ++number) {
        const Pattern& pattern = record.patterns[number];
        const auto windows = m_model.windowsOf(record, pattern);
        for (quint32 i = 0; i < pattern.choices(record.ringSlots); ++i) {
            const Choice choice{{number, pattern.first + static_cast<qint32>(i)},
                                m_solver.newVariable()};
            addReserved(flow, pattern, choice);
            if (mayOverlap(flow))
                addUsed(flow, windows, choice);
            m_choices[flow].push_back(choice);
            any.push_back(choice.variable);
        }
    }
    m_solver.addClause(any);
    m_solver.addAtMostOne(any);
    addOrder(flow);
}

/// All cells of the windows, as long as the flow is to overlap no other.
void ResolutionSearch::addReserved(quint32 flow, const Pattern& pattern, const Choice& choice)
{
    const SearchFlow& record = m_model.flows()[flow];
    for (const Reservation& reservation : pattern.reservations) {
        const quint32 first = m_model.cellOf(record, reservation, choice.placement.slot);
        for (quint32 i = 0; i < reservation.length; ++i) {
            const int cell = m_ports.cell(reservation.port, flow, (first + i) % record.ring);
            if (mayOverlap(flow))
                m_solver.addClause({-m_alone[flow], -choice.variable, cell});
            else
                m_solver.addClause({-choice.variable, cell});
        }
    }
}

/// One slot of each window.
void ResolutionSearch::addUsed(quint32 flow, const std::vector<PortWindow>& windows,
                               const Choice& choice)
{
    const auto ring = static_cast<qint64>(m_model.flows()[flow].ring);
    for (const PortWindow& window : windows) {
        std::vector<int> clause{-choice.variable};
        for (qint32 slot = window.window.start; slot <= window.window.end; ++slot) {
            const qint32 at = choice.placement.slot + slot;
            int& variable = m_slots[flow][window.port][at];
            if (variable == 0) {
                variable = m_solver.newVariable();
                const auto cell = static_cast<quint32>((at % ring + ring) % ring);
                m_solver.addClause(
                    {-variable, m_ports.cell(m_model.portNumber(window.port), flow, cell)});
            }
            clause.push_back(variable);
        }
        m_solver.addClause(clause);
    }
}

void ResolutionSearch::addOrder(quint32 flow)
{
    for (const auto& port : m_slots[flow]) {
        std::vector<int> any;
        for (const auto& slot : port.second)
            any.push_back(slot.second);
        m_solver.addAtMostOne(any);
    }
    if (m_slots[flow].empty())
        return;
    for (const VirtualLinkPath& path : m_model.flows()[flow].flow->paths) {
        quint32 before = pairKey(path.talkerNodeID, path.talkerOutport);
        for (const BridgeHop& hop : path.bridges) {
            const quint32 port = pairKey(hop.nodeID, hop.outport);
            keepOrder(m_slots[flow][before], m_slots[flow][port], m_model.longestWait(hop));
            before = port;
        }
    }
}

void ResolutionSearch::keepOrder(const Slots& before, const Slots& after, qint32 longestWait)
{
    for (const auto& first : before) {
        for (const auto& second : after) {
            const qint32 wait = second.first - first.first;
            if (wait < 1 || wait > longestWait)
                m_solver.addClause({-first.second, -second.second});
        }
    }
}

std::vector<int> ResolutionSearch::assumptions() const
{
    std::vector<int> literals;
    for (std::size_t flow = 0; flow < m_alone.size(); ++flow) {
        if (!m_isLoose[flow])
            literals.push_back(m_alone[flow]);
    }
    return literals;
}

/// Lets flows overlap until there is an answer; false when nothing helps.
bool ResolutionSearch::solve(quint64 steps)
{
    while (m_budget.mayGoOn()) {
        const Answer answer = m_solver.solve(m_budget, steps, assumptions());
        if (answer == Answer::Satisfiable)
            return true;
        if (answer == Answer::Unknown)
            return false;
        bool isLoosened = false;
        std::vector<bool> loose = m_isLoose;
        for (std::size_t flow = 0; flow < m_alone.size(); ++flow) {
            if (!m_isLoose[flow] && m_solver.isToBlame(m_alone[flow]))
                isLoosened = loose[flow] = true;
        }
        if (!isLoosened)
            return false;
        m_isLoose = loose;
    }
    return false;
}

const ResolutionSearch::Choice& ResolutionSearch::chosen(quint32 flow) const
{
    return *std::find_if(m_choices[flow].begin(), m_choices[flow].end(),
                         [this](const Choice& choice) { return m_solver.isTrue(choice.variable); });
}

/// Solves, and then takes back what need not overlap, flow by flow.
bool ResolutionSearch::solveWithFewest(quint64 steps)
{
    if (!solve(steps))
        return false;
    for (quint32 flow = 0; flow < m_alone.size(); ++flow) {
        if (!m_isLoose[flow])
            continue;
        m_isLoose[flow] = false;
        const Answer answer = m_solver.solve(m_budget, steps / 16, assumptions());
        m_isLoose[flow] = answer != Answer::Satisfiable;
    }
    return m_solver.solve(m_budget, steps, assumptions()) == Answer::Satisfiable;
}

std::vector<Placement> ResolutionSearch::placements() const
{
    std::vector<Placement> all;
    for (quint32 flow = 0; flow < m_alone.size(); ++flow)
        all.push_back(chosen(flow).placement);
    return all;
}

/// Whether a window of the flow at the port overlaps that of another flow.
bool ResolutionSearch::meetsOn(quint32 port, quint32 flow) const
{
    const SearchFlow& record = m_model.flows()[flow];
    const Placement& placement = chosen(flow).placement;
    Pattern onPort;
    for (const Reservation& reservation : record.patterns[placement.pattern].reservations) {
        if (reservation.port == port)
            onPort.reservations.push_back(reservation);
    }
    std::vector<quint32> present; // itself too
    m_table->findOccupants(record, onPort, placement.slot, present);
    return present.size() > 1;
}

/// The flows that overlap, on the port if it is known, are not to stand in just these places again.
void ResolutionSearch::forbid(const std::optional<quint32>& port)
{
    std::vector<int> clause;
    m_table.emplace(m_model);
    for (quint32 flow = 0; flow < m_alone.size(); ++flow) {
        const Placement& placement = chosen(flow).placement;
        m_table->occupy(flow, m_model.flows()[flow].patterns[placement.pattern], placement.slot, 1);
    }
    for (quint32 flow = 0; flow < m_alone.size(); ++flow) {
        // One that could have its windows for itself has been taken back.
        if (port ? meetsOn(m_model.portNumber(*port), flow) : m_isLoose[flow])
            clause.push_back(-chosen(flow).variable);
    }
    m_solver.addClause(clause);
}

std::vector<Placement> ResolutionSearch::run(quint64 steps, const Trial& trial)
{
    const quint64 end = m_budget.steps() + steps;
    for (int i = 0; i < mostTrials && m_budget.mayGoOn() && m_budget.steps() < end; ++i) {
        if (!solveWithFewest(end - m_budget.steps()))
            return {};
        const std::vector<Placement> found = placements();
        const Verdict verdict = trial(found);
        if (verdict.isFaultless)
            return found;
        forbid(verdict.failedPort);
    }
    return {};
}

} // namespace synthesis
