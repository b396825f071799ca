#include "fiohost/temporary_copy.h"

#include "fiohost/failure.h"
#include "fiohost/temporary_name.h"
#include "platform/console/console.h"

namespace fiohost {

TemporaryCopy::TemporaryCopy(const std::filesystem::path& source, const std::string& extension) {
  constexpr unsigned mostAttempts = 100;
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  std::error_code error = std::make_error_code(std::errc::file_exists);
  for (unsigned attempt = 0; error == std::errc::file_exists && attempt < mostAttempts; ++attempt) {
    path_ = folder / (temporaryStem() + extension);
    std::filesystem::copy_file(source, path_, error);
  }
  if (!error) return;
  throw Failure(
      "the file cannot be copied to " + platform::displayPath(folder) + ": " + error.message(),
      "check that the folder for temporary files has room");
}

TemporaryCopy::~TemporaryCopy() {
  std::error_code ignored;
  std::filesystem::remove(path_, ignored);
}

}  // namespace fiohost
