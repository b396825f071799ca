// File-data records that are none: null, freed, too small, of another format. Every entry answers
// what it answers for such a record, and leaves it unlocked and its bytes alone where it is
// refused.
#include "tests/hosts/host.h"
#include "tests/support/mpf_builder.h"

namespace hosts {
namespace {

struct EntryCase {
  const char* name;
  int (*call)(HGLOBAL fileData);
};

int takeRows(host::ReadRequest*, host::u64, host::u32, host::u32, host::u32, host::u8**, host::u16,
             host::i32, host::u32) {
  return 1;
}
void* noRows(void*, host::u64, host::u32, host::u32, host::u32, host::u32, host::i32, host::i32) {
  return nullptr;
}
void* noRow(void*, host::u32, host::u32, host::u32, host::u32, int, int, host::u32) {
  return nullptr;
}
int refuse(int, void*, void*, HGLOBAL) { return 0; }

template <host::PluginOrdinal ordinal>
int read(HGLOBAL fileData) {
  host::ReadRequest request = {1, {}, 0, {}, 0, 0};
  if constexpr (ordinal == host::ordinalJpgFileRead) {
    return entry<host::JpgFileReadEntry>(ordinal)(0, nullptr, fileData, &request, &takeRows);
  } else {
    return entry<host::MPOFileReadEntry>(ordinal)(nullptr, nullptr, fileData, &request, &takeRows);
  }
}
int writeJpeg(HGLOBAL fileData) {
  return entry<host::JpgFileWriteEntry>(host::ordinalJpgFileWrite)(nullptr, fileData, nullptr,
                                                                   &noRows);
}
int writeMpo(HGLOBAL fileData) {
  return entry<host::MPOFileWriteEntry>(host::ordinalMPOFileWrite)(0, fileData, nullptr, &noRow);
}
template <host::FIOAction action>
int act(HGLOBAL fileData) {
  return entry<host::MPOFIOActionEntry>(host::ordinalMPOFIOAction)(
      fileData, action, reinterpret_cast<void*>(&refuse), nullptr, -1);
}
template <host::PluginOrdinal ordinal>
int getProperty(HGLOBAL fileData) {
  HGLOBAL out = nullptr;
  return entry<host::GetPropertyEntry>(ordinal)(fileData, &out);
}
template <host::PluginOrdinal ordinal>
int setProperty(HGLOBAL fileData) {
  return entry<host::SetPropertyEntry>(ordinal)(fileData, nullptr);
}

const EntryCase entries[] = {
    {"kfJpgFileRead", &read<host::ordinalJpgFileRead>},
    {"kfMPOFileRead", &read<host::ordinalMPOFileRead>},
    {"kfJpgFileWrite", &writeJpeg},
    {"kfMPOFileWrite", &writeMpo},
    {"kfMPOFIOAction26", &act<host::actionReadImages>},
    {"kfMPOFIOAction27", &act<host::actionWriteImage>},
    {"kfDLLGetProperty", &getProperty<host::ordinalGetProperty>},
    {"kfDLLMPOGetProperty", &getProperty<host::ordinalMPOGetProperty>},
    {"kfDLLSetProperty", &setProperty<host::ordinalSetProperty>},
    {"kfDLLMPOSetProperty", &setProperty<host::ordinalMPOSetProperty>},
};

void PrintTo(const EntryCase& tested, std::ostream* out) { *out << tested.name; }

class Records : public testing::TestWithParam<EntryCase> {
 protected:
  void SetUp() override { static_cast<void>(session()); }
};

TEST_P(Records, NullAnswersNothing) {
  const NothingLeft check;
  session().reports.clear();
  EXPECT_EQ(GetParam().call(nullptr), 0);
  EXPECT_EQ(session().reports.code(), 0);
}

TEST_P(Records, AFreedOneAnswersNothing) {
  const NothingLeft check;
  HGLOBAL freed = GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(host::MpoFileData));
  GlobalFree(freed);
  session().reports.clear();
  EXPECT_EQ(GetParam().call(freed), 0);
  EXPECT_EQ(session().reports.code(), 0);
}

TEST_P(Records, OfEverySizeAndTagAreLeftUnlockedAndFreeable) {
  constexpr std::size_t sizes[] = {1,    4,    263,  264,  559,   599,   692,   716,  723, 737,
                                   738,  745,  746,  749,  750,   751,   752,   813,  814, 815,
                                   1008, 1009, 1054, 1055, 39535, 39792, 39793, 40000};
  for (const host::u32 tag : {0U, host::jpegTailTag, host::mpoTailTag, ~0U}) {
    for (const std::size_t size : sizes) {
      SCOPED_TRACE("size " + std::to_string(size) + ", tag " + std::to_string(tag));
      const NothingLeft check;
      const Record record(size, tag);
      const int answer = GetParam().call(record.handle());
      // All images of a list of none are read.
      const bool emptyList =
          tag == host::mpoTailTag && GetParam().call == &act<host::actionReadImages>;
      EXPECT_TRUE(answer == 0 || answer == -1 || (emptyList && answer == 1)) << answer;
      EXPECT_TRUE(record.unlocked());
    }
  }
}

// A record whose every byte is on, but for the words that the host answers for: the path and the
// property record.
TEST_P(Records, FullOfOnesAreLeftUnlocked) {
  for (const host::u32 tag : {host::jpegTailTag, host::mpoTailTag}) {
    const NothingLeft check;
    Record record(sizeof(host::MpoFileData), tag);
    record.with<host::MpoFileData>([&](host::MpoFileData& data) {
      std::memset(static_cast<void*>(&data), 0xFF, sizeof data);
      data.record.ansiPath[0] = '\0';
      data.record.pathFlags = 0;
      data.record.widePath = 0;
      data.record.propertyRecord = 0;
      data.tag = tag;
    });
    static_cast<void>(GetParam().call(record.handle()));
    EXPECT_TRUE(record.unlocked());
  }
}

// The other family's record, and one that says of an image list what is not so.
TEST_P(Records, OfTheOtherFamilyAreServedOrRefusedWhole) {
  writeFile("other.jpg", support::JpegBuilder().build());
  writeFile("other.mpo", support::MpoFileBuilder(2).build());
  for (const auto family : {fiohost::Family::jpeg, fiohost::Family::mpo}) {
    const NothingLeft check;
    Record record(family, family == fiohost::Family::jpeg ? "other.jpg" : "other.mpo");
    record.with<host::MpoFileData>([](host::MpoFileData& data) {
      data.list.imageCount = 0xFFFF;
      for (host::MpoEntry& image : data.entries) image.fileOffset = 0xFFFFFFF0;
    });
    static_cast<void>(GetParam().call(record.handle()));
    EXPECT_TRUE(record.unlocked());
    writeFile("other.jpg", support::JpegBuilder().build());
    writeFile("other.mpo", support::MpoFileBuilder(2).build());
  }
}

INSTANTIATE_TEST_SUITE_P(EveryEntry, Records, testing::ValuesIn(entries),
                         [](const auto& tested) { return std::string(tested.param.name); });

}  // namespace
}  // namespace hosts
