// JPEG streams walked from their beginning to their end.
#include "fiohost/streams/jpeg_stream.h"

#include <gtest/gtest.h>

#include "tests/support/jpeg_builder.h"

namespace fiohost {
namespace {

using support::Bytes;
using support::joined;
using support::JpegBuilder;

TEST(JpegStream, EndsWithItsEndMarkerWhateverTheScansAre) {
  for (const Bytes& stream :
       {JpegBuilder().build(), JpegBuilder().progressive().build(),
        JpegBuilder().restartEvery(1).build(), JpegBuilder().separateScans().build(),
        JpegBuilder().arithmetic().build(), JpegBuilder().size(300, 200).quality(100).build()}) {
    const Bytes more = joined(stream, {0xFF, 0xD9, 1, 2});
    const auto walked = streamAt(more, 0);
    ASSERT_TRUE(walked.has_value());
    EXPECT_TRUE(walked->complete);
    EXPECT_TRUE(walked->tidy);
    EXPECT_EQ(walked->end, stream.size());
  }
}

TEST(JpegStream, APictureInsideASegmentIsNoStream) {
  const Bytes inner = JpegBuilder().build();
  const Bytes outer = JpegBuilder().app(11, inner).build();
  const auto streams = streamsFrom(joined(outer, JpegBuilder().build()), 0);
  ASSERT_EQ(streams.size(), 2U);
  EXPECT_EQ(streams[0].end, outer.size());
  EXPECT_EQ(streams[1].start, outer.size());
}

TEST(JpegStream, SegmentsAreTheirBytes) {
  const Bytes file = JpegBuilder().app(11, support::bytesOf("payload")).build();
  const JpegStream stream = *streamAt(file, 0);
  const auto found = std::find_if(stream.segments.begin(), stream.segments.end(),
                                  [](const StreamSegment& segment) { return segment.isApp(11); });
  ASSERT_NE(found, stream.segments.end());
  EXPECT_TRUE(beginsWith(payloadOf(file, *found), "payload"));
  EXPECT_EQ(found->size, 7U);
  EXPECT_EQ(found->payload - found->start, 4U);
  ByteBlock copy;
  appendSegment(copy, found->marker, payloadOf(file, *found));
  EXPECT_TRUE(std::equal(copy.begin(), copy.end(),
                         file.begin() + static_cast<std::ptrdiff_t>(found->start)));
}

TEST(JpegStream, ACutStreamEndsWhereTheNextBegins) {
  Bytes cut = JpegBuilder().build();
  cut.resize(cut.size() - 40);
  const Bytes file = joined(cut, JpegBuilder().build());
  const auto streams = streamsFrom(file, 0);
  ASSERT_EQ(streams.size(), 2U);
  EXPECT_FALSE(streams[0].complete);
  EXPECT_EQ(streams[0].end, cut.size());
  EXPECT_TRUE(streams[1].complete);
}

TEST(JpegStream, OtherDataBehindAPictureHoldsNoStreams) {
  Bytes file = JpegBuilder().build();
  const std::size_t size = file.size();
  // A start, a segment and bytes that are no marker; then a start without a frame.
  for (const Bytes& other :
       {Bytes{0xFF, 0xD8, 0xFF, 0xE0, 0, 4, 1, 2, 'n', 'o', 0xFF, 0xDA, 0, 2, 0xFF, 0xD9},
        Bytes{0xFF, 0xD8, 0xFF, 0xD9}, Bytes{0xFF, 0xD8, 0xFF}}) {
    file = joined(file, other);
  }
  const auto streams = streamsFrom(file, 0);
  ASSERT_EQ(streams.size(), 1U);
  EXPECT_EQ(streams[0].end, size);
  EXPECT_FALSE(streamAt(file, 1).has_value());
  EXPECT_TRUE(streamsFrom(Bytes{}, 0).empty());
}

TEST(JpegStream, AFileMadeOfStartsIsLeftAfterABoundedSearch) {
  // Each start leads through a scan to the end of the file, which has no end marker.
  const Bytes start = {0xFF, 0xD8, 0xFF, 0xC0, 0, 2, 0xFF, 0xDA, 0, 2, 0xFF, 0xE1, 0, 10};
  Bytes file = JpegBuilder().build();
  for (int i = 0; i < 20000; ++i) file.insert(file.end(), start.begin(), start.end());
  file.resize(file.size() + 4000000);
  EXPECT_EQ(streamsFrom(file, 0).size(), 1U);
}

}  // namespace
}  // namespace fiohost
