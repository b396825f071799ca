// Images of multi-picture files reordered, removed and inserted, none of them decoded.
#include "tests/fiohost/support/mpo_fixture.h"
#include "tests/support/jpeg_builder.h"
#include "tests/support/mpf_builder.h"

namespace fiohostTest {
namespace {

using support::ByteOrder;
using support::MpfBuilder;
using testing::ElementsAre;
using testing::HasSubstr;

class MpoEditTest : public MpoProgramTest {
 protected:
  [[nodiscard]] nlohmann::json edit(std::vector<std::string> words) const {
    words.insert(words.begin(), "mpo");
    words.insert(words.end(), {"-o", "edited.mpo", "--force", "--json"});
    return runForJson(words).at(0);
  }
  // An image's bytes from the first quantisation table on: what no edit may touch.
  [[nodiscard]] Bytes picture(const std::string& name, unsigned number) const {
    return withoutSegments(rangeOf(name, info(name)["images"].at(number - 1)), 0xE2);
  }
  [[nodiscard]] std::vector<Bytes> pictures(const std::string& name) const {
    std::vector<Bytes> all;
    for (unsigned i = 1; i <= info(name)["images"].size(); ++i) all.push_back(picture(name, i));
    return all;
  }
  [[nodiscard]] std::vector<int> numbers(const std::string& name) const {
    std::vector<int> all;
    const nlohmann::json list = info(name);
    for (const auto& image : list["images"]) all.push_back(image["individualNumber"]);
    return all;
  }
  void expectRight(const std::string& name) const {
    const ProcessResult result = run({"mpo", "verify", name});
    EXPECT_EQ(result.exitCode, 0) << result.out << result.err;
  }
};

TEST_F(MpoEditTest, ReorderMovesStreamsAndNumbers) {
  static_cast<void>(build(addPictures(3), {"--kind", "multi-angle"}));
  const std::vector<Bytes> before = pictures("out.mpo");
  const nlohmann::json told = edit({"reorder", "out.mpo", "--order", "3,1,2"});
  EXPECT_EQ(told["images"][0]["from"], "image 3");
  EXPECT_EQ(told["bytes"], readBytes(file("edited.mpo")).size());
  EXPECT_EQ(pictures("edited.mpo"), (std::vector<Bytes>{before[2], before[0], before[1]}));
  EXPECT_THAT(numbers("edited.mpo"), ElementsAre(1, 2, 3));
  const nlohmann::json images = info("edited.mpo")["images"];
  EXPECT_EQ(images[0]["representative"], false);
  EXPECT_EQ(images[1]["representative"], true);
  expectRight("edited.mpo");
}

TEST_F(MpoEditTest, SwapBackGivesTheFileAgain) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo", "--baseline", "77/1000"}));
  EXPECT_EQ(run({"mpo", "swap", "out.mpo", "-o", "once.mpo"}).exitCode, 0);
  EXPECT_EQ(run({"mpo", "swap", "once.mpo", "-o", "twice.mpo"}).exitCode, 0);
  EXPECT_NE(readBytes(file("once.mpo")), readBytes(file("out.mpo")));
  EXPECT_EQ(pictures("twice.mpo"), pictures("out.mpo"));
  EXPECT_EQ(info("twice.mpo")["images"][1]["attributes"],
            info("out.mpo")["images"][1]["attributes"]);
  expectExtractionAgrees("once.mpo", "once");
}

TEST_F(MpoEditTest, TheBaseViewpointFollowsItsImage) {
  static_cast<void>(build(addPictures(3), {"--kind", "stereo"}));
  static_cast<void>(edit({"swap", "out.mpo", "--images", "1,3"}));
  const nlohmann::json list = info("edited.mpo");
  for (const auto& image : list["images"]) EXPECT_EQ(image["attributes"]["baseViewpoint"], 3);
  EXPECT_EQ(run({"mpo", "remove", "out.mpo", "--images", "1", "-o", "less.mpo"}).exitCode, 0);
  EXPECT_EQ(info("less.mpo")["images"][0]["attributes"]["baseViewpoint"], 0xFFFFFFFF);
}

TEST_F(MpoEditTest, RemoveLeavesOutAndMarksAnother) {
  static_cast<void>(build(addPictures(4), {"--kind", "panorama"}));
  const std::vector<Bytes> before = pictures("out.mpo");
  static_cast<void>(edit({"remove", "out.mpo", "--images", "1,3"}));
  EXPECT_EQ(pictures("edited.mpo"), (std::vector<Bytes>{before[1], before[3]}));
  EXPECT_THAT(numbers("edited.mpo"), ElementsAre(1, 2));
  EXPECT_EQ(info("edited.mpo")["frames"], 2);
  EXPECT_EQ(info("edited.mpo")["images"][0]["representative"], true);
  expectRight("edited.mpo");
}

TEST_F(MpoEditTest, ARemovedDependentIsNamedNoMore) {
  static_cast<void>(build(addPictures(3), {"--kind", "large-thumbnail"}));
  static_cast<void>(edit({"remove", "out.mpo", "--images", "2"}));
  const nlohmann::json images = info("edited.mpo")["images"];
  EXPECT_EQ(images[0]["dependents"], nlohmann::json({2}));
  EXPECT_EQ(images[0]["parent"], true);
  EXPECT_EQ(images[1]["child"], true);
  expectRight("edited.mpo");
}

TEST_F(MpoEditTest, ThumbnailsCannotStandFirstNorPrimariesBehind) {
  static_cast<void>(build(addPictures(3), {"--kind", "large-thumbnail"}));
  const ProcessResult first = run({"mpo", "swap", "out.mpo", "--images", "1,2", "-o", "x.mpo"});
  EXPECT_EQ(first.exitCode, 1);
  EXPECT_THAT(first.err, HasSubstr("image 2 is a large thumbnail and cannot stand first"));
  addJpeg("new.jpg", {});
  const ProcessResult behind =
      run({"mpo", "insert", "out.mpo", "new.jpg", "--at", "1", "-o", "x.mpo"});
  EXPECT_THAT(behind.err, HasSubstr("image 1 is the file's primary picture, which stands first"));
  EXPECT_FALSE(std::filesystem::exists(file("x.mpo")));
}

TEST_F(MpoEditTest, InsertPutsWholeStreamsInTheirPlace) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  const std::vector<Bytes> before = pictures("out.mpo");
  const Bytes added = makeJpeg({.width = 32, .height = 24});
  writeBytes(file("new.jpg"), added);
  const nlohmann::json told = edit({"insert", "out.mpo", "new.jpg", "--at", "2"});
  EXPECT_EQ(told["images"][1]["from"], "new.jpg");
  EXPECT_EQ(pictures("edited.mpo"), (std::vector<Bytes>{before[0], added, before[1]}));
  EXPECT_THAT(numbers("edited.mpo"), ElementsAre(1, 2, 3));
  EXPECT_EQ(info("edited.mpo")["images"][1]["class"], "disparity (stereo)");
  EXPECT_EQ(info("edited.mpo")["frames"], 3);
  expectRight("edited.mpo");
  expectExtractionAgrees("edited.mpo", "edited");
}

TEST_F(MpoEditTest, InsertedFirstItTakesTheIndexOver) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  addJpeg("new.jpg", {.width = 32, .height = 24});
  static_cast<void>(edit({"insert", "out.mpo", "new.jpg", "--at", "1"}));
  EXPECT_EQ(info("edited.mpo")["images"][0]["width"], 32);
  EXPECT_EQ(info("edited.mpo")["images"][2]["attributes"]["baseViewpoint"], 2);
  expectRight("edited.mpo");
}

TEST_F(MpoEditTest, UniqueIdentifiersGoWithTheirImages) {
  const std::string one(32, 'A');
  const std::string two(32, 'B');
  static_cast<void>(build(addPictures(2), {"--kind", "stereo", "--unique-ids", one + "," + two}));
  addJpeg("new.jpg", {.width = 32, .height = 24});
  static_cast<void>(edit({"swap", "out.mpo"}));
  EXPECT_EQ(info("edited.mpo")["images"][0]["uniqueId"], two);
  EXPECT_EQ(run({"mpo", "insert", "edited.mpo", "new.jpg", "-o", "more.mpo"}).exitCode, 0);
  const std::string third = info("more.mpo")["images"][2]["uniqueId"];
  EXPECT_EQ(third.size(), 32U);
  EXPECT_NE(third, one);
}

TEST_F(MpoEditTest, TheOutputMayBeTheInput) {
  static_cast<void>(build(addPictures(2), {"--kind", "stereo"}));
  const std::vector<Bytes> before = pictures("out.mpo");
  const ProcessResult refused = run({"mpo", "swap", "out.mpo", "-o", "out.mpo"});
  EXPECT_EQ(refused.exitCode, 1);
  EXPECT_THAT(refused.err, HasSubstr("add --force to replace it"));
  EXPECT_EQ(pictures("out.mpo"), before);
  EXPECT_EQ(run({"mpo", "swap", "out.mpo", "-o", "out.mpo", "--force"}).exitCode, 0);
  EXPECT_EQ(pictures("out.mpo"), (std::vector<Bytes>{before[1], before[0]}));
}

TEST_F(MpoEditTest, WrongNumbersAreTold) {
  static_cast<void>(build(addPictures(3), {"--kind", "panorama"}));
  const auto error = [this](const std::vector<std::string>& words) {
    std::vector<std::string> all = {"mpo"};
    all.insert(all.end(), words.begin(), words.end());
    all.insert(all.end(), {"-o", "x.mpo"});
    const ProcessResult result = run(all);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    return result.err;
  };
  EXPECT_THAT(error({"reorder", "out.mpo", "--order", "1,2"}),
              HasSubstr("each of the 3 images once"));
  EXPECT_THAT(error({"reorder", "out.mpo", "--order", "1,2,2"}),
              HasSubstr("each of the 3 images once"));
  EXPECT_THAT(error({"swap", "out.mpo"}), HasSubstr("name two of them with --images"));
  EXPECT_THAT(error({"swap", "out.mpo", "--images", "2,2"}), HasSubstr("name two different ones"));
  EXPECT_THAT(error({"remove", "out.mpo", "--images", "4"}), HasSubstr("there is no image 4"));
  EXPECT_THAT(error({"remove", "out.mpo", "--images", "1,2"}), HasSubstr("one picture alone"));
  EXPECT_THAT(error({"insert", "out.mpo", "in1.jpg", "--at", "5"}),
              HasSubstr("there is no place 5"));
  EXPECT_THAT(error({"insert", "out.mpo", "out.mpo"}),
              HasSubstr("it holds several pictures already"));
  EXPECT_EQ(run({"mpo", "reorder", "out.mpo", "--order", "1,,2", "-o", "x.mpo"}).exitCode, 2);
  EXPECT_EQ(namesIn(folder()).size(), 4U);  // three pictures and the file of them
}

// A big-endian file whose second image has tags that this program does not write.
Bytes foreignFile() {
  const Bytes notes = support::bytesOf("maker's own");
  MpfBuilder attributes(ByteOrder::big);
  attributes.ifd()
      .number(support::mpf::individualNumber, 2)
      .ratio(support::mpf::roll, 7, 2)
      .block(0xB9AB, notes);
  const Bytes tail = support::JpegBuilder().size(40, 24).mpf(attributes.build()).build();
  const auto index = [&](std::uint32_t size, std::uint32_t offset) {
    MpfBuilder mpf(ByteOrder::big);
    mpf.ifd()
        .block(support::mpf::version, support::bytesOf("0100"))
        .number(support::mpf::imageCount, 2)
        .images({{.attribute = 0x20020003, .size = size},
                 {.attribute = 0x00020003,
                  .size = static_cast<std::uint32_t>(tail.size()),
                  .offset = offset}})
        .block(0xB9AA, notes);
    mpf.ifd().number(support::mpf::individualNumber, 1);
    return support::JpegBuilder().size(24, 16).mpf(mpf.build()).build();
  };
  const auto size = static_cast<std::uint32_t>(index(0, 0).size());
  const Bytes head = index(0, 0);
  const std::string signature = "MPF";
  const auto found = std::search(head.begin(), head.end(), signature.begin(), signature.end());
  const auto header = static_cast<std::uint32_t>(found - head.begin()) + 4;
  return support::joined(index(size, size - header), tail);
}

TEST_F(MpoEditTest, UnknownTagsAndTheByteOrderStay) {
  writeBytes(file("foreign.mpo"), foreignFile());
  expectRight("foreign.mpo");
  static_cast<void>(edit({"swap", "foreign.mpo"}));
  expectRight("edited.mpo");
  EXPECT_THAT(numbers("edited.mpo"), ElementsAre(1, 2));
  const nlohmann::json first = info("edited.mpo")["images"][0];
  EXPECT_EQ(first["attributes"]["rollAngle"]["numerator"], 7);
  const Bytes bytes = readBytes(file("edited.mpo"));
  const std::string text(bytes.begin(), bytes.end());
  EXPECT_NE(text.find("maker's own"), text.rfind("maker's own"));  // of the index and of the image
  EXPECT_NE(text.find(std::string("MPF\0MM", 6)), std::string::npos);
  EXPECT_EQ(text.find(std::string("MPF\0II", 6)), std::string::npos);
}

}  // namespace
}  // namespace fiohostTest
