#pragma once

#include "tests/app/walk/WalkedStudio.h"

/// A random walk through all windows of a studio, one action after the other.
class StudioWalk
{
public:
    explicit StudioWalk(quint32 seed);
    ~StudioWalk();
    StudioWalk(const StudioWalk&) = delete;
    StudioWalk& operator=(const StudioWalk&) = delete;

    /// Does an action. Returns what is wrong after it, with seed and latest actions; else empty.
    QString step();

    /// What was done so often, by name; boxes that were shown have names that begin with "box: ".
    QMap<QString, int> counts() const;

    /// Every name that an action of a walk can have.
    static QStringList kinds();

    WalkedStudio studio;

private:
    const char* act();
    void note(const char* name);
    QString trail() const;
    static void printTrail();

    const quint32 m_seed;
    int m_steps = 0;
    QList<const char*> m_latest;
    QMap<QString, int> m_counts;
};
