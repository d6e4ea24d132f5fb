#pragma once

#include "synthesis/SearchModel.h"

#include "tests/synthesis/EngineProof.h"
#include "tests/synthesis/PlantedNetwork.h"

#include <numeric>

/// A planted network as the search sees it, with all of its flows.
struct ModelOfNetwork {
    ModelOfNetwork(const PlantedStyle& style, quint64 seed)
        : network(parsed(documentOf(plantedNetwork(style, seed).draft))),
          repetition(network.network.context),
          places(placesOf(network.network.context)),
          model(network.network.context, repetition, places)
    {
    }

    ParsedNetwork network;
    synthesis::Repetition repetition;
    std::vector<std::size_t> places;
    synthesis::SearchModel model;

private:
    static std::vector<std::size_t> placesOf(const planner::PlanningContext& context)
    {
        std::vector<std::size_t> places(context.flows.size());
        std::iota(places.begin(), places.end(), std::size_t(0));
        return places;
    }
};
