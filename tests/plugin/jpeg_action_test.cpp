// The JPEG family's action entry.
#include "tests/plugin/plugin.h"

namespace {

using namespace test;

class JpegAction : public PluginTest {
 protected:
  static int act(int action, void* parameters) {
    return entry<host::JpgFIOActionEntry>(host::ordinalJpgFIOAction)(0, action, parameters);
  }
  static void serveThreeComponents() {
    the().fileGetInfoWide = [](const wchar_t*, host::ImageHeader* image, host::ExtraInformation*) {
      image->components = 3;
      return 1;
    };
  }
};

TEST_F(JpegAction, OnlyTheDescriptionIsServed) {
  for (const int action : {0, 1, 26, 27, 29, -1}) {
    host::DescribeParameters parameters{7, L"a.jpg", 99};
    EXPECT_EQ(act(action, &parameters), 0) << action;
    EXPECT_EQ(+parameters.result, 99u) << action;
  }
  EXPECT_TRUE(callsOf({"kJpg"}).empty());
}

TEST_F(JpegAction, NoParametersGiveZero) {
  EXPECT_EQ(act(host::actionDescribe, nullptr), 0);
  EXPECT_TRUE(the().calls.empty());
}

TEST_F(JpegAction, DescribingStoresTheHandle) {
  serveThreeComponents();
  host::DescribeParameters parameters{0, L"a.jpg", 0};
  EXPECT_EQ(act(host::actionDescribe, &parameters), 1);
  const FileData described(reinterpret_cast<HGLOBAL>(parameters.result));
  EXPECT_EQ(GlobalSize(described.handle()), 814u);
}

TEST_F(JpegAction, AnUnreadableFileAndAnMpoNameStoreAllOnesAndAnswerOne) {
  for (const wchar_t* path : {L"broken.jpg", L"stereo.MPO"}) {
    host::DescribeParameters parameters{0, path, 0};
    EXPECT_EQ(act(host::actionDescribe, &parameters), 1);
    EXPECT_EQ(+parameters.result, host::fileNotServed);
  }
}

TEST_F(JpegAction, AnUnservedColourLayoutAnswersZero) {
  the().fileGetInfoWide = [](const wchar_t*, host::ImageHeader* image, host::ExtraInformation*) {
    image->components = 2;
    return 1;
  };
  host::DescribeParameters parameters{0, L"a.jpg", 5};
  EXPECT_EQ(act(host::actionDescribe, &parameters), 0);
  EXPECT_EQ(+parameters.result, 0u);
}

}  // namespace
