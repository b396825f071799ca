// What every call of the MPO family leaves behind: nothing, also when memory runs out on the way.
#include "platform/posix/diagnostics.h"
#include "tests/mpo/stream_codec.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/scratch_file.h"

namespace {

using namespace test;
using platform::posix::liveCounts;
using support::bytesOf;
using support::MpoFileBuilder;

int allocationsLeft = -1;

// Fails every allocation from the n-th on.
bool allow(std::size_t) {
  return allocationsLeft != 0 && (allocationsLeft < 0 || allocationsLeft-- > 0);
}

class MpoResources : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    codec_.install();
    the().write = [](auto&, auto&, auto&) { return 1; };
    MpoFileBuilder builder(3);
    for (std::size_t k = 0; k < 3; ++k) {
      builder.stream(k).xmp(bytesOf("<x/>")).icc(1, 1, bytesOf("p")).app(7, bytesOf("seven"));
    }
    scratch_.write(builder.build());
    // Handles that are made once and kept are made before anything is counted.
    FileData warmUp(describeMpo(scratch_.path()));
    name(warmUp);
    read(warmUp, -1);
  }
  void TearDown() override { platform::posix::setAllocationFilter(nullptr); }

  void name(const FileData& data) const {
    data.with<host::FileDataRecord>(
        [&](auto& record) { std::strcpy(record.ansiPath, scratch_.path().c_str()); });
  }
  static int refuse(int, void*, void*, HGLOBAL) { return answer; }
  static inline int answer = 1;
  static int read(const FileData& data, int index) {
    return entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
        data.handle(), 26, reinterpret_cast<void*>(&refuse), nullptr, index);
  }

  // Runs use with the first 0, 1, 2 ... allocations granted, until it reports success.
  template <typename Use>
  void withFailingMemory(Use use) {
    bool done = false;
    for (int granted = 0; !done && granted < 200; ++granted) {
      const auto before = liveCounts();
      {
        allocationsLeft = granted;
        platform::posix::setAllocationFilter(&allow);
        done = use();
        platform::posix::setAllocationFilter(nullptr);
        allocationsLeft = -1;
      }
      EXPECT_EQ(liveCounts(), before) << granted;
    }
    EXPECT_TRUE(done);
  }

  StreamCodec codec_;
  ScratchFile scratch_;
};

TEST_F(MpoResources, ARefusedDescriptionLeavesNothing) {
  const auto before = liveCounts();
  for (const std::size_t read : {0u, 1u, 2u}) {
    codec_ = {};
    codec_.failAt = read;
    codec_.install();
    EXPECT_EQ(describeMpo(scratch_.path()), nullptr);
    EXPECT_EQ(liveCounts(), before) << "the property record of the first image included";
  }
}

TEST_F(MpoResources, AFileThatIsNoneLeavesNothing) {
  const ScratchFile plain(support::JpegBuilder().build());
  const auto before = liveCounts();
  EXPECT_EQ(describeMpo(plain.path()), nullptr);
  EXPECT_EQ(describeMpo(scratch_.path() + "none"), nullptr);
  EXPECT_EQ(liveCounts(), before);
}

TEST_F(MpoResources, DescribingOwnsTheRecordAndItsPropertiesOnly) {
  const auto before = liveCounts();
  {
    const FileData data(describeMpo(scratch_.path()));
    const auto after = liveCounts();
    EXPECT_EQ(+after.blocks, before.blocks + 4) << "record, property record, XMP, ICC";
    EXPECT_EQ(+after.locks, +before.locks);
    EXPECT_EQ(+after.files, +before.files);
  }
  EXPECT_EQ(liveCounts(), before);
}

TEST_F(MpoResources, EveryReadLeavesOnlyFields) {
  const auto before = liveCounts();
  for (const int given : {1, 0, -1}) {
    answer = given;
    const FileData data(describeMpo(scratch_.path()));
    name(data);
    for (const int index : {-1, 0, 1, 2, 3, 4}) {
      read(data, index);
      const auto after = liveCounts();
      EXPECT_EQ(+after.locks, +before.locks);
      EXPECT_EQ(+after.files, +before.files);
      EXPECT_EQ(+after.views, +before.views);
    }
    answer = 1;
  }
  EXPECT_EQ(liveCounts(), before);
}

TEST_F(MpoResources, DescribingWithoutMemoryGivesNothing) {
  withFailingMemory([&] {
    the().reports.clear();
    const FileData data(describeMpo(scratch_.path()));
    const bool described = data.handle() != nullptr;
    EXPECT_EQ(the().reports.empty(), described);
    if (!described) {
      EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{1004, 1, 1890, 1891, 305}));
    }
    // Fields that could not be added are left out.
    return described && fieldsOf(data.properties()).size() == 3;
  });
}

TEST_F(MpoResources, ReadingWithoutMemoryIsReportedOrLeavesFieldsOut) {
  withFailingMemory([&] {
    const int granted = allocationsLeft;
    allocationsLeft = -1;
    const FileData data(describeMpo(scratch_.path()));
    name(data);
    the().reports.clear();
    allocationsLeft = granted;
    const int result = read(data, 2);
    allocationsLeft = -1;
    if (result != 1) {
      EXPECT_EQ(result, 0);
      EXPECT_THAT(reportedErrors(), testing::ElementsAre(std::vector{1004, 2, 1890, 1891, 524}));
    }
    return result == 1 && fieldsOf(data.properties()).size() >= 6;
  });
}

TEST_F(MpoResources, WritingWithoutMemoryGivesZeroWithoutAReport) {
  withFailingMemory([&] {
    const int granted = allocationsLeft;
    allocationsLeft = -1;
    const FileData data(sizeof(host::FileDataRecord));
    name(data);
    the().reports.clear();
    the().write = [](const host::OutputDescriptor& output, const host::CodecCallback& callback,
                     auto&) {
      host::SegmentBlock block = {};
      block.index = 1;
      callback.callback(callback.context, host::eventSegment, 0, &block);
      const std::size_t length = block.payloadLength + 2;
      const host::u8 head[] = {0xFF,
                               0xD8,
                               0xFF,
                               0xE2,
                               static_cast<host::u8>(length >> 8),
                               static_cast<host::u8>(length)};
      output.write(output.file, sizeof head, head);
      return output.write(output.file, block.payloadLength, block.payload);
    };
    allocationsLeft = granted;
    const int result = entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite)(
        0, data.handle(), nullptr,
        [](void*, host::u32, host::u32, host::u32, host::u32, int, int, host::u32) -> void* {
          return nullptr;
        });
    allocationsLeft = -1;
    EXPECT_TRUE(the().reports.empty());
    EXPECT_TRUE(data.unlocked());
    return result == 1;
  });
}

}  // namespace
