// IPTC datasets that name places (IIM 4.2, chapter 6), taken out of where they lie.
#pragma once

#include <cstdint>
#include <span>

namespace fiohost {

// Takes the datasets of places out of a block of datasets; the others move up and zeros fill the
// end. Answers the bytes of those taken out.
std::uint64_t blankIptcPlaces(std::span<std::uint8_t> datasets);

// The same in every image resource with datasets (8BIM, 1028) that lies in a block.
std::uint64_t blankIptcResources(std::span<std::uint8_t> block);

}  // namespace fiohost
