// The IPTC datasets in a Photoshop segment (APP13): image resource 1028 (IIM 4.2, chapter 2).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace fiohost {

using Dataset = std::vector<std::uint8_t>;

// All values of one dataset of record 2, in their order.
struct DatasetEdit {
  std::uint8_t number;
  std::vector<Dataset> values;
};

// How many datasets of record 2 the segment's payload holds; nothing when it has no IPTC resource.
[[nodiscard]] std::optional<std::size_t> countDatasets(std::span<const std::uint8_t> payload);

// The payload with the edited datasets in the place of those it had; everything else stays byte
// for byte. It must have an IPTC resource.
[[nodiscard]] std::vector<std::uint8_t> withDatasets(std::span<const std::uint8_t> payload,
                                                     const std::vector<DatasetEdit>& edits);

}  // namespace fiohost
