#pragma once

#include <QtGlobal>

/// The seeds of the random inputs that a test goes through.
///
/// ROTUNDA_SEED names the first one and ROTUNDA_NETWORKS says how many there are: for the shards of
/// a long test, and for whoever wants more or others than an ordinary run takes.
struct SeedRange {
    quint64 first = 1;
    quint64 count = 0;

    /// The range from 1 on with so many seeds, where the environment does not say otherwise.
    static SeedRange fromEnvironment(quint64 preset);

    quint64 end() const { return first + count; }

    /// Data for a test function in blocks: columns "first" and "count".
    ///
    /// A function that takes minutes would be taken for one that hangs.
    void addBlocks(quint64 block) const;
};
