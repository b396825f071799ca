// The rule of every well-known tag, with the edges of each.
#include "exif/format_rules.h"

#include "frame/module.h"
#include "tests/exif/value_fields.h"

namespace {

using namespace test;
using exif::DisplayText;
using host::u16;
using host::u32;

constexpr u16 asciiType = 2;
constexpr u16 undefinedType = 7;

std::string shownAs(u16 fieldId, std::string_view raw, u16 kind = host::kindText,
                    u16 tiffType = undefinedType) {
  MadeField made(fieldId, kind, tiffType);
  return std::string(
      exif::formatExifValue(frame::resourceLibrary(), made.field(), DisplayText(raw)).view());
}
std::string gpsShownAs(u16 fieldId, std::string_view raw) {
  MadeField made(fieldId, host::kindBlock, 1);
  return std::string(exif::formatGpsValue(made.field(), DisplayText(raw)).view());
}
// A string of the resource library, cut as value names are.
std::string named(u32 id) {
  char text[48] = {};
  LoadStringA(frame::resourceLibrary(), id, text, sizeof text);
  return text;
}

TEST(FormatRules, VersionsAreTwoNumbersAndABlankForAFinalZero) {
  for (const u16 field : {u16{5200}, u16{5201}, u16{5245}}) {
    EXPECT_EQ(shownAs(field, "0220"), "2.2 ");
    EXPECT_EQ(shownAs(field, "0221"), "2.21");
    EXPECT_EQ(shownAs(field, "0100"), "1.0 ");
    EXPECT_EQ(shownAs(field, "1234"), "12.34");
    EXPECT_EQ(shownAs(field, "abcd"), "abcd");
    EXPECT_EQ(shownAs(field, ""), "");
    EXPECT_EQ(shownAs(field, "02"), "2.") << "a NUL is no character";
    EXPECT_EQ(shownAs(field, "7"), "7.");
  }
}

TEST(FormatRules, TwoColourSpacesHaveNames) {
  EXPECT_EQ(shownAs(5202, "1"), named(2376));
  EXPECT_EQ(shownAs(5202, "65535"), named(2375));
  EXPECT_EQ(shownAs(5202, "2"), "2");
  EXPECT_EQ(shownAs(5202, "0"), "0");
  EXPECT_EQ(shownAs(5202, "x"), "x");
}

TEST(FormatRules, ComponentsAreNamedOneByOne) {
  EXPECT_EQ(shownAs(5203, "01 02 03 00 "), "Y Cb Cr  ");
  EXPECT_EQ(shownAs(5203, "04 05 06 00 "), "R G B ") << "B has no blank of its own";
  EXPECT_EQ(shownAs(5203, "07 ff 06 06 "), "? ? BB");
  EXPECT_EQ(shownAs(5203, "01 02 03 04 05 "), "Y Cb Cr R ") << "four, not more";
  EXPECT_EQ(shownAs(5203, "zz"), "zz");
}

TEST(FormatRules, BitsPerPixelHaveTheirUnit) {
  EXPECT_EQ(shownAs(5204, "5/2"), "2.5 " + named(2332));
  EXPECT_EQ(shownAs(5204, "0/1"), "0.0 " + named(2332));
  EXPECT_EQ(shownAs(5204, "5/0"), named(2331));
}

TEST(FormatRules, CommentsAreTheirCharacters) {
  for (const u16 field : {u16{5207}, u16{5208}}) {
    EXPECT_EQ(shownAs(field, "48 65 6c 6C 6f "), "Hello");
    EXPECT_EQ(shownAs(field, "4865"), "He") << "the blank may be missing";
    EXPECT_EQ(shownAs(field, "48  65 "), "H") << "one blank, not two";
    EXPECT_EQ(shownAs(field, "48 65 ..."), "He");
    EXPECT_EQ(shownAs(field, "48 6"), "H");
    EXPECT_EQ(shownAs(field, "41 20 7f 42 "),
              "A \x7F"
              "B");
    EXPECT_EQ(shownAs(field, "41 1f 42 "), "A");
    EXPECT_EQ(shownAs(field, "41 80 42 "), "A");
    EXPECT_EQ(shownAs(field, "00 41 "), " ");
    EXPECT_EQ(shownAs(field, ""), " ");
    EXPECT_EQ(shownAs(field, "48 65 ", host::kindBlock, asciiType), "48 65 ");
    std::string longText;
    for (int i = 0; i < 60; ++i) longText += "41 ";
    EXPECT_EQ(shownAs(field, longText), std::string(48, 'A'));
  }
}

TEST(FormatRules, BothFormsOfADateAreTheLocalesDateAndTime) {
  for (const u16 field : {u16{5210}, u16{5211}}) {
    const std::string date = shownAs(field, "2008:12:31 23:59:58");
    EXPECT_EQ(shownAs(field, "20081231 235958"), date);
    EXPECT_NE(date.find("12"), std::string::npos) << date;
    EXPECT_NE(date.find("31"), std::string::npos) << date;
    EXPECT_NE(date.find("08"), std::string::npos) << date;
    // A locale with a 12-hour clock keeps its mark behind the 24-hour time.
    EXPECT_NE(date.find(" 23:59:58"), std::string::npos) << date;
    EXPECT_EQ(shownAs(field, "2008-12-31T23.59.58"), date) << "any character between";
    EXPECT_NE(shownAs(field, "2008:11:30 23:59:58"), date);
  }
}

TEST(FormatRules, ADateOfOtherPartsIsUnknown) {
  for (const char* raw :
       {"", "never", "2008", "2008:12:31", "2008:12:31 23:59", "    :  :     :  :"}) {
    EXPECT_EQ(shownAs(5210, raw), named(2357)) << raw;
  }
}

TEST(FormatRules, WhatNoCalendarHasIsLeftBlank) {
  EXPECT_EQ(shownAs(5210, "0000:00:00 12:34:56").find(" 12:34:56"), 0u);
  EXPECT_EQ(shownAs(5210, "0000:00:00 99:00:00"), " ");
}

TEST(FormatRules, ExposureTimesAreSecondsOrFractions) {
  EXPECT_EQ(shownAs(5215, "2/1"), "2.0 sec");
  EXPECT_EQ(shownAs(5215, "11/10"), "1.1 sec");
  EXPECT_EQ(shownAs(5215, "1/1"), "1.00 sec");
  EXPECT_EQ(shownAs(5215, "51/100"), "0.51 sec");
  EXPECT_EQ(shownAs(5215, "1/2"), "1/2 sec");
  EXPECT_EQ(shownAs(5215, "1/250"), "1/250 sec");
  EXPECT_EQ(shownAs(5215, "10/2500"), "1/250 sec");
  EXPECT_EQ(shownAs(5215, "0/1"), "1/inf sec");
  EXPECT_EQ(shownAs(5215, "1/0"), "1/0");
  EXPECT_EQ(shownAs(5215, "5"), "5") << "no denominator";
}

TEST(FormatRules, FNumbersHaveOneDecimal) {
  EXPECT_EQ(shownAs(5216, "28/10"), "F/2.8");
  EXPECT_EQ(shownAs(5216, "8/1"), "F/8.0");
  EXPECT_EQ(shownAs(5216, "8/0"), "8/0");
}

TEST(FormatRules, ExposureProgramsAreNamedUpTo8) {
  for (u32 value = 0; value <= 8; ++value) {
    EXPECT_EQ(shownAs(5217, std::to_string(value)), named(2358 + value));
  }
  EXPECT_EQ(shownAs(5217, "9"), named(2358));
  EXPECT_EQ(shownAs(5217, "300"), named(2358));
  EXPECT_EQ(shownAs(5217, "-1"), named(2357)) << "a signed comparison";
  EXPECT_EQ(shownAs(5217, "?"), "?");
}

TEST(FormatRules, ApexValuesHaveTheirUnit) {
  for (const u16 field : {u16{5221}, u16{5222}, u16{5223}, u16{5224}, u16{5225}}) {
    EXPECT_EQ(shownAs(field, "-1/3"), "-0.3" + named(2356));
    EXPECT_EQ(shownAs(field, "6/1"), "6.0" + named(2356));
    EXPECT_EQ(shownAs(field, "6/0"), "6/0");
  }
}

TEST(FormatRules, DistancesAreMetres) {
  EXPECT_EQ(shownAs(5226, "0/1"), named(2331));
  EXPECT_EQ(shownAs(5226, "3/0"), named(2331));
  EXPECT_EQ(shownAs(5226, "-3/1"), named(2331));
  EXPECT_EQ(shownAs(5226, "1/1000001"), named(2331));
  EXPECT_EQ(shownAs(5226, "1/1000000"), "0.000001 m");
  EXPECT_EQ(shownAs(5226, "10/1"), "10 m");
  EXPECT_EQ(shownAs(5226, "5/1"), "5.00 m");
  EXPECT_EQ(shownAs(5226, "3/1"), "3.00 m");
  EXPECT_EQ(shownAs(5226, "11/100"), "0.11 m");
  EXPECT_EQ(shownAs(5226, "1/10"), "0.100000 m");
  EXPECT_EQ(shownAs(5226, "1/20"), "0.050000 m");
}

TEST(FormatRules, MeteringModesAreNamedUpTo6And255) {
  for (u32 value = 0; value <= 6; ++value) {
    EXPECT_EQ(shownAs(5227, std::to_string(value)), named(2333 + value));
  }
  for (const char* raw : {"7", "254"}) EXPECT_EQ(shownAs(5227, raw), named(2333)) << raw;
  EXPECT_EQ(shownAs(5227, "255"), named(2340));
  EXPECT_EQ(shownAs(5227, "467"), named(2800)) << "any number above counts from the first name";
  EXPECT_EQ(shownAs(5227, "256"), "256") << "where no string is";
  EXPECT_EQ(shownAs(5227, "-2"), named(2331)) << "an unsigned comparison";
}

TEST(FormatRules, LightSourcesAreNamedUpTo22And255) {
  for (u32 value = 0; value <= 22; ++value) {
    EXPECT_EQ(shownAs(5228, std::to_string(value)), named(2345 + value));
  }
  for (const char* raw : {"23", "254"}) EXPECT_EQ(shownAs(5228, raw), named(2345)) << raw;
  EXPECT_EQ(shownAs(5228, "255"), named(2368));
  EXPECT_EQ(shownAs(5228, "256"), named(2601));
}

TEST(FormatRules, OfTheFlashOnlyThatItFiredIsShown) {
  EXPECT_EQ(shownAs(5229, "0"), named(2341));
  EXPECT_EQ(shownAs(5229, "16"), named(2341));
  EXPECT_EQ(shownAs(5229, "1"), named(2342));
  EXPECT_EQ(shownAs(5229, "95"), named(2342));
  EXPECT_EQ(shownAs(5229, "-1"), named(2342));
}

TEST(FormatRules, FocalLengthsAreMillimetres) {
  EXPECT_EQ(shownAs(5230, "185/10"), "18.5 mm");
  EXPECT_EQ(shownAs(5230, "185/0"), "185/0");
}

TEST(FormatRules, FocalPlaneResolutionsAreRounded) {
  for (const u16 field : {u16{5234}, u16{5235}}) {
    EXPECT_EQ(shownAs(field, "30721/10"), "3072");
    EXPECT_EQ(shownAs(field, "1/0"), "1/0");
  }
  EXPECT_EQ(shownAs(5236, "2"), named(2382));
  for (const char* raw : {"1", "3", "0", "-2"}) EXPECT_EQ(shownAs(5236, raw), named(2381)) << raw;
}

TEST(FormatRules, ASubjectLocationIsTwoCoordinates) {
  EXPECT_EQ(shownAs(5237, "320; 240"), "X=320 Y=240");
  EXPECT_EQ(shownAs(5237, "320"), "320");
}

TEST(FormatRules, SensingMethodsAreNamedUpTo8) {
  for (u32 value = 0; value <= 8; ++value) {
    EXPECT_EQ(shownAs(5239, std::to_string(value)), named(2367 + value));
  }
  EXPECT_EQ(shownAs(5239, "9"), named(2367));
  EXPECT_EQ(shownAs(5239, "-1"), named(2366));
}

TEST(FormatRules, OneFileSourceAndOneSceneTypeHaveNames) {
  EXPECT_EQ(shownAs(5240, "03 "), named(2377));
  EXPECT_EQ(shownAs(5240, "01 "), "01 ");
  EXPECT_EQ(shownAs(5241, "01 "), named(2378));
  EXPECT_EQ(shownAs(5241, "03 "), "03 ");
}

TEST(FormatRules, TheZoomDoesWithoutADenominator) {
  EXPECT_EQ(shownAs(5249, "3/2"), "1.5 x");
  EXPECT_EQ(shownAs(5249, "0/1"), "0.0 x");
  EXPECT_EQ(shownAs(5249, "0/0"), "0.0 x");
  EXPECT_EQ(shownAs(5249, "1/0"), "inf x");
  EXPECT_EQ(shownAs(5249, ""), "");
}

TEST(FormatRules, LightSourcesAndSensingMethodsShareTheirNames) {
  EXPECT_EQ(shownAs(5228, "22"), shownAs(5239, "0"));
  EXPECT_EQ(shownAs(5228, "255"), shownAs(5239, "1"));
  EXPECT_EQ(shownAs(5202, "65535"), shownAs(5239, "8"));
}

TEST(FormatRules, NumbersBeyondEveryRangeAreDefined) {
  const std::string many(200, '9');
  for (u16 field = 5200; field < 5250; ++field) {
    EXPECT_FALSE(shownAs(field, many).empty()) << field;
    EXPECT_FALSE(shownAs(field, "-" + many + "/-" + many).empty()) << field;
    EXPECT_FALSE(shownAs(field, many + " " + many).empty()) << field;
    shownAs(field, "");
  }
}

TEST(FormatRules, OtherFieldsShowTheirRawText) {
  for (const u16 field : {u16{5205}, u16{5219}, u16{5243}, u16{5250}, u16{5270}, u16{5300}}) {
    EXPECT_EQ(shownAs(field, "1/2"), "1/2") << field;
  }
}

TEST(FormatRules, KindsWithoutTextStayEmpty) {
  for (const u16 kind : {u16{4}, u16{16}}) {
    for (const u16 field : {u16{5207}, u16{5210}, u16{5217}, u16{5249}}) {
      EXPECT_EQ(shownAs(field, "", kind), "") << field;
    }
  }
}

TEST(FormatRules, TheGpsVersionIsFourNumbers) {
  EXPECT_EQ(gpsShownAs(5300, "02 02 00 00 "), "2,2,0,0");
  EXPECT_EQ(gpsShownAs(5300, "0a ff 00 10 "), "10,255,0,16");
  EXPECT_EQ(gpsShownAs(5300, "02 02 00 "), "02 02 00 ");
  EXPECT_EQ(gpsShownAs(5301, "02 02 00 00 "), "02 02 00 00 ");
}

}  // namespace
