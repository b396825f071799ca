#include "fiohost/mpo_edit/mpo_content.h"

#include <algorithm>
#include <limits>

#include "fiohost/failure.h"
#include "fiohost/mpo_edit/picture_index.h"
#include "host/mpo.h"

namespace fiohost {
namespace {

using mpo::MpfValue;
using std::uint32_t;
using std::uint64_t;

constexpr uint32_t classLargeThumbnail = 1;
constexpr uint32_t classMultiFrame = 2;
constexpr uint32_t classPrimary = 3;

std::string imageText(std::size_t number) { return "image " + std::to_string(number); }

ByteBlock copyOf(ByteView file, uint64_t from, uint64_t to) {
  const ByteView part =
      file.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
  return {part.begin(), part.end()};
}

ByteBlock uniqueIdOf(const MpoSurvey& survey, std::size_t image) {
  const MpfEntry* list = survey.block.index->find(MpfValue::uidList);
  const std::size_t from = image * host::mpoUidLength;
  if (list == nullptr || list->value.size() < from + host::mpoUidLength) return {};
  return copyOf(list->value, from, from + host::mpoUidLength);
}

// Where the next picture of the file that belongs to an image begins.
uint64_t nextListed(const MpoSurvey& survey, uint64_t end, uint64_t fileSize) {
  uint64_t next = fileSize;
  for (const auto& stream : survey.streamOf) {
    if (!stream) continue;
    const uint64_t start = survey.streams[*stream].start;
    if (start >= end) next = std::min(next, start);
  }
  return next;
}

MpImage withoutWrongDependents(MpImage entry, std::size_t own, std::size_t count) {
  for (std::uint16_t& dependent : entry.dependents) {
    if (dependent > count || dependent == own) dependent = 0;
  }
  return entry;
}

// The first of the marked images stays marked.
void markOneRepresentative(std::vector<MpoPicture>& pictures, bool wanted) {
  bool seen = false;
  for (MpoPicture& picture : pictures) {
    if (seen) picture.entry.attribute &= ~mpRepresentative;
    seen = seen || (picture.entry.attribute & mpRepresentative) != 0;
  }
  if (!seen && wanted) pictures.front().entry.attribute |= mpRepresentative;
}

bool anyRepresentative(const std::vector<MpoPicture>& pictures) {
  return std::any_of(pictures.begin(), pictures.end(), [](const MpoPicture& picture) {
    return (picture.entry.attribute & mpRepresentative) != 0;
  });
}

// Dependents by their new numbers, those that are left moved up; a parent without any is none.
void followDependents(std::vector<MpoPicture>& pictures, const NewNumbers& numbers) {
  for (MpoPicture& picture : pictures) {
    auto& dependents = picture.entry.dependents;
    const bool had = dependents[0] != 0 || dependents[1] != 0;
    for (std::uint16_t& dependent : dependents) {
      if (dependent != 0) dependent = static_cast<std::uint16_t>(numbers[dependent - 1U]);
    }
    std::stable_partition(dependents.begin(), dependents.end(), [](auto one) { return one != 0; });
    if (had && dependents[0] == 0) picture.entry.attribute &= ~mpParent;
  }
}

// Which images others name as their dependents, by number.
std::vector<bool> namedImages(const std::vector<MpoPicture>& pictures) {
  std::vector<bool> named(pictures.size() + 1);
  for (const MpoPicture& picture : pictures) {
    for (const std::uint16_t dependent : picture.entry.dependents) named[dependent] = true;
  }
  return named;
}

// A child whose parent was left out stands alone.
void freeOrphans(std::vector<MpoPicture>& pictures, const std::vector<bool>& namedBefore,
                 const NewNumbers& numbers) {
  const std::vector<bool> named = namedImages(pictures);
  for (std::size_t old = 0; old < numbers.size(); ++old) {
    const uint32_t number = numbers[old];
    const bool orphan = number != 0 && namedBefore[old + 1] && !named[number];
    if (orphan) pictures[number - 1].entry.attribute &= ~mpChild;
  }
}

void checkOrder(const std::vector<MpoPicture>& pictures) {
  if (pictures.size() < 2) {
    throw Failure("one picture alone is no multi-picture file",
                  "take it out with \"fiohost mpo extract --jpeg\"");
  }
  if (mpClassOf(pictures.front().entry) == classLargeThumbnail) {
    throw Failure(pictures.front().origin + " is a large thumbnail and cannot stand first",
                  "keep the picture that it belongs to in front");
  }
  for (std::size_t i = 1; i < pictures.size(); ++i) {
    if (mpClassOf(pictures[i].entry) != classPrimary) continue;
    throw Failure(pictures[i].origin + " is the file's primary picture, which stands first",
                  "move the others only");
  }
}

bool hasAttributes(const MpoPicture& picture) {
  const JpegStream stream = firstStream(picture.stream);
  const StreamSegment* segment = mpfSegmentOf(picture.stream, stream);
  return segment != nullptr && parseMpf(payloadOf(picture.stream, *segment)).attributes.has_value();
}

// Every picture's own number and the viewpoints that attributes name.
void renumberAll(std::vector<MpoPicture>& pictures, const NewNumbers& numbers) {
  for (std::size_t i = 0; i < pictures.size(); ++i) {
    renumber(pictures[i].stream, numbers, static_cast<uint32_t>(i + 1));
  }
}

uint32_t frameCount(const std::vector<MpoPicture>& pictures) {
  return static_cast<uint32_t>(std::count_if(
      pictures.begin(), pictures.end(),
      [](const MpoPicture& picture) { return (picture.entry.attribute & mpChild) == 0; }));
}

// A camera may have taken more frames than the file holds; a number that told of those in the file
// goes on telling that.
void followFrames(MpoContent& content, uint32_t before) {
  MpfEntry* frames = content.index.find(MpfValue::totalFrames);
  if (frames == nullptr) return;
  MpfBlock block;
  block.order = content.order;
  if (mpfNumber(block, *frames) != before) return;
  *frames = mpfNumberEntry(MpfValue::totalFrames, frameCount(content.pictures), content.order);
}

// 128 bits that depend on every byte of the picture (two FNV-1a sums), as 32 digits and a NUL.
ByteBlock newUniqueId(ByteView stream) {
  ByteBlock id;
  for (uint64_t sum : {0xCBF29CE484222325ULL, 0x84222325CBF29CE4ULL}) {
    for (const std::uint8_t byte : stream) sum = (sum ^ byte) * 0x100000001B3ULL;
    for (int shift = 60; shift >= 0; shift -= 4) {
      id.push_back(static_cast<std::uint8_t>("0123456789ABCDEF"[sum >> shift & 0xF]));
    }
  }
  id.push_back(0);
  return id;
}

void storeIdentifiers(MpfDirectory& index, const std::vector<MpoPicture>& pictures) {
  MpfEntry* list = index.find(MpfValue::uidList);
  if (list == nullptr) return;
  list->value.clear();
  for (const MpoPicture& picture : pictures) {
    appendBytes(list->value,
                picture.uniqueId.empty() ? newUniqueId(picture.stream) : picture.uniqueId);
  }
  list->count = static_cast<uint32_t>(list->value.size());
}

void storeEntry(MpfDirectory& directory, MpfEntry entry) {
  const auto after = std::find_if(directory.entries.begin(), directory.entries.end(),
                                  [&](const MpfEntry& other) { return other.tag >= entry.tag; });
  if (after != directory.entries.end() && after->tag == entry.tag) {
    *after = std::move(entry);
  } else {
    directory.entries.insert(after, std::move(entry));
  }
}

uint32_t narrowed(uint64_t number) {
  if (number <= std::numeric_limits<uint32_t>::max()) return static_cast<uint32_t>(number);
  throw Failure("the file would be larger than 4 GB, which an index cannot tell",
                "leave pictures out");
}

// Sizes and offsets of the pictures as they lie one after the other.
std::vector<MpImage> imageTable(const MpoContent& content, uint64_t header) {
  std::vector<MpImage> images;
  uint64_t place = 0;
  for (const MpoPicture& picture : content.pictures) {
    images.push_back(picture.entry);
    images.back().size = narrowed(picture.stream.size());
    images.back().offset = images.size() == 1 ? 0 : narrowed(place - header);
    place += picture.stream.size() + picture.filling.size();
  }
  return images;
}

}  // namespace

MpoContent takeApart(ByteView file) {
  const MpoSurvey survey = surveyMpo(file);
  if (survey.faults.empty()) return takeApart(file, survey);
  const FoundFault& first = survey.faults.front();
  const std::string where = first.image != 0 ? imageText(first.image) + ": " : "";
  const bool ours = first.kind != IndexFault::noIndex && survey.repairable();
  throw Failure(where + first.problem,
                ours ? "put the index right with \"fiohost mpo repair\" first" : first.advice);
}

MpoContent takeApart(ByteView file, const MpoSurvey& survey) {
  MpoContent content = {survey.block.order, *survey.block.index, {}, {}};
  uint64_t lastEnd = 0;
  std::vector<std::size_t> found;
  for (std::size_t i = 0; i < survey.images.size(); ++i) {
    MpoPicture picture = {imageText(i + 1), {}, {}, survey.images[i], uniqueIdOf(survey, i)};
    picture.entry = withoutWrongDependents(picture.entry, i + 1, survey.images.size());
    if (survey.streamOf[i]) {
      const JpegStream& stream = survey.streams[*survey.streamOf[i]];
      picture.stream = copyOf(file, stream.start, stream.end);
      const uint64_t next = nextListed(survey, stream.end, file.size());
      if (next < file.size()) picture.filling = copyOf(file, stream.end, next);
      lastEnd = std::max(lastEnd, stream.end);
      found.push_back(i + 1);
    }
    content.pictures.push_back(std::move(picture));
  }
  content.trailing = copyOf(file, lastEnd, file.size());
  markOneRepresentative(content.pictures, false);
  return found.size() == content.pictures.size() ? content : arranged(content, found);
}

MpoContent arranged(const MpoContent& content, const std::vector<std::size_t>& order) {
  MpoContent result = {content.order, content.index, {}, content.trailing};
  NewNumbers numbers(content.pictures.size());
  for (const std::size_t number : order) {
    result.pictures.push_back(content.pictures.at(number - 1));
    numbers[number - 1] = static_cast<uint32_t>(result.pictures.size());
  }
  checkOrder(result.pictures);
  markOneRepresentative(result.pictures, anyRepresentative(content.pictures));
  followDependents(result.pictures, numbers);
  freeOrphans(result.pictures, namedImages(content.pictures), numbers);
  renumberAll(result.pictures, numbers);
  followFrames(result, frameCount(content.pictures));
  return result;
}

MpoContent withInserted(MpoContent content, std::size_t at, std::vector<MpoPicture> inserted) {
  const std::size_t count = content.pictures.size();
  const uint32_t frames = frameCount(content.pictures);
  if (count + inserted.size() > host::mpoMostImages) {
    throw Failure(
        "a multi-picture file takes " + std::to_string(host::mpoMostImages) + " pictures at most",
        "insert fewer");
  }
  const MpImage& model = content.pictures.front().entry;
  const bool multiFrame = mpClassOf(model) == classMultiFrame;
  const bool numbered =
      std::any_of(content.pictures.begin(), content.pictures.end(), &hasAttributes);
  for (MpoPicture& picture : inserted) {
    picture.entry = {multiFrame ? model.attribute & mpTypeMask : 0, 0, 0, {0, 0}};
    if (numbered) placeNumber(picture.stream, 1);
  }
  NewNumbers numbers(count);
  for (std::size_t i = 0; i < count; ++i) {
    numbers[i] = static_cast<uint32_t>(i + 1 < at ? i + 1 : i + 1 + inserted.size());
  }
  content.pictures.insert(content.pictures.begin() + static_cast<std::ptrdiff_t>(at - 1),
                          std::make_move_iterator(inserted.begin()),
                          std::make_move_iterator(inserted.end()));
  checkOrder(content.pictures);
  followDependents(content.pictures, numbers);
  renumberAll(content.pictures, numbers);
  followFrames(content, frames);
  return content;
}

MpoPicture singlePicture(ByteView file, const std::string& name) {
  const std::optional<JpegStream> stream = streamAt(file, 0);
  if (!stream || !stream->complete) {
    throw Failure(name + ": this is no whole JPEG picture", "check the file");
  }
  const StreamSegment* segment = mpfSegmentOf(file, *stream);
  if (segment != nullptr && parseMpf(payloadOf(file, *segment)).index) {
    throw Failure(name + ": it holds several pictures already",
                  "take them out with \"fiohost mpo extract --jpeg\" first");
  }
  return {name, copyOf(file, 0, stream->end), {}, {}, {}};
}

ByteBlock putTogether(const MpoContent& content) {
  MpoContent parts = content;
  storeIdentifiers(parts.index, parts.pictures);
  const auto count = static_cast<uint32_t>(parts.pictures.size());
  storeEntry(parts.index, mpfNumberEntry(MpfValue::imageCount, count, parts.order));
  for (std::size_t i = 1; i < parts.pictures.size(); ++i) dropIndex(parts.pictures[i].stream);
  ByteBlock& first = parts.pictures.front().stream;
  // The first time settles where everything lies, the second enters it.
  std::vector<MpImage> images(parts.pictures.size(), MpImage{});
  for (int pass = 0; pass < 2; ++pass) {
    storeEntry(parts.index, mpTableEntry(images, parts.order));
    const uint64_t header = placeIndex(first, parts.index, parts.order);
    images = imageTable(parts, header);
  }
  ByteBlock file;
  for (const MpoPicture& picture : parts.pictures) {
    appendBytes(file, picture.stream);
    appendBytes(file, picture.filling);
  }
  appendBytes(file, parts.trailing);
  return file;
}

}  // namespace fiohost
