#include "exif/format_rules.h"

#include <array>
#include <cctype>

#include "exif/directory_entry.h"
#include "exif/number_scan.h"
#include "exif/value_text.h"

namespace exif {
namespace {

using host::i32;
using host::i64;
using host::PropertyField;
using host::u16;
using host::u32;

// Value names of the resource library.
constexpr u32 unknownValue = 2331;
constexpr u32 bitsPerPixelUnit = 2332;
constexpr u32 meteringModes = 2333;
constexpr u32 otherMeteringMode = 2340;
constexpr u32 flashStates = 2341;
constexpr u32 lightSources = 2345;
constexpr u32 apexUnit = 2356;
constexpr u32 unknownDate = 2357;
constexpr u32 exposurePrograms = 2358;
constexpr u32 sensingMethods = 2367;
constexpr u32 otherLightSource = 2368;
constexpr u32 uncalibratedColour = 2375;
constexpr u32 standardColour = 2376;
constexpr u32 digitalCamera = 2377;
constexpr u32 directPhotograph = 2378;
constexpr u32 centimetre = 2381;
constexpr u32 inch = 2382;

// What a rule works on; it writes nothing where it has nothing to say.
struct Value {
  HMODULE resources;
  const PropertyField& field;
  const char* raw;
  DisplayText& shown;
};

using ValueName = std::array<char, 48>;

ValueName loadName(HMODULE resources, i64 id) noexcept {
  ValueName name = {};
  LoadStringA(resources, static_cast<UINT>(id), name.data(), static_cast<int>(name.size()));
  return name;
}

void showName(const Value& value, i64 id) noexcept {
  value.shown.append(loadName(value.resources, id).data());
}

std::optional<i32> numberOf(const Value& value) noexcept { return NumberScan(value.raw).decimal(); }

// Numbers with one character between them, up to the first that is missing.
template <std::size_t most>
struct Numbers {
  explicit Numbers(const char* text) noexcept {
    NumberScan scan(text);
    for (; count < most; ++count) {
      if (count != 0) scan.skipCharacter();
      const std::optional<i32> number = scan.decimal();
      if (!number) return;
      values[count] = *number;
    }
  }
  std::array<i32, most> values = {};
  std::size_t count = 0;
};

struct Fraction {
  explicit Fraction(const Value& value) noexcept
      : numerator(Numbers<2>(value.raw).values[0]), denominator(Numbers<2>(value.raw).values[1]) {}
  i32 numerator;
  i32 denominator;  // 0 when there is none
};

// In single precision, as it is compared; a denominator of 0 gives an infinity or no number.
float quotientOf(const Fraction& fraction) noexcept {
  return static_cast<float>(fraction.numerator) / static_cast<float>(fraction.denominator);
}

std::optional<float> quotientOf(const Value& value) noexcept {
  const Fraction fraction(value);
  if (fraction.denominator == 0) return std::nullopt;
  return quotientOf(fraction);
}

void print(const Value& value, const char* format, float number) noexcept {
  value.shown.print(format, static_cast<double>(number));
}

// Four characters such as 0220 for 2.2; the last is a blank when it is 0.
void formatVersion(const Value& value) noexcept {
  const char* text = value.raw;
  while (std::isspace(static_cast<unsigned char>(*text)) != 0) ++text;
  const std::array<char, 3> major = {text[0], text[0] != '\0' ? text[1] : '\0', '\0'};
  const std::optional<i32> number = NumberScan(major.data()).decimal();
  if (!number) return;
  const std::string_view all = value.raw;
  const char third = all.size() > 2 ? all[2] : '\0';
  const char fourth = all.size() > 3 ? all[3] : '\0';
  value.shown.print("%d.%c%c", *number, third, fourth == '0' ? ' ' : fourth);
}

void formatColourSpace(const Value& value) noexcept {
  const std::optional<i32> number = numberOf(value);
  if (number == 1) showName(value, standardColour);
  if (number == 65535) showName(value, uncalibratedColour);
}

// EXIF 2.32, ComponentsConfiguration. The last name has no blank behind it: kept.
void formatComponents(const Value& value) noexcept {
  constexpr std::array names = {" ", "Y ", "Cb ", "Cr ", "R ", "G ", "B"};
  constexpr int components = 4;
  NumberScan scan(value.raw);
  for (int index = 0; index < components; ++index) {
    const std::optional<u32> component = scan.hexadecimal();
    if (!component) return;
    value.shown.append(*component < names.size() ? names[*component] : "? ");
  }
}

void formatBitsPerPixel(const Value& value) noexcept {
  const std::optional<float> bits = quotientOf(value);
  if (!bits) return showName(value, unknownValue);
  value.shown.print("%.1f %s", static_cast<double>(*bits),
                    loadName(value.resources, bitsPerPixelUnit).data());
}

std::optional<char> characterOfPair(const char* pair) noexcept {
  const auto isHex = [](char digit) {
    return std::isxdigit(static_cast<unsigned char>(digit)) != 0;
  };
  if (!isHex(pair[0]) || !isHex(pair[1])) return std::nullopt;
  const std::array<char, 3> digits = {pair[0], pair[1], '\0'};
  const u32 code = NumberScan(digits.data()).hexadecimal().value_or(0);
  if (code < 32 || code > 127) return std::nullopt;
  return static_cast<char>(code);
}

// The bytes of a comment, shown as hexadecimal pairs, as the characters that they are.
void formatCharacters(const Value& value) noexcept {
  constexpr std::size_t mostCharacters = 48;
  if (value.field.sourceGroup == typeAscii) return;
  const char* rest = value.raw;
  while (value.shown.size() < mostCharacters) {
    if (*rest == ' ') ++rest;
    const std::optional<char> character = characterOfPair(rest);
    if (!character) break;
    value.shown.append({&*character, 1});
    rest += 2;
  }
  if (value.shown.empty()) value.shown.append(" ");
}

// Six numbers, or two that hold three each (yyyymmdd and hhmmss).
std::optional<SYSTEMTIME> timeOf(const char* raw) noexcept {
  Numbers<6> parts(raw);
  auto& number = parts.values;
  if (parts.count == 2) {
    const i32 date = number[0];
    const i32 clock = number[1];
    number = {date / 10000,  date % 10000 / 100,  date % 100,
              clock / 10000, clock % 10000 / 100, clock % 100};
  } else if (parts.count != number.size()) {
    return std::nullopt;
  }
  SYSTEMTIME time = {};
  time.wYear = static_cast<WORD>(number[0]);
  time.wMonth = static_cast<WORD>(number[1]);
  time.wDay = static_cast<WORD>(number[2]);
  time.wHour = static_cast<WORD>(number[3]);
  time.wMinute = static_cast<WORD>(number[4]);
  time.wSecond = static_cast<WORD>(number[5]);
  return time;
}

void formatDate(const Value& value) noexcept {
  const std::optional<SYSTEMTIME> time = timeOf(value.raw);
  if (!time) return showName(value, unknownDate);
  std::array<char, 32> date = {};
  std::array<char, 32> clock = {};
  GetDateFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE, &*time, nullptr, date.data(),
                 static_cast<int>(date.size()));
  GetTimeFormatA(LOCALE_SYSTEM_DEFAULT, LOCALE_NOUSEROVERRIDE | TIME_FORCE24HOURFORMAT, &*time,
                 nullptr, clock.data(), static_cast<int>(clock.size()));
  value.shown.print("%s %s", date.data(), clock.data());
}

void formatExposureTime(const Value& value) noexcept {
  const std::optional<float> seconds = quotientOf(value);
  if (!seconds) return;
  if (*seconds > 1.0F) return print(value, "%.1f sec", *seconds);
  if (*seconds > 0.5F) return print(value, "%.2f sec", *seconds);
  value.shown.print("1/%.0f sec", 1.0 / static_cast<double>(*seconds));
}

void formatFNumber(const Value& value) noexcept {
  if (const std::optional<float> number = quotientOf(value)) print(value, "F/%.1f", *number);
}

// Names that follow each other from a first one on; a negative value falls before them: kept.
void formatUpTo8(const Value& value, u32 firstName) noexcept {
  constexpr i32 last = 8;
  const std::optional<i32> number = numberOf(value);
  if (number) showName(value, i64{firstName} + (*number <= last ? *number : 0));
}

void formatExposureProgram(const Value& value) noexcept { formatUpTo8(value, exposurePrograms); }

void formatSensingMethod(const Value& value) noexcept { formatUpTo8(value, sensingMethods); }

// Names up to a last value, then none up to 254, one for 255, and whatever lies behind: kept.
void formatUpTo255(const Value& value, u32 firstName, u32 last, u32 nameOf255) noexcept {
  const std::optional<i32> read = numberOf(value);
  if (!read) return;
  const auto number = static_cast<u32>(*read);
  if (number == 255) return showName(value, nameOf255);
  const bool isNamed = number <= last || number > 255;
  showName(value, isNamed ? firstName + number : firstName);
}

void formatMeteringMode(const Value& value) noexcept {
  formatUpTo255(value, meteringModes, 6, otherMeteringMode);
}

void formatLightSource(const Value& value) noexcept {
  formatUpTo255(value, lightSources, 22, otherLightSource);
}

void formatApex(const Value& value) noexcept {
  const std::optional<float> number = quotientOf(value);
  if (!number) return;
  value.shown.print("%.1f%s", static_cast<double>(*number),
                    loadName(value.resources, apexUnit).data());
}

void formatDistance(const Value& value) noexcept {
  const std::optional<float> metres = quotientOf(value);
  if (!metres || *metres < 0.000001F) return showName(value, unknownValue);
  if (*metres > 5.0F) return print(value, "%.0f m", *metres);
  print(value, *metres > 0.1F ? "%.2f m" : "%f m", *metres);
}

// Bit 0 says whether the flash fired (EXIF 2.32, Flash).
void formatFlash(const Value& value) noexcept {
  const std::optional<i32> number = numberOf(value);
  if (number) showName(value, flashStates + (static_cast<u32>(*number) & 1));
}

void formatFocalLength(const Value& value) noexcept {
  if (const std::optional<float> length = quotientOf(value)) print(value, "%.1f mm", *length);
}

void formatResolution(const Value& value) noexcept {
  if (const std::optional<float> number = quotientOf(value)) print(value, "%.0f", *number);
}

void formatResolutionUnit(const Value& value) noexcept {
  const std::optional<i32> number = numberOf(value);
  if (number) showName(value, *number == 2 ? inch : centimetre);
}

void formatSubjectLocation(const Value& value) noexcept {
  const Numbers<2> place(value.raw);
  if (place.count == 2) value.shown.print("X=%d Y=%d", place.values[0], place.values[1]);
}

void formatFileSource(const Value& value) noexcept {
  if (numberOf(value) == 3) showName(value, digitalCamera);
}

void formatSceneType(const Value& value) noexcept {
  if (numberOf(value) == 1) showName(value, directPhotograph);
}

// Kept: a denominator of 0 is not looked for, and gives what the division gives.
void formatZoom(const Value& value) noexcept {
  if (!numberOf(value)) return;
  const Fraction fraction(value);
  print(value, "%.1f x", fraction.numerator == 0 ? 0.0F : quotientOf(fraction));
}

struct RuleRow {
  u16 fieldId;
  void (*rule)(const Value& value) noexcept;
};

constexpr std::array rules = {
    RuleRow{5200, &formatVersion},          // ExifVersion
    RuleRow{5201, &formatVersion},          // FlashpixVersion
    RuleRow{5202, &formatColourSpace},      // ColorSpace
    RuleRow{5203, &formatComponents},       // ComponentsConfiguration
    RuleRow{5204, &formatBitsPerPixel},     // CompressedBitsPerPixel
    RuleRow{5207, &formatCharacters},       // MakerNote
    RuleRow{5208, &formatCharacters},       // UserComment
    RuleRow{5210, &formatDate},             // DateTimeOriginal
    RuleRow{5211, &formatDate},             // DateTimeDigitized
    RuleRow{5215, &formatExposureTime},     // ExposureTime
    RuleRow{5216, &formatFNumber},          // FNumber
    RuleRow{5217, &formatExposureProgram},  // ExposureProgram
    RuleRow{5221, &formatApex},             // ShutterSpeedValue
    RuleRow{5222, &formatApex},             // ApertureValue
    RuleRow{5223, &formatApex},             // BrightnessValue
    RuleRow{5224, &formatApex},             // ExposureBiasValue
    RuleRow{5225, &formatApex},             // MaxApertureValue
    RuleRow{5226, &formatDistance},         // SubjectDistance
    RuleRow{5227, &formatMeteringMode},     // MeteringMode
    RuleRow{5228, &formatLightSource},      // LightSource
    RuleRow{5229, &formatFlash},            // Flash
    RuleRow{5230, &formatFocalLength},      // FocalLength
    RuleRow{5234, &formatResolution},       // FocalPlaneXResolution
    RuleRow{5235, &formatResolution},       // FocalPlaneYResolution
    RuleRow{5236, &formatResolutionUnit},   // FocalPlaneResolutionUnit
    RuleRow{5237, &formatSubjectLocation},  // SubjectLocation
    RuleRow{5239, &formatSensingMethod},    // SensingMethod
    RuleRow{5240, &formatFileSource},       // FileSource
    RuleRow{5241, &formatSceneType},        // SceneType
    RuleRow{5245, &formatVersion},          // InteroperabilityVersion
    RuleRow{5249, &formatZoom},             // DigitalZoomRatio
};

}  // namespace

DisplayText formatExifValue(HMODULE resources, const PropertyField& field,
                            const DisplayText& raw) noexcept {
  DisplayText shown;
  if (hasShownKind(field)) {
    for (const RuleRow& row : rules) {
      if (row.fieldId == field.fieldId) row.rule({resources, field, raw.c_str(), shown});
    }
  }
  return shown.empty() ? raw : shown;
}

DisplayText formatGpsValue(const PropertyField& field, const DisplayText& raw) noexcept {
  if (field.fieldId != host::fieldGpsFirst) return raw;
  NumberScan scan(raw.c_str());
  std::array<i32, 4> parts = {};
  for (i32& part : parts) {
    const std::optional<u32> number = scan.hexadecimal();
    if (!number) return raw;
    part = static_cast<i32>(*number);
  }
  DisplayText shown;
  shown.print("%d,%d,%d,%d", parts[0], parts[1], parts[2], parts[3]);
  return shown;
}

}  // namespace exif
