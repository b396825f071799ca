// Files that lie, through everything that the plug-in and the host do with a file: nothing ends the
// process, nothing is left, and every file has its answer in its time.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "tests/mutations/mutator.h"
#include "tests/mutations/sources.h"
#include "tests/mutations/watch.h"
#include "tests/support/file_bytes.h"
#include "tests/support/memory_folder.h"

// The fuzz targets that take whole files; each ends the process when something is left behind.
extern "C" {
int serveDescribe(const std::uint8_t* data, std::size_t size);
int serveRead(const std::uint8_t* data, std::size_t size);
int serveScan(const std::uint8_t* data, std::size_t size);
int serveMpo(const std::uint8_t* data, std::size_t size);
int serveRoundTrip(const std::uint8_t* data, std::size_t size);
}

namespace mutations {
namespace {

// KF_MUTATIONS sets how many; one of so many parts is a test.
constexpr std::size_t parts = 8;

std::size_t mutationsInAll() {
  const char* chosen = std::getenv("KF_MUTATIONS");
  return chosen != nullptr ? std::strtoul(chosen, nullptr, 10) : KF_MUTATIONS;
}

// Of a file under 1 MiB, for each thing that is done with it.
constexpr double mostSeconds = KF_MOST_SECONDS;

void serve(const std::string& name, const Bytes& file) {
  using Serve = int(const std::uint8_t*, std::size_t);
  constexpr std::pair<const char*, Serve*> services[] = {{"described", &serveDescribe},
                                                         {"read", &serveRead},
                                                         {"properties", &serveScan},
                                                         {"images", &serveMpo},
                                                         {"converted", &serveRoundTrip}};
  for (const auto& [done, service] : services) {
    const Watch watch(name + ", " + done, file);
    service(file.data(), file.size());
    EXPECT_LT(watch.seconds(), mostSeconds) << name << ", " << done;
  }
}

class Mutations : public testing::TestWithParam<std::size_t> {};

TEST_P(Mutations, AreServed) {
  support::keepTemporaryFilesInMemory();
  const std::size_t part = GetParam();
  std::vector<Mutator> mutators;
  for (const Bytes& source : sources()) {
    mutators.emplace_back(source, part * 1000 + mutators.size());
  }
  for (std::size_t number = part; number < mutationsInAll(); number += parts) {
    const std::size_t source = number / parts % mutators.size();
    serve("mutation " + std::to_string(number), mutators[source].next());
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Part, Mutations, testing::Range(std::size_t{0}, parts));

TEST(Prefixes, OfEverySmallPictureAreServed) {
  support::keepTemporaryFilesInMemory();
  constexpr std::size_t small = 1000;
  for (const Bytes& source : sources()) {
    // Every one of a small file, and of a larger one those that end in its head.
    const std::size_t step = source.size() < small ? 1 : 7;
    for (std::size_t length = 0; length < source.size(); length += step) {
      serve("prefix of " + std::to_string(length) + " bytes",
            {source.begin(), source.begin() + static_cast<std::ptrdiff_t>(length)});
      if (HasFailure()) return;
    }
  }
}

TEST(BrokenSamples, AreServed) {
  const std::filesystem::path folder = std::filesystem::path(KF_SAMPLES) / "broken";
  if (!std::filesystem::exists(folder)) GTEST_SKIP() << "no samples at " << folder;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    serve(entry.path().filename().string(), support::readFile(entry.path()));
  }
}

TEST(Mutator, GivesTheSameFilesForTheSameSeed) {
  const Bytes source = sources().back();
  Mutator one(source, 7);
  Mutator same(source, 7);
  Mutator other(source, 8);
  const Bytes first = one.next();
  EXPECT_EQ(first, same.next());
  EXPECT_NE(first, other.next());
  EXPECT_NE(first, one.next());
}

TEST(Mutator, FindsThePlacesOfEveryStructure) {
  std::size_t places = 0;
  for (const Bytes& source : sources()) places += structureOf(source).places.size();
  EXPECT_GT(places, 1000U);
  const Bytes rich = sources().back();
  const Structure structure = structureOf(rich);
  const auto has = [&](std::size_t width, std::size_t number) {
    return std::any_of(structure.places.begin(), structure.places.end(), [&](const Place& place) {
      return place.width == width && numberAt(rich, place) == number;
    });
  };
  EXPECT_TRUE(has(2, 0x829A)) << "an entry of the EXIF directory";
  EXPECT_TRUE(has(2, 0x080A)) << "a record of a sub-heap";
  EXPECT_TRUE(has(2, 0x8004)) << "an extended length of a dataset";
}

}  // namespace
}  // namespace mutations
