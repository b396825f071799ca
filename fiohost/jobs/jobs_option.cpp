#include "fiohost/jobs/jobs_option.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <thread>

#include "platform/console/console.h"

namespace fiohost {
namespace {

constexpr unsigned mostJobs = 256;

// Equal for names of one file, links followed.
std::string placeOf(const std::string& name) {
  const std::filesystem::path path = platform::systemPath(name);
  std::error_code error;
  const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
  std::string place = platform::displayPath(error ? path.lexically_normal() : real);
  for (char& letter : place) {
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  }
  return place;
}

bool areApart(const std::vector<std::string>& inputs, const Jobs::OutputOf& outputOf) {
  std::set<std::string> written;
  std::map<std::string, std::string> readers;
  for (const std::string& input : inputs) readers.emplace(placeOf(input), input);
  for (const std::string& input : inputs) {
    const std::string place = placeOf(outputOf(input));
    const auto reader = readers.find(place);
    const bool readByAnother = reader != readers.end() && reader->second != input;
    if (readByAnother || !written.insert(place).second) return false;
  }
  return true;
}

}  // namespace

void Jobs::declare(CLI::App& arguments) {
  arguments
      .add_option("--jobs", asked_,
                  "files that are served at a time; without it as many as there are processors")
      ->check(CLI::Range(1U, mostJobs));
}

unsigned Jobs::count() const {
  return asked_ != 0 ? asked_ : std::clamp(std::thread::hardware_concurrency(), 1U, mostJobs);
}

unsigned Jobs::countFor(const std::vector<std::string>& inputs, const OutputOf& outputOf) const {
  const unsigned jobs = count();
  if (jobs == 1 || inputs.size() < 2) return jobs;
  try {
    return areApart(inputs, outputOf) ? jobs : 1;
  } catch (const std::filesystem::filesystem_error&) {
    return 1;  // a name that stands for no path is told of in its turn
  }
}

}  // namespace fiohost
