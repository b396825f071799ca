// Making a multi-picture file (CIPA DC-007) of single pictures.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fiohost/session.h"
#include "host/mpo.h"

namespace fiohost {

enum class BuildKind { stereo, panorama, multiAngle, largeThumbnail };

struct BuildOptions {
  BuildKind kind = BuildKind::stereo;
  // Between two neighbouring viewpoints; only for stereo and multi-angle pictures.
  std::optional<host::MpoRational> baseline;     // metres
  std::optional<host::MpoRational> convergence;  // degrees, signed
  std::optional<host::u32> quality;
  bool replace = false;  // an existing output
};

inline constexpr std::size_t fewestBuilt = 2;
// A primary image names at most two dependent ones.
inline constexpr std::size_t mostWithThumbnails = 3;

// Writes the pictures, 2 to host::mpoMostImages of them in this order, into outputName, which
// appears complete or not at all. Returns its size in bytes. Throws Failure.
host::u64 buildMpo(const Session& session, const std::vector<std::string>& pictures,
                   const std::string& outputName, const BuildOptions& options);

}  // namespace fiohost
