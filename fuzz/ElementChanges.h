#pragma once

#include <cstddef>
#include <cstdint>

// Changes that keep a document well-formed, so that mutated inputs reach what is behind the XML
// library. LLVMFuzzerCustomMutator() is their entry: the fuzzer calls it in place of its own
// mutations, and it calls those as one way among others.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

/// Changes the input in place and returns its new size, which is at most maxSize.
///
/// The same for equal arguments, as far as LLVMFuzzerMutate() is.
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed);
