// Real files with a segment of the plug-in's own: another program's validation finds nothing in
// them that it does not find in the source, but for what the way of writing brings with it.
#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "tests/exif/other_programs.h"
#include "tests/exif/real_picture.h"
#include "tests/support/scratch_file.h"

namespace {

using namespace test;
using host::u16;

constexpr u16 makerNote = 5207;

// What the source had, as far as a complaint may come from its way through the fields.
struct Source {
  bool exif = false;
  bool xmp = false;
  bool iptc = false;
};

// A complaint that the way of writing explains.
struct Explanation {
  const char* rule;
  bool (*explains)(const std::string& complaint, const Source& source);
};

bool has(const std::string& complaint, std::string_view part) {
  return complaint.find(part) != std::string::npos;
}

constexpr Explanation explanations[] = {
    {"values lie back to back, without bytes that make their offsets even",
     [](const std::string& complaint, const Source&) {
       return has(complaint, "[minor] Odd offset for ");
     }},
    {"a picture without EXIF gets the directories that its fields need and no required tags",
     [](const std::string& complaint, const Source& source) {
       return !source.exif && has(complaint, "Missing required JPEG ");
     }},
    {"IPTC is an UNDEFINED value of the 0th IFD, beside the segment that it came from",
     [](const std::string& complaint, const Source& source) {
       return source.iptc && (complaint == "Non-standard format (undef) for IFD0 0x83bb IPTC-NAA" ||
                              complaint == "[minor] Non-standard IPTC at JPEG-APP1-IFD0-IPTC");
     }},
    {"the packet is written from its field, and its raw segment is kept too",
     [](const std::string& complaint, const Source& source) {
       return source.xmp && complaint == "Duplicate XMP at JPEG-APP1-XMP";
     }},
};

struct Saved {
  std::string sourcePath;
  Source source;
  std::unique_ptr<ScratchFile> whole = std::make_unique<ScratchFile>();
  std::unique_ptr<ScratchFile> withoutNote = std::make_unique<ScratchFile>();
};

Source sourceOf(const RealPicture& picture) {
  Source source;
  for (const FieldValue& field : picture.fields()) {
    source.exif = source.exif || field.id == host::fieldExifSegment;
    source.xmp = source.xmp || field.id == host::fieldXmp;
    source.iptc =
        source.iptc || (field.id >= host::fieldIptcFirst && field.id <= host::fieldIptcLast);
  }
  return source;
}

// Saves the picture with a built segment, and once more without its maker note.
std::optional<Saved> save(const std::string& path) {
  RealPicture picture(path);
  if (!picture.wasRead()) return std::nullopt;
  Saved saved;
  saved.sourcePath = path;
  saved.source = sourceOf(picture);
  picture.drop(host::fieldExifSegment);
  EXPECT_EQ(picture.save(saved.whole->path(), true), 1);
  RealPicture again(path);
  again.drop(host::fieldExifSegment);
  again.drop(makerNote);
  EXPECT_EQ(again.save(saved.withoutNote->path(), true), 1);
  return saved;
}

class Validation : public testing::Test {
 protected:
  void SetUp() override { SetEnvironmentVariableA("KFIO_INI", settings_.path().c_str()); }

  std::vector<Saved> saveSamples() {
    std::vector<Saved> saved;
    std::error_code missing;
    for (const char* folder : {"jpeg", "ciff"}) {
      for (const auto& file : std::filesystem::directory_iterator(
               std::filesystem::path(KF_SAMPLES) / folder, missing)) {
        if (auto one = save(file.path().string())) saved.push_back(std::move(*one));
      }
    }
    return saved;
  }
  // Counts the complaint under the rule that explains it, or fails.
  void explain(const std::string& complaint, const Saved& saved) {
    for (const Explanation& row : explanations) {
      if (!row.explains(complaint, saved.source)) continue;
      ++explained_[row.rule];
      return;
    }
    ADD_FAILURE() << saved.sourcePath << ": " << complaint;
  }
  ScratchFile settings_;
  std::map<std::string, unsigned> explained_;
};

TEST_F(Validation, SavedFilesGiveNoComplaintThatTheSourceDoesNot) {
  const std::vector<Saved> all = saveSamples();
  if (all.empty()) GTEST_SKIP() << "no real files in " << KF_SAMPLES;
  std::vector<std::string> paths;
  for (const Saved& saved : all) {
    paths.insert(paths.end(), {saved.sourcePath, saved.whole->path(), saved.withoutNote->path()});
  }
  auto complaints = complaintsAbout(paths);
  unsigned same = 0, ofNotes = 0;
  for (const Saved& saved : all) {
    const std::set<std::string>& known = complaints[saved.sourcePath];
    const std::set<std::string>& rest = complaints[saved.withoutNote->path()];
    for (const std::string& complaint : rest) {
      if (known.count(complaint) == 0) explain(complaint, saved);
    }
    // What comes and goes with a maker note lies in it: it names places in the file that it came
    // from, which nobody outside knows how to move. The place of the note itself may be odd.
    for (const std::string& complaint : complaints[saved.whole->path()]) {
      if (known.count(complaint) != 0) {
        ++same;
      } else if (rest.count(complaint) == 0 && !has(complaint, "Odd offset for ")) {
        ++ofNotes;
      }
    }
  }
  std::printf("%zu files, %u complaints as in the source, %u inside moved maker notes", all.size(),
              same, ofNotes);
  for (const auto& [rule, count] : explained_) std::printf(", %u: %s", count, rule.c_str());
  std::printf("\n");
  EXPECT_GT(same, 0u) << "exiftool did not run";
}

}  // namespace
