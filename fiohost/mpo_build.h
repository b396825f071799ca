// Making a multi-picture file (CIPA DC-007) of single pictures.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fiohost/mpo_attributes.h"
#include "fiohost/session.h"

namespace fiohost {

enum class BuildKind { stereo, panorama, multiAngle, largeThumbnail };

struct BuildOptions {
  BuildKind kind = BuildKind::stereo;
  std::vector<GivenAttribute> attributes;
  std::vector<std::string> uniqueIds;  // none or one for each image, of 32 hexadecimal digits
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
