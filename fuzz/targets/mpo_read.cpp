// Every image of a multi-picture file, decoded through the request callback.
#include "fiohost/mpo_list.h"
#include "fuzz/picture.h"
#include "host/mpo.h"

namespace {

int takeAnswer(int action, void* record, void* context, HGLOBAL) {
  if (action != host::requestRows) return 1;
  const auto& rows = *static_cast<host::RowRequest*>(record);
  const auto* first = reinterpret_cast<const host::u8*>(rows.rows);
  unsigned& sum = *static_cast<unsigned*>(context);
  for (host::u32 row = 0; row < rows.rowCount; ++row) {
    sum += first[std::size_t{row} * rows.rowDistance];
  }
  return 1;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fiohost::Session& session = fuzz::session();
  const fuzz::NothingLeft check;
  const fiohost::SourceFile file(fuzz::writeInput("input.mpo", {data, size}).string());
  try {
    fiohost::MpoFile mpo = fiohost::describeMpo(session, file);
    unsigned sum = 0;
    constexpr auto everyImage = static_cast<host::u32>(-1);
    static_cast<void>(
        session.plugin.readImage(mpo.described.fileData.handle(), &takeAnswer, &sum, everyImage));
  } catch (const fiohost::Failure&) {
    return 0;
  }
  return 0;
}
