#include "tests/app/walk/StudioWalk.h"

#include "tests/app/walk/StudioFaults.h"

#include <cstdio>

#if defined(__SANITIZE_ADDRESS__)
// The compiler has the function, but not the header that declares it.
extern "C" void __sanitizer_set_death_callback(void (*callback)());
#endif

static constexpr int latestActions = 30;

/// The walk that is under way; a program that ends in the middle of it says where.
static const StudioWalk* current = nullptr;

static const WalkActions& allActions()
{
    static const WalkActions actions = toolActions() + trafficActions() + projectActions() +
                                       exchangeActions() + planActions() + checkActions() +
                                       synthesisActions();
    return actions;
}

StudioWalk::StudioWalk(quint32 seed) : studio(seed), m_seed(seed)
{
    current = this;
#if defined(__SANITIZE_ADDRESS__)
    __sanitizer_set_death_callback(&StudioWalk::printTrail);
#endif
}

StudioWalk::~StudioWalk()
{
    current = nullptr;
}

QString StudioWalk::step()
{
    studio.log.clear();
    ++m_steps;
    const char* name = act();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (name)
        ++m_counts[QString::fromUtf8(name)];
    const QString fault = studio.complaint.isEmpty() ? findFault(studio) : studio.complaint;
    return fault.isEmpty() ? fault : fault + QStringLiteral("; ") + trail();
}

// The name of the action; null when there was nothing to do it with.
const char* StudioWalk::act()
{
    if (studio.pick(20) < 9) {
        note("drawing");
        return m_latest.last() = studio.drawing.step();
    }
    static const int weights = [] {
        int sum = 0;
        for (const WalkAction& action : allActions())
            sum += action.weight;
        return sum;
    }();
    int ticket = studio.pick(weights);
    const WalkAction* chosen = allActions().cbegin();
    while (ticket >= chosen->weight)
        ticket -= (chosen++)->weight;
    note(chosen->name);
    return chosen->act(studio) ? chosen->name : nullptr;
}

void StudioWalk::note(const char* name)
{
    m_latest.append(name);
    if (m_latest.size() > latestActions)
        m_latest.removeFirst();
}

QMap<QString, int> StudioWalk::counts() const
{
    QMap<QString, int> counts = m_counts;
    for (const QString& dialog : studio.dialogs.seen())
        ++counts[QStringLiteral("box: ") + dialog.section(QLatin1Char('['), 0, 0).trimmed()];
    return counts;
}

QStringList StudioWalk::kinds()
{
    QStringList names = EditorWalker::kinds();
    for (const WalkAction& action : allActions())
        names.append(QString::fromUtf8(action.name));
    return names;
}

QString StudioWalk::trail() const
{
    QStringList names;
    for (const char* name : m_latest)
        names.append(QString::fromUtf8(name));
    return QStringLiteral("seed %1, step %2, after: %3")
        .arg(m_seed)
        .arg(m_steps)
        .arg(names.join(QStringLiteral(", ")));
}

void StudioWalk::printTrail()
{
    if (current)
        std::fprintf(stderr, "%s\n", qPrintable(current->trail()));
}
