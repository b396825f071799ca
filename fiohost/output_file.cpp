#include "fiohost/output_file.h"

#include <cerrno>

#include "fiohost/failure.h"
#include "fiohost/temporary_name.h"

namespace fiohost {
namespace {

// Where the bytes of a target go: a link stays a link to what it names.
std::filesystem::path behindLinks(const std::filesystem::path& target) {
  std::error_code error;
  if (!std::filesystem::is_symlink(target, error)) return target;
  const std::filesystem::path real = std::filesystem::weakly_canonical(target, error);
  return error ? target : real;
}

std::filesystem::path temporaryName(const std::filesystem::path& target) {
  return target.parent_path() / ("." + temporaryStem() + ".tmp");
}

}  // namespace

OutputFile::OutputFile(const std::string& name, Existing existing)
    : name_(name), target_(behindLinks(platform::systemPath(name))) {
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(target_, ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw Failure(name + " is there already and is no regular file", "choose another name");
  }
  if (existing == Existing::refused && std::filesystem::exists(status)) {
    throw Failure(name + " is there already", "add --force to replace it");
  }
  open();
}

OutputFile::~OutputFile() { discard(); }

void OutputFile::open() {
  constexpr unsigned mostAttempts = 100;
  for (unsigned attempt = 0; file_ == nullptr && attempt < mostAttempts; ++attempt) {
    temporary_ = temporaryName(target_);
    file_ = platform::createNewFile(temporary_);
    if (file_ == nullptr && errno != EEXIST) break;
  }
  if (file_ == nullptr) fail(errno);
  there_ = true;
}

const std::filesystem::path& OutputFile::handOver() {
  close();
  return temporary_;
}

// What is buffered is written here, so this is where a full disk shows.
void OutputFile::close() {
  if (file_ != nullptr && std::fclose(file_.release()) != 0) fail(errno);
}

void OutputFile::write(const void* bytes, std::size_t count) {
  if (std::fwrite(bytes, 1, count, file_.get()) != count) fail(errno);
}

void OutputFile::restart() {
  discard();
  open();
}

void OutputFile::commit() {
  close();
  std::error_code error;
  std::filesystem::rename(temporary_, target_, error);
  there_ = static_cast<bool>(error);
  if (!error) return;
  throw Failure(name_ + " cannot be replaced: " + error.message(),
                "close it where it is open and check the folder's permissions");
}

void OutputFile::discard() noexcept {
  file_.reset();
  if (!there_) return;
  there_ = false;
  std::error_code ignored;
  std::filesystem::remove(temporary_, ignored);
}

void OutputFile::fail(int error) const {
  throw Failure(name_ + " cannot be written: " + std::generic_category().message(error),
                "check that its folder exists, is writable and has room");
}

}  // namespace fiohost
