// A multi-picture file described through the module.
#pragma once

#include "tests/mpo/stream_codec.h"
#include "tests/support/mpf_builder.h"
#include "tests/support/scratch_file.h"

namespace test {

using host::MpoEntry;
using host::MpoFileData;
using host::u16;
using host::u32;
using host::u8;
using support::Bytes;
using support::bytesOf;
using support::JpegBuilder;
using support::MpfBuilder;
using support::MpoFileBuilder;
namespace mpf = support::mpf;

class MpoFileInformation : public PluginTest {
 protected:
  void SetUp() override {
    PluginTest::SetUp();
    codec_.install();
  }

  // Describes a file of that content; the record is this fixture's.
  HGLOBAL describe(const Bytes& content) {
    scratch_.write(content);
    data_ = std::make_unique<FileData>(describeMpo(scratch_.path()));
    return data_->handle();
  }
  template <typename Use>
  void withData(Use use) {
    ASSERT_NE(data_->handle(), nullptr);
    data_->with<MpoFileData>(use);
  }

  StreamCodec codec_;
  ScratchFile scratch_;
  std::unique_ptr<FileData> data_;
};

inline std::vector<int> failed(int code, int site, int position) {
  return {code, site, 1890, 1891, position};
}

}  // namespace test
