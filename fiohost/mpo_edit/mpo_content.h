// A multi-picture file taken apart into its pictures, and put together again with a right index.
// Nothing is decoded: a picture's bytes stay as they are, apart from its multi-picture segment.
#pragma once

#include "fiohost/mpo_edit/mpo_survey.h"

namespace fiohost {

struct MpoPicture {
  std::string origin;  // "image 2" or a file's name
  ByteBlock stream;
  ByteBlock filling;  // what lies between it and the next
  MpImage entry;      // offset and size are made anew
  ByteBlock uniqueId;
};

struct MpoContent {
  platform::ByteOrder order = platform::ByteOrder::little;
  MpfDirectory index;
  std::vector<MpoPicture> pictures;
  ByteBlock trailing;  // behind the last image
};

// Takes a file apart. Throws Failure when its index is not right.
[[nodiscard]] MpoContent takeApart(ByteView file);

// The same for a file whose index has faults: with the pictures that were found.
[[nodiscard]] MpoContent takeApart(ByteView file, const MpoSurvey& survey);

// Takes pictures in a new order, each named by its number from 1 in content; what is not named is
// left out. All numbers in entries, attributes and identifiers follow. Throws Failure when the
// pictures cannot stand so.
[[nodiscard]] MpoContent arranged(const MpoContent& content,
                                  const std::vector<std::size_t>& numbers);

// With single pictures in front of the image of that number, from 1, or at the end for one more
// than there are. Throws Failure as arranged().
[[nodiscard]] MpoContent withInserted(MpoContent content, std::size_t at,
                                      std::vector<MpoPicture> pictures);

// A JPEG file's first picture as one to insert. Throws Failure when it is none.
[[nodiscard]] MpoPicture singlePicture(ByteView file, const std::string& name);

// The whole file. Throws Failure when it is larger than an index can tell.
[[nodiscard]] ByteBlock putTogether(const MpoContent& content);

}  // namespace fiohost
