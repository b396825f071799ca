// A resource library with texts that are longer than any field: labels and names are cut.
#include "tests/exif/replaced_libraries.h"

namespace {

// As in long_texts.inc.
const std::string longText =
    "0123456789012345678901234567890123456789012345678901234567890123456789";

std::string nameOf(const host::PropertyField& field) {
  const void* end = std::memchr(field.name, 0, sizeof field.name);
  return {field.name, end != nullptr ? static_cast<const char*>(end) : std::end(field.name)};
}

TEST(LongTexts, LabelsHave59CharactersAndNames61) {
  const auto fields = test::fieldsWith({.resources = "../tests/long_texts_test/KFRES.DLL"});
  std::size_t checked = 0;
  for (const host::PropertyField& field : fields) {
    EXPECT_EQ(+field.descriptorSize, 88U);
    std::size_t length = 0;
    if (field.fieldId == 4009 || field.fieldId == 5215 || field.fieldId == 5301) length = 59;
    if (field.fieldId == 5035 || field.fieldId == 5601) length = 61;
    if (length == 0) continue;
    ++checked;
    EXPECT_EQ(nameOf(field), longText.substr(0, length)) << field.fieldId;
    EXPECT_EQ(+field.scanComplete, 0) << "the NUL of a whole name";
    EXPECT_LT(+field.sourceGroup, 13) << "behind the name: a TIFF type or nothing";
  }
  EXPECT_EQ(checked, 5U);
}

}  // namespace
