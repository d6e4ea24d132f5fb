#pragma once

#include <QString>

#include <map>

/// Counts by name that the shards of a long test leave behind for the test that judges them all.
class Tally
{
public:
    /// What all shards have left in the folder that ROTUNDA_TALLIES names, added up.
    static Tally ofAllShards();

    void add(const QString& name, int count = 1) { m_counts[name] += count; }

    /// 0 for a name that was never counted.
    int of(const QString& name) const;

    /// The counts whose names begin so, by the rest of their names.
    std::map<QString, int> below(const QString& beginning) const;

    /// Writes the file that ROTUNDA_TALLY names; nothing where the test is run by itself.
    void save() const;

private:
    std::map<QString, int> m_counts;
};
