#include "tests/fiohost/support/program_fixture.h"

namespace fiohostTest {
namespace {

using testing::HasSubstr;

class MpoTest : public ProgramTest {};

void put16(Bytes& bytes, std::uint32_t value) {
  bytes.push_back(static_cast<std::uint8_t>(value));
  bytes.push_back(static_cast<std::uint8_t>(value >> 8));
}

void put32(Bytes& bytes, std::uint32_t value) {
  put16(bytes, value & 0xFFFF);
  put16(bytes, value >> 16);
}

void putTag(Bytes& bytes, std::uint32_t tag, std::uint32_t type, std::uint32_t count,
            std::uint32_t value) {
  put16(bytes, tag);
  put16(bytes, type);
  put32(bytes, count);
  put32(bytes, value);
}

constexpr std::uint32_t indexSize = 108;      // the whole APP2 segment below
constexpr std::uint32_t byteOrderPlace = 10;  // in a file whose first segment is the index

// The MP index and the first image's attributes as an APP2 segment (CIPA DC-007, 5.2).
Bytes stereoIndex(std::size_t firstSize, std::size_t secondSize) {
  constexpr std::uint32_t stereo = 0x020002;
  constexpr std::uint32_t representative = 0x20000000;
  constexpr std::uint32_t entriesPlace = 50;
  constexpr std::uint32_t attributesPlace = entriesPlace + 2 * 16;
  const auto first = static_cast<std::uint32_t>(firstSize);
  Bytes segment = {0xFF, 0xE2, 0, indexSize - 2, 'M', 'P', 'F', 0, 'I', 'I', 42, 0, 8, 0, 0, 0};
  put16(segment, 3);
  putTag(segment, 0xB000, 7, 4, 0x30303130);  // version "0100"
  putTag(segment, 0xB001, 4, 1, 2);
  putTag(segment, 0xB002, 7, 32, entriesPlace);
  put32(segment, attributesPlace);
  for (const std::uint32_t value : {representative | stereo, first, 0U, 0U}) put32(segment, value);
  for (const std::uint32_t value :
       {stereo, static_cast<std::uint32_t>(secondSize), first - byteOrderPlace, 0U}) {
    put32(segment, value);
  }
  put16(segment, 1);
  putTag(segment, 0xB101, 4, 1, 1);  // the first image's number
  put32(segment, 0);
  return segment;
}

Bytes makeStereoPair(const Bytes& left, const Bytes& right) {
  Bytes file(left.begin(), left.begin() + 2);
  const Bytes index = stereoIndex(left.size() + indexSize, right.size());
  file.insert(file.end(), index.begin(), index.end());
  file.insert(file.end(), left.begin() + 2, left.end());
  file.insert(file.end(), right.begin(), right.end());
  return file;
}

TEST_F(MpoTest, TellsTheImagesOfAStereoPair) {
  const Bytes left = makeJpeg({});
  const Bytes right = makeJpeg({.width = 32, .height = 24});
  writeBytes(file("pair.mpo"), makeStereoPair(left, right));
  const nlohmann::json info = runForJson({"info", "--json", "pair.mpo"})[0];
  EXPECT_EQ(info["format"], "MPO");
  EXPECT_EQ(info["width"], 64);
  EXPECT_EQ(info["encoding"], "baseline");
  EXPECT_EQ(info["note"], nullptr);
  EXPECT_EQ(info["kind"], "disparity (stereo)");
  ASSERT_EQ(info["images"].size(), 2U);
  EXPECT_EQ(info["images"][0]["width"], 64);
  EXPECT_EQ(info["images"][0]["bytes"], left.size() + indexSize);
  EXPECT_EQ(info["images"][0]["kind"], "disparity (stereo)");
  EXPECT_EQ(info["images"][0]["representative"], true);
  EXPECT_EQ(info["images"][1]["width"], 32);
  EXPECT_EQ(info["images"][1]["height"], 24);
  EXPECT_EQ(info["images"][1]["bytes"], right.size());
  EXPECT_EQ(info["images"][1]["representative"], false);
}

TEST_F(MpoTest, ReadsTheFirstImage) {
  const Bytes left = makeJpeg({});
  writeBytes(file("pair.mpo"), makeStereoPair(left, makeJpeg({.width = 32, .height = 24})));
  const ProcessResult result = run({"read", "pair.mpo", "-o", "out.png"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(png("out.png"), decodeJpeg(left));
}

TEST_F(MpoTest, FitReducesTheFirstImage) {
  writeBytes(file("pair.mpo"),
             makeStereoPair(makeJpeg({.width = 640, .height = 480}), makeJpeg({})));
  const ProcessResult result = run({"read", "pair.mpo", "-o", "out.png", "--fit", "100x100"});
  EXPECT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(png("out.png").width, 100U);
  EXPECT_EQ(png("out.png").height, 75U);
}

TEST_F(MpoTest, APlainPictureUnderAnMpoNameIsServedWithANote) {
  addJpeg("plain.mpo", {});
  const nlohmann::json info = runForJson({"info", "--json", "plain.mpo"});
  EXPECT_EQ(info[0]["format"], "JPEG");
  EXPECT_EQ(info[0]["width"], 64);
  EXPECT_THAT(info[0]["note"].get<std::string>(), HasSubstr("not a multi-picture file"));
  EXPECT_EQ(run({"read", "plain.mpo", "-o", "out.png"}).exitCode, 0);
  EXPECT_EQ(png("out.png"), decodeJpeg(readBytes(file("plain.mpo"))));
}

TEST_F(MpoTest, RubbishUnderAnMpoNameFails) {
  writeBytes(file("bad.mpo"), {'t', 'e', 'x', 't'});
  const ProcessResult result = run({"info", "bad.mpo"});
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, HasSubstr("bad.mpo: the header cannot be read (error 4019)"));
}

}  // namespace
}  // namespace fiohostTest
