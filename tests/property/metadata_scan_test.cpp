// The mapped-file pass: which parts of a real file are decoded, flags, results, what is left.
#include "property/metadata_scan.h"

#include <cstdio>

#include "property/property_record.h"
#include "tests/exif/exif_test.h"
#include "tests/heap/heap_model.h"
#include "tests/support/scratch_file.h"

namespace {

using namespace test;
using property::scanMappedFile;

// A file that is gone at the end.
class TemporaryFile {
 public:
  explicit TemporaryFile(const Bytes& bytes) : scratch_(bytes) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() { EXPECT_EQ(std::remove(path().c_str()), 0) << "left open"; }
  const std::string& path() const { return scratch_.path(); }

 private:
  ScratchFile scratch_;
};

struct Place {
  host::u32 offset, length;
};

class MetadataScan : public ReaderTest {
 protected:
  void SetUp() override {
    ReaderTest::SetUp();
    exif_.set(0, 0x0112, host::kindNumber16, 4009);
    iptc_.set(1, 5, host::kindText, 5601);
  }
  void tag(host::u32 value) {
    platform::LockedGlobal lock(data_.handle());
    std::memcpy(static_cast<host::u8*>(lock.address()) + 746, &value, sizeof value);
  }
  void path(const std::string& text) {
    data_.with<host::FileDataRecord>(
        [&](auto& record) { std::strcpy(record.ansiPath, text.c_str()); });
  }
  void number(std::size_t offset, host::u32 value) {
    platform::LockedGlobal lock(data_.handle());
    std::memcpy(static_cast<host::u8*>(lock.address()) + offset, &value, sizeof value);
  }
  host::u32 number(std::size_t offset) const { return at<host::u32>(data_.bytes(), offset); }
  // Notes a segment at the JPEG map's or the MPO map's offsets.
  void note(std::size_t present, std::size_t offset, std::size_t length, Place place) {
    number(present, 1);
    number(offset, place.offset);
    number(length, place.length);
  }
  std::vector<int> ids() const {
    std::vector<int> ids;
    for (const StoredField& each : storedFields(data_.properties())) ids.push_back(each.id());
    return ids;
  }
  int scan(HGLOBAL* out = nullptr, host::u32 image = 0) {
    const int result = scanMappedFile(data_.handle(), out, image);
    EXPECT_TRUE(data_.unlocked());
    return result;
  }

  // A file with an orientation at 5 and a title in Photoshop resources behind it.
  static Bytes exifOf(host::u16 orientation) {
    TiffBuilder tiff;
    tiff.ifd0().shorts(0x0112, {orientation});
    return exifPayload(tiff.build());
  }
  static Bytes photoshop() {
    return support::joined(support::bytesOf(std::string("Photoshop 3.0\0", 14)),
                           {'8',  'B', 'I', 'M', 4, 4,   0,   0,  0, 0, 0, 8,  //
                            0x1C, 2,   5,   0,   3, 'a', 'b', 'c'});
  }
  const Bytes exifBytes_ = exifOf(6);
  const Bytes fileBytes_ = support::joined(Bytes(5), support::joined(exifBytes_, photoshop()));
  const Place exifPlace_{5, static_cast<host::u32>(exifBytes_.size())};
  const Place iptcPlace_{static_cast<host::u32>(5 + exifBytes_.size()),
                         static_cast<host::u32>(photoshop().size())};

  FileData data_{sizeof(host::MpoFileData)};
};

class JpegScan : public MetadataScan {
 protected:
  void SetUp() override {
    MetadataScan::SetUp();
    tag(0x4750454A);
    path(file_.path());
    note(786, 790, 794, exifPlace_);
    note(798, 802, 806, iptcPlace_);
  }
  TemporaryFile file_{fileBytes_};
};

TEST_F(JpegScan, NotedSegmentsAreDecodedExifFirst) {
  HGLOBAL out = nullptr;
  EXPECT_EQ(scan(&out), 1);
  EXPECT_EQ(out, data_.properties());
  EXPECT_EQ(ids(), (std::vector{3999, 4009, 5601}));
  EXPECT_EQ(number(810), 1u) << "scanned";
  EXPECT_EQ(storedFields(out)[0].descriptor.scanComplete, 1);
}

// The parts lie in the file the other way round.
TEST_F(MetadataScan, ExifComesFirstThenTheHeapThenIptc) {
  const Bytes heap = ModelHeap{false, {{0x0816, texts({"IMG.JPG"})}}}.build();
  const TemporaryFile file(support::joined(photoshop(), support::joined(heap, exifBytes_)));
  const auto iptcSize = static_cast<host::u32>(photoshop().size());
  const auto heapSize = static_cast<host::u32>(heap.size());
  tag(0x4750454A);
  path(file.path());
  note(798, 802, 806, {0, iptcSize});
  note(774, 778, 782, {iptcSize, heapSize});
  note(786, 790, 794, {iptcSize + heapSize, static_cast<host::u32>(exifBytes_.size())});
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 4009, 5000, 2201 + 2834, 5601}));
}

TEST_F(JpegScan, WithoutAnOutPlaceTheResultIsOneAllTheSame) {
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids().size(), 3u);
}

TEST_F(JpegScan, OnlyNotedSegmentsAreDecoded) {
  number(786, 0);
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 5601}));
}

TEST_F(JpegScan, NothingNotedGivesNoRecordAndZeroOnlyWithAnOutPlace) {
  number(786, 0);
  number(798, 0);
  HGLOBAL out = reinterpret_cast<HGLOBAL>(std::uintptr_t{1});
  EXPECT_EQ(scan(&out), 0);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(number(810), 1u);
  number(810, 0);
  EXPECT_EQ(scan(), 1);
}

TEST_F(JpegScan, ACompleteRecordIsAnsweredAtOnce) {
  ASSERT_EQ(scan(), 1);
  number(810, 0);
  the().calls.clear();
  path("no such file");
  HGLOBAL out = nullptr;
  EXPECT_EQ(scan(&out), 1);
  EXPECT_EQ(out, data_.properties());
  EXPECT_EQ(ids().size(), 3u);
  EXPECT_THAT(the().calls, testing::ElementsAre("gfioGetFileSourcePath"));
}

TEST_F(JpegScan, OnlyAHeaderFieldTellsThatTheScanIsComplete) {
  ASSERT_EQ(scan(), 1);
  platform::LockedGlobal lock(data_.properties());
  auto* header = static_cast<host::PropertyField*>(
      static_cast<void*>(static_cast<host::u8*>(lock.address()) + 8));
  header->fieldId = 4000;
  EXPECT_FALSE(property::isScanComplete(data_.properties()));
  header->fieldId = 3999;
  EXPECT_TRUE(property::isScanComplete(data_.properties()));
  header->scanComplete = 2;
  EXPECT_FALSE(property::isScanComplete(data_.properties()));
  EXPECT_FALSE(property::isScanComplete(nullptr));
}

TEST_F(JpegScan, AScannedRecordGivesZero) {
  number(810, 1);
  HGLOBAL out = nullptr;
  EXPECT_EQ(scan(&out), 0);
  EXPECT_TRUE(ids().empty());
}

TEST_F(JpegScan, AFileThatCannotBeMappedChangesNothing) {
  const std::vector<host::u8> before = data_.bytes();
  const TemporaryFile empty({});
  for (const std::string& name : {std::string("no such file"), std::string(), empty.path()}) {
    path(name);
    HGLOBAL out = nullptr;
    EXPECT_EQ(scan(&out), 0) << name;
    EXPECT_EQ(number(810), 0u);
  }
  path(file_.path());
  EXPECT_EQ(data_.bytes(), before);
}

TEST_F(JpegScan, TheWidePathComesFirst) {
  std::wstring wide(file_.path().begin(), file_.path().end());
  path("no such file");
  data_.with<host::FileDataRecord>([&](auto& record) {
    record.pathFlags = host::pathFlagWide;
    record.widePath = reinterpret_cast<host::u64>(wide.data());
  });
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids().size(), 3u);
}

TEST_F(JpegScan, ANameWithoutAnEndIsNoPath) {
  data_.with<host::FileDataRecord>(
      [](auto& record) { std::memset(record.ansiPath, 'x', sizeof record.ansiPath); });
  EXPECT_EQ(scan(), 0);
}

TEST_F(JpegScan, PlacesOutsideTheFileGiveNothing) {
  const auto end = static_cast<host::u32>(fileBytes_.size());
  for (const host::u32 offset : {end, end + 1, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
    note(786, 790, 794, {offset, 100});
    note(798, 802, 806, {offset, 100});
    number(810, 0);
    EXPECT_EQ(scan(), 1);
    EXPECT_TRUE(ids().empty());
  }
}

TEST_F(JpegScan, TheIptcStreamEndsWithTheSegmentAndWithTheFile) {
  number(786, 0);
  number(806, 0xFFFFFFFF);
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 5601}));
  number(810, 0);
  doubles::freeProperty(data_.properties());
  data_.with([](auto& data) { data.record.propertyRecord = 0; });
  number(806, 14 + 12 + 6);  // one byte of the title is inside
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids().size(), 0u) << "the clipped dataset is empty";
  number(810, 0);
  number(806, 13);
  EXPECT_EQ(scan(), 1);
  EXPECT_TRUE(ids().empty());
}

TEST_F(JpegScan, TheRecordIsKeptWhereItsSizeEnds) {
  FileData small(sizeof(host::JpegFileData));
  {
    platform::LockedGlobal from(data_.handle());
    platform::LockedGlobal to(small.handle());
    std::memcpy(to.address(), from.address(), sizeof(host::JpegFileData));
  }
  EXPECT_EQ(scanMappedFile(small.handle(), nullptr, 0), 1);
  EXPECT_EQ(at<host::u32>(small.bytes(), 810), 1u);
}

TEST_F(JpegScan, AJpegRecordsBytesBehindItsEndStay) {
  number(814, 0xFFFFFFFF);
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(number(814), 0xFFFFFFFFu);
}

TEST_F(JpegScan, ARecordThatIsNoneGivesZero) {
  EXPECT_EQ(scanMappedFile(nullptr, nullptr, 0), 0);
  FileData small(745);
  EXPECT_EQ(scanMappedFile(small.handle(), nullptr, 0), 0);
  EXPECT_TRUE(small.unlocked());
}

TEST_F(JpegScan, AnotherTagIsMappedAndNothingIsParsed) {
  tag(0x12345678);
  HGLOBAL out = nullptr;
  EXPECT_EQ(scan(&out), 0);
  EXPECT_EQ(number(810), 0u);
  EXPECT_TRUE(ids().empty());
  doubles::reserveFields(property::propertySlot(*static_cast<host::FileDataRecord*>(
                             platform::LockedGlobal(data_.handle()).address())),
                         1);
  EXPECT_EQ(scan(&out), 1);
  EXPECT_EQ(out, data_.properties());
  EXPECT_EQ(storedFields(out)[0].descriptor.scanComplete, 1);
}

TEST_F(JpegScan, RefusedFieldsStillCountAsScanned) {
  the().refuseReservation = true;
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(number(810), 1u);
  EXPECT_EQ(data_.properties(), nullptr);
  EXPECT_TRUE(the().reports.empty());
}

// The same file four times behind one another is an MPO file as far as this pass goes.
class MpoScan : public MetadataScan {
 protected:
  void SetUp() override {
    MetadataScan::SetUp();
    tag(0x4D504600);
    path(file_.path());
    note(826, 842, 846, {0, exifPlace_.length});
    number(764, 3);
    number(768, 1);
    for (host::u32 image = 0; image < 3; ++image) {
      number(1055 + 303 * image + 55, image * exifPlace_.length);
    }
  }
  int orientation() const {
    const std::vector<StoredField> fields = storedFields(data_.properties());
    return fields.size() == 2 ? static_cast<int>(fields[1].number()) : -1;
  }
  TemporaryFile file_{support::joined(exifOf(1), support::joined(exifOf(2), exifOf(3)))};
};

TEST_F(MpoScan, PlacesCountFromTheStartOfTheImage) {
  EXPECT_EQ(scan(nullptr, 1), 1);
  EXPECT_EQ(orientation(), 2);
}

TEST_F(MpoScan, TheFirstImageIsTheFirstEntrys) {
  number(1055 + 55, 2 * exifPlace_.length);
  EXPECT_EQ(scan(nullptr, 0), 1);
  EXPECT_EQ(orientation(), 3);
}

TEST_F(MpoScan, WithoutEntriesTheImageStartsAt0) {
  number(768, 0);
  EXPECT_EQ(scan(nullptr, 1), 1);
  EXPECT_EQ(orientation(), 1);
}

TEST_F(MpoScan, WithoutImagesTheImageStartsAt0) {
  number(764, 0);
  EXPECT_EQ(scan(nullptr, 1), 1);
  EXPECT_EQ(orientation(), 1);
}

TEST_F(MpoScan, AnEntryThatIsNotThereIsNotRead) {
  number(764, 0xFFFFFFFF);
  EXPECT_EQ(scan(nullptr, 200), 1);
  EXPECT_EQ(orientation(), 1);
}

TEST_F(MpoScan, AnImageThatStartsBehindTheFileHasNothing) {
  number(1055 + 303 + 55, 0xFFFFFFFF);
  EXPECT_EQ(scan(nullptr, 1), 1);
  EXPECT_EQ(orientation(), -1);
}

TEST_F(MpoScan, ScannedIsSetAndTheNext16BitsAreCleared) {
  number(874, 0);
  number(878, 0xFFFFFFFF);
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(number(874), 1u);
  EXPECT_EQ(number(878), 0xFFFF0000u);
}

TEST_F(MpoScan, IptcIsFoundAtItsOwnOffsets) {
  const TemporaryFile file(support::joined(Bytes(9), photoshop()));
  path(file.path());
  number(826, 0);
  note(850, 866, 870, {9, static_cast<host::u32>(photoshop().size())});
  number(764, 0);
  EXPECT_EQ(scan(), 1);
  EXPECT_EQ(ids(), (std::vector{3999, 5601}));
}

}  // namespace
