// The save options that outlive the process, in section "KF_IJPG" of the host's settings file.
#pragma once

#include "host/types.h"

namespace frame {

struct SaveOptions {
  host::u32 mode;     // 0 baseline, 1 progressive
  host::u32 sample;   // host::ChromaSampling
  host::u32 quality;  // 0-100 in the dialog; stored as read
  host::u32 jfif;     // nonzero: a JFIF header is written
};

inline constexpr SaveOptions defaultSaveOptions{0, 1, 85, 1};
inline constexpr host::u32 sampleChoices = 4;

// The options as last loaded or changed, by whatever thread: they are all that threads share.
[[nodiscard]] SaveOptions saveOptions() noexcept;
void setSaveOptions(const SaveOptions& options) noexcept;

// Reads all four from the settings file; a missing file or key gives the default.
void loadSaveOptions() noexcept;

// Writes all four to the settings file. A file that cannot be written is ignored.
void storeSaveOptions() noexcept;

// A sampling choice that the codec takes: anything past the last one becomes 4:2:2.
[[nodiscard]] constexpr host::u32 servedSample(host::u32 sample) noexcept {
  return sample < sampleChoices ? sample : defaultSaveOptions.sample;
}

}  // namespace frame
