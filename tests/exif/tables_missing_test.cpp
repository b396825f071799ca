// A host whose utility library has no tag tables: what needs a definition set is not stored, and
// everything else is there as always.
#include "tests/exif/replaced_libraries.h"

namespace {

using testing::ElementsAre;

std::vector<int> idsWith(const test::Libraries& libraries) {
  std::vector<int> ids;
  for (const host::PropertyField& field : test::fieldsWith(libraries)) ids.push_back(field.fieldId);
  return ids;
}

TEST(TablesMissing, FieldsOfDirectoriesAndDatasetsAreNotStoredAndTheHeapIs) {
  EXPECT_THAT(idsWith({.utilities = "../tests/tables_missing_test/fio/kFioUtil.dll"}),
              ElementsAre(3999, 5297, 5000, 2004, 5000, 2201 + 2834));
}

}  // namespace
