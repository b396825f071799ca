// Without its resource library the plug-in refuses to load.
#include <gtest/gtest.h>

#include "platform/system.h"

namespace {

TEST(ResourcesMissing, TheModuleRefusesToLoad) {
  ASSERT_EQ(LoadLibraryA("KFRES.DLL"), nullptr) << "this program must not find the resources";
  EXPECT_EQ(LoadLibraryA(KF_PLUGIN_PATH), nullptr);
  EXPECT_EQ(LoadLibraryA(KF_PLUGIN_PATH), nullptr);
}

}  // namespace
