// The multi-picture segment of one picture in the place that it gets in a file.
#pragma once

#include "fiohost/mpo_edit/mpf_block.h"

namespace fiohost {

// Where numbers in attributes go: the new number of each old one from 1, 0 where the image is gone.
using NewNumbers = std::vector<std::uint32_t>;

// The attribute "base viewpoint" and the image's own number as they are in a picture's segment,
// changed to the new numbers. A picture without such a segment stays as it is.
void renumber(ByteBlock& stream, const NewNumbers& numbers, std::uint32_t ownNumber);

// Gives a picture, which is to be the first, the index of the file in its segment; its attributes
// stay. Throws Failure when the segment would be too long. Answers the place of the byte-order
// field.
std::uint64_t placeIndex(ByteBlock& stream, const MpfDirectory& index, platform::ByteOrder order);

// Takes the index out of a picture that is not the first any more.
void dropIndex(ByteBlock& stream);

// Gives a picture without a segment one with its number.
void placeNumber(ByteBlock& stream, std::uint32_t number);

}  // namespace fiohost
