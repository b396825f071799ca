// The commands that change the images of a multi-picture file without decoding any.
#include <algorithm>
#include <numeric>

#include "fiohost/commands/mpo_rewrite.h"
#include "fiohost/mpo_edit/mpo_content.h"
#include "fiohost/numbers.h"
#include "fiohost/picture_words.h"

namespace fiohost {
namespace {

using Numbers = std::vector<std::size_t>;

std::string checkNumbers(const std::string& text) {
  return parseNumbers(text) ? "" : "it takes numbers with commas such as 2,1, not " + text;
}

Numbers numbersOf(const std::string& text) {
  const std::vector<host::u32> given = *parseNumbers(text);
  return {given.begin(), given.end()};
}

void checkThere(const Numbers& numbers, const MpoContent& content) {
  for (const std::size_t number : numbers) {
    if (number <= content.pictures.size()) continue;
    throw Failure("there is no image " + std::to_string(number),
                  "the file has " + std::to_string(content.pictures.size()));
  }
}

Numbers allNumbers(const MpoContent& content) {
  Numbers numbers(content.pictures.size());
  std::iota(numbers.begin(), numbers.end(), std::size_t{1});
  return numbers;
}

// What the commands share: an edit of the images between a file and an output.
class MpoEditCommand : public MpoRewriteCommand {
 private:
  [[nodiscard]] virtual MpoContent edited(const MpoContent& content) const = 0;

  FileResult serve(const std::string& name) const override {
    const MpoContent content = edited(takeApart(readWhole(SourceFile(name).path())));
    const ByteBlock bytes = putTogether(content);
    store(bytes);
    return told(name, content, bytes.size());
  }

  FileResult told(const std::string& name, const MpoContent& content, std::size_t size) const {
    FileResult result = {name + " -> " + output() + ", " + std::to_string(size) + " bytes\n",
                         {{"file", name}, {"output", output()}, {"bytes", size}}};
    result.json["images"] = Json::array();
    std::size_t number = 0;
    for (const MpoPicture& picture : content.pictures) {
      result.words += factLine("Image " + std::to_string(++number), picture.origin);
      result.json["images"].push_back({{"number", number}, {"from", picture.origin}});
    }
    return result;
  }
};

class MpoReorderCommand : public MpoEditCommand {
 private:
  void declareEdit(CLI::App& arguments) override {
    arguments.add_option("--order", order_, "the images' numbers in their new order, all of them")
        ->required()
        ->check(&checkNumbers);
  }
  [[nodiscard]] MpoContent edited(const MpoContent& content) const override {
    const Numbers order = numbersOf(order_);
    Numbers sorted = order;
    std::sort(sorted.begin(), sorted.end());
    if (sorted != allNumbers(content)) {
      throw Failure("--order does not name each of the " + std::to_string(content.pictures.size()) +
                        " images once",
                    "leave images out with \"fiohost mpo remove\"");
    }
    return arranged(content, order);
  }

  std::string order_;
};

class MpoSwapCommand : public MpoEditCommand {
 private:
  void declareEdit(CLI::App& arguments) override {
    arguments.add_option("--images", images_, "two numbers; 1,2 in a file of two images")
        ->check(&checkNumbers);
  }
  [[nodiscard]] MpoContent edited(const MpoContent& content) const override {
    if (images_.empty() && content.pictures.size() != 2) {
      throw Failure("the file has " + std::to_string(content.pictures.size()) + " images",
                    "name two of them with --images");
    }
    const Numbers pair = images_.empty() ? Numbers{1, 2} : numbersOf(images_);
    checkThere(pair, content);
    if (pair.size() != 2 || pair[0] == pair[1]) {
      throw Failure("--images names " + std::to_string(pair.size()) + " images",
                    "name two different ones");
    }
    Numbers order = allNumbers(content);
    std::swap(order[pair[0] - 1], order[pair[1] - 1]);
    return arranged(content, order);
  }

  std::string images_;
};

class MpoRemoveCommand : public MpoEditCommand {
 private:
  void declareEdit(CLI::App& arguments) override {
    arguments.add_option("--images", images_, "the numbers of the images to leave out")
        ->required()
        ->check(&checkNumbers);
  }
  [[nodiscard]] MpoContent edited(const MpoContent& content) const override {
    const Numbers removed = numbersOf(images_);
    checkThere(removed, content);
    Numbers left = allNumbers(content);
    left.erase(std::remove_if(left.begin(), left.end(),
                              [&](std::size_t number) {
                                return std::find(removed.begin(), removed.end(), number) !=
                                       removed.end();
                              }),
               left.end());
    return arranged(content, left);
  }

  std::string images_;
};

class MpoInsertCommand : public MpoEditCommand {
 private:
  void declareEdit(CLI::App& arguments) override {
    arguments.add_option("IMG", pictures_, "JPEG files to add, in this order")->required();
    arguments
        .add_option("--at", at_, "the number that the first of them gets; else they come last")
        ->check(CLI::Range(1, static_cast<int>(host::mpoMostImages)));
  }
  [[nodiscard]] MpoContent edited(const MpoContent& content) const override {
    const std::size_t end = content.pictures.size() + 1;
    const std::size_t at = at_ != 0 ? at_ : end;
    if (at > end) {
      throw Failure("there is no place " + std::to_string(at),
                    "the file has " + std::to_string(end - 1) + " images");
    }
    std::vector<MpoPicture> inserted;
    for (const std::string& name : pictures_) {
      inserted.push_back(singlePicture(readPicture(name), name));
    }
    return withInserted(content, at, std::move(inserted));
  }

  static ByteBlock readPicture(const std::string& name) {
    try {
      return readWhole(SourceFile(name).path());
    } catch (const Failure& failure) {
      throw Failure(name + ": " + failure.what(), failure.advice());
    }
  }

  std::vector<std::string> pictures_;
  host::u32 at_ = 0;
};

}  // namespace

std::unique_ptr<Command> makeMpoInsertCommand() { return std::make_unique<MpoInsertCommand>(); }
std::unique_ptr<Command> makeMpoRemoveCommand() { return std::make_unique<MpoRemoveCommand>(); }
std::unique_ptr<Command> makeMpoReorderCommand() { return std::make_unique<MpoReorderCommand>(); }
std::unique_ptr<Command> makeMpoSwapCommand() { return std::make_unique<MpoSwapCommand>(); }

}  // namespace fiohost
