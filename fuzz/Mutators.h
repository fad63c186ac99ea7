#pragma once

#include <cstddef>
#include <cstdint>

/// \file
/// Custom mutators: they get past what bytes changed at random would fail at. Each changes `size`
/// bytes at `data`, where there is room for `most`, and returns how many there are then.

/// Takes an animation model apart, changes it as such, and damages it now and then. Of what is no
/// model it makes one, or changes bytes.
std::size_t mutateModel(std::uint8_t *data, std::size_t size, std::size_t most, unsigned int seed);

/// Changes bytes; of a PNG picture the checksums are right afterwards, mostly.
std::size_t mutatePng(std::uint8_t *data, std::size_t size, std::size_t most, unsigned int seed);

using Mutator = decltype(mutateModel);

/// Has `mutate` change what follows the first `settings` bytes, and these now and then.
std::size_t mutateBehind(std::size_t settings, Mutator *mutate, std::uint8_t *data,
                         std::size_t size, std::size_t most, unsigned int seed);
