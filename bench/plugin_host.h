// The smallest host that the plug-in can have: records, rows and fields are taken as they come.
#pragma once

#include <filesystem>
#include <vector>

#include "fiohost/file_data.h"
#include "fiohost/session.h"
#include "host/plugin_entries.h"

namespace bench {

// The built plug-in and its companions, made at the first call.
[[nodiscard]] const fiohost::Session& session();

// A consumer of rows, the same for the plug-in and for the loops beside it. It looks at each row's
// ends only, so that nothing but the delivering is measured, unless whole is set: then every byte
// counts, to compare what two sides delivered.
struct RowSink {
  bool whole = false;
  host::u64 sum = 0;
  host::u64 bytes = 0;

  void take(const host::u8* row, std::size_t size) noexcept;
};

// The size of a preview; 0 x 0 asks for the full picture.
struct Target {
  host::u32 width = 0;
  host::u32 height = 0;
};

// kfJpgGetFileData. Throws std::runtime_error when the file is not described.
[[nodiscard]] fiohost::FileData describe(const std::filesystem::path& path);
// The same with the path for kfDLLGetProperty and kfJpgFileRead noted in the record.
[[nodiscard]] fiohost::FileData open(const std::filesystem::path& path);
// kfJpgFileRead into the sink. Throws std::runtime_error when it does not succeed.
void read(const fiohost::FileData& fileData, const Target& target, RowSink& sink);
// kfDLLGetProperty, then every byte of every field. Returns their sum.
host::u64 readFields(const fiohost::FileData& fileData);
// Every byte of every field of a record that has them already.
[[nodiscard]] host::u64 sumOfFields(const fiohost::FileData& fileData);

// Rows of 3 bytes a pixel, blue first. A picture larger than its rows repeats them.
struct HostPicture {
  host::u32 width = 0;
  host::u32 height = 0;
  std::vector<host::u8> pixels;

  [[nodiscard]] host::u8* row(host::u32 index) const noexcept;
};

// kfJpgFileWrite of the picture to a file. Throws std::runtime_error when it does not succeed.
void write(const std::filesystem::path& path, const HostPicture& picture,
           const fiohost::FileData::SaveOptions& options);
// The same for a picture that was read, with the metadata that its record has. Its rows are black.
void rewrite(const std::filesystem::path& path, fiohost::FileData& fileData);

}  // namespace bench
