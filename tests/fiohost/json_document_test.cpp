// Every member of every command's JSON against docs/json.md.
#include <fstream>
#include <map>
#include <set>

#include "tests/fiohost/support/mpo_fixture.h"
#include "tests/fiohost/support/secret_pictures.h"
#include "tests/heap/heap_model.h"

namespace fiohostTest {
namespace {

using Types = std::set<std::string>;
using Members = std::map<std::string, Types>;

// What the page says: its sections by their commands.
class Page {
 public:
  Page() {
    std::ifstream file(KF_JSON_PAGE);
    for (std::string line; std::getline(file, line);) take(line);
  }

  [[nodiscard]] Members of(const std::string& section) const {
    const auto found = sections_.find(section);
    return found != sections_.end() ? found->second : Members{};
  }
  [[nodiscard]] std::set<std::string> sections() const {
    std::set<std::string> names;
    for (const auto& [name, members] : sections_) names.insert(name);
    return names;
  }

 private:
  void take(const std::string& line) {
    if (line.starts_with("## ")) sections_[section_ = line.substr(3)];
    const std::size_t of = line.find("embers of `");
    if (of != std::string::npos) {
      const std::size_t start = of + 11;
      const Members inherited = sections_.at(line.substr(start, line.find('`', start) - start));
      sections_[section_].insert(inherited.begin(), inherited.end());
    }
    if (!line.starts_with("| `")) return;
    const std::size_t end = line.find('`', 3);
    const std::size_t types = line.find("| ", end) + 2;
    sections_[section_][line.substr(3, end - 3)] =
        words(line.substr(types, line.find(" |", types) - types));
  }
  static Types words(const std::string& cell) {
    Types types;
    for (std::size_t at = 0; at <= cell.size();) {
      const std::size_t end = std::min(cell.find(" or ", at), cell.size());
      types.insert(cell.substr(at, end - at));
      at = end + 4;
    }
    return types;
  }

  std::map<std::string, Members> sections_;
  std::string section_;
};

std::string typeOf(const nlohmann::json& value) {
  if (value.is_number()) return "number";
  return value.type_name();
}

// Records lie in each other, and attributes have many names.
std::string pathOf(std::string path) {
  const std::string nested = ".records[].records[]";
  for (std::size_t at; (at = path.find(nested)) != std::string::npos;) {
    path.erase(at, nested.size() / 2);
  }
  const std::string attributes = "images[].attributes.";
  if (path.starts_with(attributes)) {
    const std::size_t end = std::min(path.find('.', attributes.size()), path.size());
    path = attributes + "*" + path.substr(end);
  }
  return path;
}

void collect(const nlohmann::json& value, const std::string& path, Members& members) {
  if (!path.empty()) members[pathOf(path)].insert(typeOf(value));
  if (value.is_array()) {
    for (const nlohmann::json& part : value) collect(part, path + "[]", members);
  }
  if (!value.is_object()) return;
  for (const auto& [name, part] : value.items()) {
    collect(part, (path.empty() ? "" : path + ".") + name, members);
  }
}

class JsonDocumentTest : public MpoProgramTest {
 protected:
  void SetUp() override {
    MpoProgramTest::SetUp();
    writeBytes(file("in.jpg"), joined(secretPicture(1, support::ByteOrder::little), {1, 2, 3}));
    addJpeg("grey.jpg", {.components = 1, .jfif = false});
    test::ModelHeap heap;
    heap.records = {{0x1810, test::numbers32({640, 480, 0, 0, 8, 24, 1})},
                    {0x2807,
                     {},
                     {{0x2807, {}, {{0x080A, test::texts({"Maker", "Model X"})}}},
                      {0x0810, test::texts({"The Owner"})}}}};
    writeBytes(file("heap.jpg"), JpegBuilder().cameraHeap(heap.build()).build());
    static_cast<void>(build(addPictures(3),
                            {"--kind", "stereo", "--baseline", "77/1000", "--unique-ids", ids(3)}));
    std::filesystem::copy_file(file("out.mpo"), file("in.mpo"));
    static_cast<void>(build(addPictures(2), {"--kind", "large-thumbnail"}));
    std::filesystem::copy_file(file("out.mpo"), file("parent.mpo"));
    const Bytes whole = readBytes(file("in.mpo"));
    writeBytes(file("stale.mpo"), joined(whole, makeJpeg({})));
    Bytes stale = readBytes(file("stale.mpo"));
    stale.insert(stale.begin() + static_cast<std::ptrdiff_t>(end(1)), 4, 'x');
    writeBytes(file("stale.mpo"), stale);
    std::filesystem::create_directory(file("folder"));
  }
  static std::string ids(unsigned count) {
    std::string all;
    for (unsigned i = 0; i < count; ++i) {
      all += (i == 0 ? "" : ",") + std::string(32, static_cast<char>('A' + i));
    }
    return all;
  }
  [[nodiscard]] std::size_t end(unsigned image) const {
    const nlohmann::json entry = info("in.mpo")["images"][image - 1];
    return entry["offset"].get<std::size_t>() + entry["bytes"].get<std::size_t>();
  }
  // All that the runs of one command print, each object with its version.
  [[nodiscard]] Members printed(const std::vector<std::vector<std::string>>& runs) const {
    Members members;
    for (std::vector<std::string> words : runs) {
      words.emplace_back("--json");
      const ProcessResult result = run(words);
      const nlohmann::json told = nlohmann::json::parse(result.out, nullptr, false);
      EXPECT_FALSE(told.is_discarded()) << words[0] << ": " << result.out << result.err;
      for (const nlohmann::json& each : told.is_array() ? told : nlohmann::json::array({told})) {
        EXPECT_EQ(each.value("version", 0), 1) << each.dump();
        collect(each, "", members);
      }
    }
    return members;
  }
};

using Runs = std::vector<std::vector<std::string>>;

const std::map<std::string, Runs>& commands() {
  static const std::map<std::string, Runs> all = {
      {"formats", {{"formats"}}},
      {"info", {{"info", "in.jpg", "grey.jpg", "in.mpo", "absent.jpg"}}},
      {"show", {{"show", "in.jpg", "in.mpo"}}},
      {"read", {{"read", "in.jpg", "-o", "x.png"}}},
      {"convert", {{"convert", "in.jpg", "-o", "x.jpg"}}},
      {"set", {{"set", "in.jpg", "Artist=A", "-o", "y.jpg"}}},
      {"heap",
       {{"heap", "heap.jpg"}, {"heap", "heap.jpg", "--set", "Owner name=A", "-o", "h.jpg"}}},
      {"properties",
       {{"properties", "in.jpg", "in.mpo"},
        {"properties", "in.jpg", "--raw"},
        {"properties", "in.mpo", "--image", "2"},
        {"properties", "in.jpg", "--extract", "exif", "-o", "x.exif"}}},
      {"mpo info", {{"mpo", "info", "in.mpo", "parent.mpo"}}},
      {"mpo extract", {{"mpo", "extract", "in.mpo", "-o", "folder"}}},
      {"mpo build", {{"mpo", "build", "in1.jpg", "in2.jpg", "--kind", "stereo", "-o", "b.mpo"}}},
      {"mpo reorder", {{"mpo", "reorder", "in.mpo", "--order", "3,1,2", "-o", "c.mpo"}}},
      {"mpo swap", {{"mpo", "swap", "in.mpo", "--images", "1,2", "-o", "d.mpo"}}},
      {"mpo remove", {{"mpo", "remove", "in.mpo", "--images", "2", "-o", "e.mpo"}}},
      {"mpo insert", {{"mpo", "insert", "in.mpo", "in1.jpg", "-o", "f.mpo"}}},
      {"mpo verify", {{"mpo", "verify", "in.mpo", "stale.mpo", "grey.jpg"}}},
      {"mpo repair", {{"mpo", "repair", "stale.mpo", "-o", "g.mpo"}}},
      {"strip", {{"strip", "in.jpg", "--gps", "-o", "s.jpg"}}},
      {"settings", {{"settings"}}},
  };
  return all;
}

TEST_F(JsonDocumentTest, EveryMemberIsListedAndEveryListedOneIsPrinted) {
  const Page page;
  Members always = page.of("Every object");
  ASSERT_FALSE(always.empty());
  for (const auto& [path, types] : page.of("A file that failed")) always[path] = types;
  Members seenAlways;
  for (const auto& [command, runs] : commands()) {
    SCOPED_TRACE(command);
    const Members listed = page.of(command);
    const Members seen = printed(runs);
    EXPECT_FALSE(listed.empty());
    for (const auto& [path, types] : seen) {
      const bool own = listed.contains(path);
      EXPECT_TRUE(own || always.contains(path)) << path << " is printed but not listed";
      if (!own) seenAlways[path] = types;
      const Members& source = own ? listed : always;
      if (!source.contains(path)) continue;
      for (const std::string& type : types) {
        EXPECT_TRUE(source.at(path).contains(type)) << path << " is printed as " << type;
      }
    }
    for (const auto& [path, types] : listed) {
      EXPECT_TRUE(seen.contains(path)) << path << " is listed but never printed";
    }
  }
  for (const auto& [path, types] : always) EXPECT_TRUE(seenAlways.contains(path)) << path;
}

TEST_F(JsonDocumentTest, EveryCommandWithAJsonFormHasASection) {
  std::set<std::string> expected = {"Every object", "A file that failed"};
  for (const auto& [command, runs] : commands()) expected.insert(command);
  EXPECT_EQ(Page().sections(), expected);
  // The commands themselves, as help lists them.
  for (const std::vector<std::string>& path : {std::vector<std::string>{}, {"mpo"}}) {
    std::vector<std::string> words = path;
    words.emplace_back("--help");
    const std::string help = run(words).out;
    std::istringstream lines(help.substr(help.find("Subcommands:") + 12));
    for (std::string line; std::getline(lines, line);) {
      std::istringstream parts(line);
      std::string name;
      if (!(parts >> name) || !line.starts_with("  ") || line[2] == ' ') continue;
      if (name == "mpo") continue;
      std::vector<std::string> each = path;
      each.insert(each.end(), {name, "--help"});
      if (run(each).out.find("--json") == std::string::npos) continue;
      EXPECT_TRUE(commands().contains((path.empty() ? "" : path[0] + " ") + name)) << name;
    }
  }
}

}  // namespace
}  // namespace fiohostTest
