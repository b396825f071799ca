#include "tests/mutations/sources.h"

#include "tests/support/mpf_builder.h"
#include "tests/support/rich_parts.h"

namespace mutations {

using support::ByteOrder;
using support::Bytes;
using support::JpegBuilder;
using support::Layout;

std::vector<Bytes> sources() {
  std::vector<Bytes> files;
  for (const Layout layout : {Layout::grey, Layout::colour, Layout::cmyk, Layout::ycck}) {
    files.push_back(JpegBuilder().layout(layout).build());
  }
  files.push_back(JpegBuilder().progressive().sampling(1, 1).build());
  files.push_back(JpegBuilder().size(70, 50).restartEvery(2).separateScans().build());
  for (const ByteOrder order : {ByteOrder::little, ByteOrder::big}) {
    files.push_back(JpegBuilder().withoutJfif().exif(support::richTiff(order)).build());
    files.push_back(support::MpoFileBuilder(2, order).build());
    files.push_back(support::MpoFileBuilder(5, order).build());
  }
  for (const bool bigEndian : {false, true}) {
    files.push_back(JpegBuilder().cameraHeap(support::richHeap(bigEndian)).build());
  }
  files.push_back(JpegBuilder().photoshop(support::iptcResource()).build());
  files.push_back(support::withEverySegment({}).build());
  return files;
}

}  // namespace mutations
