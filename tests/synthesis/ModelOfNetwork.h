#pragma once

#include "synthesis/PlacementSearch.h"

#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"

/// A network as the search sees it, with all of its flows.
struct ModelOfNetwork {
    explicit ModelOfNetwork(const NetworkDraft& draft);

    ParsedNetwork network;
    synthesis::Repetition repetition;
    std::vector<std::size_t> places;
    synthesis::SearchModel model;
};

/// A cell of a port that two flows have, cell by cell over all turns of their rings; empty when
/// none has two.
QString sharedCell(const synthesis::SearchModel& model,
                   const std::vector<synthesis::Placement>& placements);
