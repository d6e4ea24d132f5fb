#pragma once

#include "synthesis/NetworkDocument.h"

#include <tinyxml2.h>

#include <memory>

/// An input document in memory with what is read from it.
struct ParsedNetwork {
    QByteArray bytes;
    std::unique_ptr<tinyxml2::XMLDocument> document;
    synthesis::InputNetwork network;
};

/// Reads a document; one that does not parse ends the test program.
ParsedNetwork parsed(const QByteArray& bytes);

/// Answers whether the verifier finds no fault in a plan for the network, which must outlive it.
std::function<bool(const synthesis::Found&, const QByteArray&)>
judgeFor(const ParsedNetwork& network);

/// Plans the narrowed network with both stages of the engine, by way of the documents.
///
/// Returns what is wrong, or an empty text: a code that is not 0, a resolution although the plan
/// needs none, a fault that the verifier finds under the windows of the narrowed document or under
/// the user's own ones. Works in the current directory.
QString faultOf(const ParsedNetwork& network, const synthesis::Found& plan);
