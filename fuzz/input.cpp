#include "fuzz/input.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/posix/diagnostics.h"

namespace fuzz {
namespace {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "kf-fuzz-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      std::perror("fuzz: no folder for the inputs");
      std::abort();
    }
    path_ = name;
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

struct SessionWithSettings {
  SessionWithSettings() {
    setenv("KFIO_INI", (scratchFolder() / "settings.ini").c_str(), 1);
    loaded = std::make_unique<fiohost::Session>();
  }
  std::unique_ptr<fiohost::Session> loaded;
};

}  // namespace

InTime::~InTime() {
  constexpr double mostSeconds = KF_MOST_SECONDS;
  const double seconds = static_cast<double>(std::clock() - start_) / CLOCKS_PER_SEC;
  if (seconds <= mostSeconds) return;
  std::fprintf(stderr, "took %.1f s of processor time\n", seconds);
  std::abort();
}

struct NothingLeft::State {
  platform::posix::LiveCounts counts = platform::posix::liveCounts();
  std::filesystem::path directory = std::filesystem::current_path();
};

NothingLeft::NothingLeft() : before_(new State) {}

NothingLeft::~NothingLeft() {
  const State after;
  if (!(after.counts == before_->counts)) {
    std::fprintf(stderr, "left behind: %td blocks, %td locks, %td files, %td mappings, %td views\n",
                 static_cast<std::ptrdiff_t>(after.counts.blocks - before_->counts.blocks),
                 static_cast<std::ptrdiff_t>(after.counts.locks - before_->counts.locks),
                 static_cast<std::ptrdiff_t>(after.counts.files - before_->counts.files),
                 static_cast<std::ptrdiff_t>(after.counts.mappings - before_->counts.mappings),
                 static_cast<std::ptrdiff_t>(after.counts.views - before_->counts.views));
    std::abort();
  }
  if (after.directory != before_->directory) {
    std::fprintf(stderr, "the current directory is %s now\n", after.directory.c_str());
    std::abort();
  }
  delete before_;
}

const std::filesystem::path& scratchFolder() {
  static const ScratchFolder folder;
  return folder.path();
}

const fiohost::Session& session() {
  static const SessionWithSettings made;
  return *made.loaded;
}

std::filesystem::path writeInput(const char* name, Bytes input) {
  std::filesystem::path path = scratchFolder() / name;
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(input.data()),
             static_cast<std::streamsize>(input.size()));
  return path;
}

PropertySlot::~PropertySlot() { session().utilities.freeProperty(handle_); }

}  // namespace fuzz
