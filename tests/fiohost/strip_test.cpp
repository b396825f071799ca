// Private data taken out of pictures.
#include "tests/fiohost/support/mpo_fixture.h"
#include "tests/fiohost/support/secret_pictures.h"

namespace fiohostTest {
namespace {

using support::ByteOrder;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

class StripTest : public MpoProgramTest {
 protected:
  [[nodiscard]] std::string text(const std::string& name) const {
    const Bytes bytes = readBytes(file(name));
    return {bytes.begin(), bytes.end()};
  }
  [[nodiscard]] nlohmann::json strip(const std::string& name, const std::string& what) const {
    return runForJson({"strip", name, what, "-o", "open.jpg", "--force", "--json"}).at(0);
  }
  [[nodiscard]] static std::vector<std::string> names(const nlohmann::json& parts, int image) {
    std::vector<std::string> all;
    for (const nlohmann::json& part : parts) {
      const bool fits = image == 0 ? part["image"].is_null() : part["image"] == image;
      if (fits) all.push_back(part["what"]);
    }
    return all;
  }
  // A pair of pictures, each with places in all its parts.
  void addSecretPair() const {
    writeBytes(file("one.jpg"), secretPicture(1, ByteOrder::little));
    writeBytes(file("two.jpg"), secretPicture(2, ByteOrder::big));
    addJpeg("left.jpg", {});
    addJpeg("right.jpg", {});
    EXPECT_EQ(
        run({"mpo", "build", "left.jpg", "right.jpg", "--kind", "stereo", "-o", "a.mpo"}).exitCode,
        0);
    EXPECT_EQ(run({"mpo", "insert", "a.mpo", "one.jpg", "two.jpg", "-o", "b.mpo"}).exitCode, 0);
    EXPECT_EQ(run({"mpo", "remove", "b.mpo", "--images", "1,2", "-o", "pair.mpo"}).exitCode, 0);
  }
};

TEST_F(StripTest, NoPlaceIsLeftAnywhereAndNothingMoves) {
  for (const ByteOrder order : {ByteOrder::little, ByteOrder::big}) {
    const Bytes before = secretPicture(1, order);
    writeBytes(file("in.jpg"), before);
    ASSERT_THAT(text("in.jpg"), HasSubstr("SECRET"));
    const nlohmann::json told = strip("in.jpg", "--gps");
    EXPECT_THAT(text("open.jpg"), Not(HasSubstr("SECRET")));
    EXPECT_THAT(text("open.jpg"), Not(HasSubstr("RCES")));  // a little-endian number
    EXPECT_EQ(readBytes(file("open.jpg")).size(), before.size());
    EXPECT_EQ(
        names(told["removed"], 1),
        (std::vector<std::string>{"telemetry of the camera", "GPS data in EXIF",
                                  "location properties in XMP", "location datasets in IPTC"}));
    EXPECT_EQ(names(told["kept"], 1), std::vector<std::string>{"maker note"});
    EXPECT_EQ(decodeJpeg(readBytes(file("open.jpg"))), decodeJpeg(before));
  }
}

TEST_F(StripTest, WhatTellsNoPlaceStays) {
  writeBytes(file("in.jpg"), secretPicture(1, ByteOrder::big));
  static_cast<void>(strip("in.jpg", "--gps"));
  for (const char* kept : {"Open Maker", "a maker's note", "a comment", "a colour profile",
                           "dc:format='open'", "<dc:title>open</dc:title>", "caption"}) {
    EXPECT_THAT(text("open.jpg"), HasSubstr(kept));
  }
  const nlohmann::json again = runForJson({"strip", "open.jpg", "--gps", "-o", "b.jpg", "--json"});
  EXPECT_EQ(names(again[0]["removed"], 1), std::vector<std::string>{});
}

TEST_F(StripTest, APropertyInTwoSegmentsIsFound) {
  const std::string packet = "<rdf:RDF><exif:GPSLatitude>SECRET</exif:GPSLatitude>open</rdf:RDF>";
  const auto size = static_cast<std::uint32_t>(packet.size());
  const std::string guid(32, 'A');
  writeBytes(file("in.jpg"), JpegBuilder()
                                 .extendedXmp(guid, size, 0, bytesOf(packet.substr(0, 30)))
                                 .extendedXmp(guid, size, 30, bytesOf(packet.substr(30)))
                                 .build());
  static_cast<void>(strip("in.jpg", "--gps"));
  EXPECT_THAT(text("open.jpg"), Not(HasSubstr("SEC")));
  EXPECT_THAT(text("open.jpg"), Not(HasSubstr("RET")));
  EXPECT_THAT(text("open.jpg"), HasSubstr("open</rdf:RDF>"));
}

TEST_F(StripTest, APacketInUtf16IsRead) {
  for (const bool big : {false, true}) {
    Bytes wide;
    for (const std::uint8_t character : secretXmp()) {
      if (big) wide.push_back(0);
      wide.push_back(character);
      if (!big) wide.push_back(0);
    }
    writeBytes(file("in.jpg"), JpegBuilder().xmp(wide).build());
    const nlohmann::json told = strip("in.jpg", "--gps");
    EXPECT_EQ(names(told["removed"], 1), std::vector<std::string>{"location properties in XMP"});
    EXPECT_THAT(text("open.jpg"), Not(HasSubstr(std::string("S\0E\0C", 5))));
    EXPECT_THAT(text("open.jpg"), HasSubstr(std::string("o\0p\0e\0n\0<", 9)));
  }
}

TEST_F(StripTest, EveryImageAndWhatFollowsThem) {
  addSecretPair();
  Bytes bytes = readBytes(file("pair.mpo"));
  const std::size_t images = bytes.size();
  bytes = joined(bytes, joined({0, 0, 0, 1}, secretPicture(3, ByteOrder::little)));
  bytes = joined(bytes, joined({0, 0, 0, 18, 0xA9, 'x', 'y', 'z', 0, 6}, bytesOf("SECRET+1")));
  writeBytes(file("in.mpo"), bytes);
  const nlohmann::json told = strip("in.mpo", "--gps");
  EXPECT_THAT(text("open.jpg"), Not(HasSubstr("SECRET")));
  EXPECT_EQ(readBytes(file("open.jpg")).size(), bytes.size());
  EXPECT_THAT(names(told["removed"], 1), Contains("GPS data in EXIF"));
  EXPECT_THAT(names(told["removed"], 2), Contains("location properties in XMP"));
  EXPECT_THAT(names(told["removed"], 0), Contains("GPS data in EXIF"));
  EXPECT_THAT(names(told["removed"], 0), Contains("place of a video"));
  EXPECT_EQ(run({"mpo", "verify", "open.jpg"}).exitCode, 0);
  const nlohmann::json all = strip("in.mpo", "--all");
  EXPECT_LT(readBytes(file("open.jpg")).size(), images);
  EXPECT_THAT(names(all["removed"], 0), Contains("a picture that no index lists"));
  EXPECT_EQ(run({"mpo", "verify", "open.jpg"}).exitCode, 0);
}

TEST_F(StripTest, AllLeavesWhatAPictureNeeds) {
  const Bytes before = secretPicture(1, ByteOrder::little);
  Bytes bytes = before;
  bytes.insert(bytes.end(), {'m', 'o', 'r', 'e'});
  writeBytes(file("in.jpg"), bytes);
  const nlohmann::json told = strip("in.jpg", "--all");
  const Bytes after = readBytes(file("open.jpg"));
  EXPECT_EQ(decodeJpeg(after), decodeJpeg(before));
  std::vector<int> markers;
  for (const AppSegment& segment : appSegments(after)) markers.push_back(segment.first);
  EXPECT_EQ(markers, (std::vector<int>{0xE1, 0xE2}));  // the orientation and the colour profile
  EXPECT_EQ(
      appSegments(after)[0].second,
      std::string("Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0", 32));
  for (const char* secret : {"SECRET", "Open", "note", "comment", "caption", "more"}) {
    EXPECT_THAT(text("open.jpg"), Not(HasSubstr(secret))) << secret;
  }
  EXPECT_EQ(names(told["removed"], 0), std::vector<std::string>{"data that is no picture"});
  EXPECT_EQ(names(told["removed"], 1),
            (std::vector<std::string>{"EXIF", "XMP", "Photoshop resources", "comment", "APP6"}));
  EXPECT_EQ(run({"strip", "open.jpg", "--all", "--in-place"}).out,
            "open.jpg -> open.jpg, " + std::to_string(after.size()) +
                " bytes\n  removed       nothing, there was none\n");
  EXPECT_EQ(readBytes(file("open.jpg")), after);
}

TEST_F(StripTest, AllKeepsAMultiPictureFileWhole) {
  addSecretPair();
  static_cast<void>(strip("pair.mpo", "--all"));
  EXPECT_EQ(run({"mpo", "verify", "open.jpg"}).exitCode, 0);
  writeBytes(file("open.mpo"), readBytes(file("open.jpg")));
  const nlohmann::json images = info("open.mpo")["images"];
  ASSERT_EQ(images.size(), 2U);
  EXPECT_EQ(images[1]["individualNumber"], 2);
  EXPECT_EQ(images[1]["class"], "disparity (stereo)");
  EXPECT_THAT(text("open.mpo"), Not(HasSubstr("SECRET")));
  expectExtractionAgrees("open.mpo", "open");
}

TEST_F(StripTest, AFileWhoseIndexListsOthersThatAreGoneIsOnePicture) {
  addSecretPair();
  Bytes bytes = readBytes(file("pair.mpo"));
  bytes.resize(info("pair.mpo")["images"][1]["offset"]);
  writeBytes(file("one-left.jpg"), bytes);
  const nlohmann::json told = strip("one-left.jpg", "--all");
  EXPECT_THAT(names(told["removed"], 1), Contains("multi-picture index"));
  EXPECT_THAT(text("open.jpg"), Not(HasSubstr("MPF")));
}

TEST_F(StripTest, OutputsAreFilesFoldersOrTheInputsThemselves) {
  writeBytes(file("one.jpg"), secretPicture(1, ByteOrder::little));
  writeBytes(file("two.jpg"), secretPicture(2, ByteOrder::big));
  std::filesystem::create_directory(file("folder"));
  EXPECT_EQ(run({"strip", "one.jpg", "two.jpg", "--gps", "-o", "folder"}).exitCode, 0);
  EXPECT_EQ(namesIn(file("folder")), (std::vector<std::string>{"one.jpg", "two.jpg"}));
  EXPECT_EQ(run({"strip", "one.jpg", "--gps", "-o", "folder"}).exitCode, 1);  // it is there
  EXPECT_EQ(run({"strip", "one.jpg", "two.jpg", "--gps", "-o", "x.jpg"}).exitCode, 1);
  EXPECT_EQ(run({"strip", "one.jpg", "two.jpg", "--gps", "--in-place"}).exitCode, 0);
  EXPECT_EQ(readBytes(file("one.jpg")), readBytes(file("folder/one.jpg")));
  writeBytes(file("bad.jpg"), {'t', 'e', 'x', 't'});
  const ProcessResult bad = run({"strip", "bad.jpg", "--all", "--in-place"});
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_THAT(bad.err, HasSubstr("bad.jpg: this is no JPEG file"));
  EXPECT_EQ(text("bad.jpg"), "text");
}

TEST_F(StripTest, WrongOptionsAreUsageErrors) {
  EXPECT_EQ(run({"strip", "a.jpg", "-o", "b.jpg"}).exitCode, 2);
  EXPECT_EQ(run({"strip", "a.jpg", "--gps"}).exitCode, 2);
  EXPECT_EQ(run({"strip", "a.jpg", "--gps", "--all", "-o", "b.jpg"}).exitCode, 2);
  EXPECT_EQ(run({"strip", "a.jpg", "--gps", "--in-place", "-o", "b.jpg"}).exitCode, 2);
}

#ifdef KF_SAMPLES
TEST_F(StripTest, RealFilesAreStripped) {
  if (!std::filesystem::exists(KF_SAMPLES)) GTEST_SKIP() << "no real files in " << KF_SAMPLES;
  for (const char* part : {"jpeg", "mpo", "ciff"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(KF_SAMPLES) / part)) {
      for (const char* what : {"--gps", "--all"}) {
        const ProcessResult stripped =
            run({"strip", entry.path().string(), what, "-o", "x.jpg", "--force"});
        EXPECT_EQ(stripped.exitCode, 0) << entry.path() << stripped.err;
      }
    }
  }
}
#endif

#ifdef KF_EXIFTOOL
constexpr const char* exiftool = KF_EXIFTOOL;

TEST_F(StripTest, ExiftoolFindsNoPlaceInRealFilesEither) {
  if (!std::filesystem::exists(KF_SAMPLES)) GTEST_SKIP() << "no real files in " << KF_SAMPLES;
  for (const char* made : {"sources", "gps", "all"}) std::filesystem::create_directory(file(made));
  std::vector<std::string> names;
  for (const char* part : {"jpeg", "mpo", "ciff"}) {
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(KF_SAMPLES) / part)) {
      names.push_back("sources/" + entry.path().filename().string());
      writeBytes(file(names.back()), readBytes(entry.path()));
    }
  }
  for (const char* what : {"gps", "all"}) {
    std::vector<std::string> words = {"strip", std::string("--") + what, "-o", what};
    words.insert(words.end(), names.begin(), names.end());
    ASSERT_EQ(run(words).exitCode, 0) << what;
  }
  // Of each file the tags that are found; its name alone when there are none.
  const auto told = [&](std::vector<std::string> words, const char* where) {
    words.insert(words.begin(), {"-j", "-a", "-G1", "-s"});
    words.emplace_back(where);
    return nlohmann::json::parse(runProcess(exiftool, words, folder(), folder()).out);
  };
  const std::vector<std::string> places = {"-ee",
                                           "-GPS*",
                                           "-City",
                                           "-State",
                                           "-Sub-location",
                                           "-Province-State",
                                           "-Country*",
                                           "-Location*",
                                           "-ContentLocation*",
                                           "-x",
                                           "RMETA:all",
                                           "-x",
                                           "JSON:all",
                                           "-x",
                                           "MakerNotes:all"};
  const auto havingSome = [](const nlohmann::json& files) {
    return std::count_if(files.begin(), files.end(),
                         [](const nlohmann::json& one) { return one.size() > 1; });
  };
  EXPECT_GT(havingSome(told(places, "sources")), 5);
  const nlohmann::json left = told(places, "gps");
  EXPECT_EQ(left.size(), names.size());
  EXPECT_EQ(havingSome(left), 0) << left;
  const nlohmann::json rest =
      told({"-EXIF:all", "-XMP:all", "-IPTC:all", "-Photoshop:all", "-MakerNotes:all",
            "-FlashPix:all", "-Trailer:all", "--EXIF:Orientation"},
           "all");
  EXPECT_EQ(rest.size(), names.size());
  EXPECT_EQ(havingSome(rest), 0) << rest;
}

TEST_F(StripTest, ExiftoolFindsNoPlaceInThumbnailsAndSecondImages) {
  addSecretPair();
  EXPECT_EQ(run({"strip", "pair.mpo", "--gps", "-o", "open.mpo"}).exitCode, 0);
  EXPECT_EQ(run({"mpo", "extract", "open.mpo", "-o", ".", "--jpeg"}).exitCode, 0);
  for (const char* image : {"open-1.jpg", "open-2.jpg"}) {
    const ProcessResult thumbnail = runProcess(
        exiftool, {"-b", "-W!", "%f-thumbnail.jpg", "-ThumbnailImage", image}, folder(), folder());
    EXPECT_EQ(thumbnail.exitCode, 0) << thumbnail.err;
    const std::string stem = std::string(image).substr(0, 6);
    for (const std::string& name : {std::string(image), stem + "-thumbnail.jpg"}) {
      const ProcessResult gps =
          runProcess(exiftool, {"-a", "-s", "-ee", "-GPS*", "-City", name}, folder(), folder());
      EXPECT_EQ(gps.exitCode, 0) << name << gps.err;
      EXPECT_EQ(gps.out, "") << name;
    }
  }
}
#endif

// Found by the fuzzer: fill bytes of a segment that was taken out made a marker of what lay behind
// it.
TEST_F(StripTest, FillBytesGoWithTheirSegment) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  Bytes bytes = readBytes(file("out.mpo"));
  // A comment in the first picture's data, and behind it what would be a long segment.
  const Bytes comment = {0xFF, 0xFF, 0xFE, 0, 4, 'a', 'b', 0xC4, 0xF0, 0xF0};
  const std::ptrdiff_t second = info("out.mpo")["images"][1]["offset"];
  bytes.insert(bytes.begin() + second - 20, comment.begin(), comment.end());
  writeBytes(file("edited.mpo"), bytes);
  ASSERT_EQ(run({"mpo", "repair", "edited.mpo", "-o", "whole.mpo"}).exitCode, 0);
  ASSERT_EQ(run({"strip", "whole.mpo", "--all", "-o", "open.mpo"}).exitCode, 0);
  const ProcessResult verified = run({"mpo", "verify", "open.mpo"});
  EXPECT_EQ(verified.out, "open.mpo: 2 images, all where the index says\n");
}

// Found by the fuzzer: a dataset of one resource holds another resource. What is taken out of that
// moves a place to where the first one's next dataset begins.
TEST_F(StripTest, DatasetsThatOverlapLeaveNoPlace) {
  const auto text = [](std::string_view literal) { return bytesOf(literal); };
  const Bytes inner =
      joined(joined(text({"\x1C\x02\x5A\0\x14", 5}), text("SECRETSECRETSECRETSE")),
             joined(text("xxxxxxxxxx"), joined(text({"\x1C\x02\x5A\0\x06", 5}), text("SECRET"))));
  ASSERT_EQ(inner.size(), 46U);
  const Bytes outer = joined(text({"\x1C\x02\x78\0\x16", 5}),
                             joined(text({"8BIM\x04\x04\0\0\0\0\0\x2E", 12}), inner));
  const Bytes resources = joined(text({"8BIM\x04\x04\0\0\0\0\0\x3F", 12}), outer);
  writeBytes(file("in.jpg"), JpegBuilder().photoshop(resources).build());
  const nlohmann::json told = strip("in.jpg", "--gps");
  EXPECT_EQ(told["removed"][0]["bytes"], 25 + 11);
  EXPECT_THAT(this->text("open.jpg"), Not(HasSubstr("SECRET")));
}

}  // namespace
}  // namespace fiohostTest
