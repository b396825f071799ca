#include "companions/klibjpg/description.h"

namespace klibjpg {
namespace {

using host::u32;

constexpr u32 unknownResolution = 72;
constexpr u32 perInch = 1;
constexpr u32 perCentimetre = 2;

u32 colourSpaceOf(int components) {
  switch (components) {
    case 1:
      return host::codecGrey;
    case 3:
      return host::codecColour;
    case 4:
      return host::codecFourComponents;
    default:
      return host::codecOther;
  }
}

// JFIF knows no other units.
u32 densityUnitOf(const jpeg_decompress_struct& info) {
  if (info.saw_JFIF_marker == FALSE) return perInch;
  return info.density_unit <= perCentimetre ? info.density_unit : 0;
}

u32 samplingOf(const jpeg_decompress_struct& info) {
  if (info.num_components < 3) return host::sample444;
  const jpeg_component_info* const component = info.comp_info;
  const int luma = 2 * component[0].h_samp_factor * component[0].v_samp_factor;
  const int chroma = component[1].h_samp_factor * component[1].v_samp_factor +
                     component[2].h_samp_factor * component[2].v_samp_factor;
  // Halfway between all and half lies 3/4, between half and a quarter 3/8.
  if (4 * chroma > 3 * luma) return host::sample444;
  if (8 * chroma > 3 * luma) return host::sample422;
  return component[1].v_samp_factor >= component[0].v_samp_factor ? host::sample411
                                                                  : host::sample420;
}

}  // namespace

host::ImageHeaderWithExtra describe(const jpeg_decompress_struct& info, u32 width,
                                    u32 height) noexcept {
  host::ImageHeaderWithExtra description = {};
  host::ImageHeader& header = description.header;
  header.size = sizeof(description);
  header.width = width;
  header.height = height;
  header.colourSpace = colourSpaceOf(info.num_components);
  const bool jfif = info.saw_JFIF_marker != FALSE;
  header.densityUnit = densityUnitOf(info);
  header.horizontalResolution = jfif ? info.X_density : unknownResolution;
  header.verticalResolution = jfif ? info.Y_density : unknownResolution;
  header.components = static_cast<u32>(info.num_components);

  host::ExtraInformation& extra = description.extra;
  const bool progressive = info.progressive_mode != FALSE;
  extra.size = sizeof(extra);
  extra.mode = progressive ? host::modeProgressive : host::modeBaseline;
  extra.sample = samplingOf(info);
  extra.jfif = jfif ? 1 : 0;
  extra.progressive = progressive ? 1 : 0;
  return description;
}

}  // namespace klibjpg
