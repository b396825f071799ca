// What the save-options dialog edits, apart from its window: where the values come from, how the
// quality follows typing and sliding, and where the confirmed values go.
#pragma once

#include "host/file_data.h"
#include "platform/global_memory.h"

namespace jpeg {

inline constexpr host::u32 qualityPage = 10;
// Sampling is a choice for 24-bit colour only.
inline constexpr host::i32 sampleNotApplicable = -1;

struct SaveOptionValues {
  host::u32 quality;
  host::u32 mode;
  host::i32 sample;  // host::ChromaSampling, or sampleNotApplicable
  host::u32 jfif;    // 0 or 1
};

// The values that the dialog opens with: the image's own when its record carries a JPEG tail, else
// the settings as last loaded.
[[nodiscard]] SaveOptionValues initialSaveOptions(const platform::LockedGlobal& record) noexcept;

// Confirmed values become the settings and go to the settings file. Without a sampling choice that
// setting stays.
void keepAsSettings(const SaveOptionValues& values) noexcept;

// Confirmed values go into the image's record, which gets a JPEG tail if it has none. The lock is
// given up. False when the record could not grow; it is unchanged then.
[[nodiscard]] bool storeInRecord(HGLOBAL fileData, platform::LockedGlobal& record,
                                 const SaveOptionValues& values) noexcept;

// What the number field's text means.
struct TypedQuality {
  host::u32 quality;
  bool corrected;  // the field shows something else
};
// number: the text's value; valid: whether the text is an unsigned number at all.
[[nodiscard]] TypedQuality typedQuality(host::u32 number, bool valid) noexcept;

// How the slider says that it was moved.
enum class SliderMove { lineLeft, lineRight, pageLeft, pageRight, toPosition, home, end, none };
// quality: the number field's value, from which steps count, since the slider has moved already.
// position: what toPosition carries.
[[nodiscard]] host::u32 slidQuality(host::u32 quality, SliderMove move,
                                    host::u32 position) noexcept;

}  // namespace jpeg
