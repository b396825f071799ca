// The window's document with the built plug-in, without a window.
#include "fiohost/view/document.h"

#include "fiohost/failure.h"
#include "fiohost/view/saving.h"
#include "platform/system.h"
#include "tests/fiohost/view/viewer_files.h"

namespace fiohost::view {
namespace {

using fiohostTest::decodeJpeg;
using fiohostTest::Pixels;
using testing::HasSubstr;

class DocumentTest : public fiohostTest::ViewerTest {
 protected:
  DocumentTest() : mailbox_([this] { wake(); }), document_(plugin_.session, mailbox_, [] {}) {
    SetEnvironmentVariableA("KFIO_INI", nameOf("settings.ini").c_str());
    document_.setScreen({400, 400}, 96);
  }

  void wake() {
    const std::lock_guard guard(mutex_);
    ++letters_;
    changed_.notify_all();
  }
  // Takes letters until the condition holds.
  template <typename Condition>
  void waitUntil(Condition condition) {
    while (!condition()) {
      std::unique_lock lock(mutex_);
      ASSERT_TRUE(
          changed_.wait_for(lock, std::chrono::seconds(60), [this] { return letters_ > 0; }));
      letters_ = 0;
      lock.unlock();
      mailbox_.deliver();
    }
  }
  void open(const std::string& name) {
    document_.open(nameOf(name));
    waitUntil([this] { return !document_.isBusy(); });
  }
  [[nodiscard]] Raster shown() {
    Raster result;
    document_.withPicture([&result](const Raster& raster) { result = raster; });
    return result;
  }
  // What libjpeg makes of a file.
  [[nodiscard]] Raster expected(const std::string& name) const {
    return rasterOf(decodeJpeg(fiohostTest::readBytes(file(name))));
  }
  [[nodiscard]] Raster left() const { return rasterOf(imageOfPair(1)); }
  [[nodiscard]] Raster right() const { return rasterOf(imageOfPair(2)); }
  static Raster rasterOf(const Pixels& pixels) {
    Raster raster({static_cast<int>(pixels.width), static_cast<int>(pixels.height)});
    for (unsigned y = 0; y < pixels.height; ++y) {
      for (unsigned x = 0; x < pixels.width; ++x) {
        raster.row(static_cast<int>(y))[x] =
            pixelOf(pixels.at(x, y, 0), pixels.at(x, y, 1), pixels.at(x, y, 2));
      }
    }
    return raster;
  }

  fiohostTest::BuiltPlugin plugin_;
  std::mutex mutex_;
  std::condition_variable changed_;
  int letters_ = 0;
  Mailbox mailbox_;
  Document document_;
};

TEST_F(DocumentTest, ShowsThePixelsOfAFile) {
  addJpeg("a.jpg", {.width = 320, .height = 200});
  open("a.jpg");
  EXPECT_EQ(document_.problem(), "");
  EXPECT_EQ(document_.pictureSize(), (Extent{320, 200}));
  EXPECT_EQ(shown(), expected("a.jpg"));
  EXPECT_TRUE(document_.isWhole());
}

TEST_F(DocumentTest, TurnsThePictureAsItsExifSays) {
  addJpeg("plain.jpg", {.width = 320, .height = 200});
  addJpeg("turned.jpg", {.width = 320, .height = 200, .exif = fiohostTest::exifWithOrientation(6)});
  open("turned.jpg");
  EXPECT_EQ(document_.pictureSize(), (Extent{200, 320}));
  const Raster stored = expected("plain.jpg");
  const Raster turned = shown();
  ASSERT_EQ(turned.size, (Extent{200, 320}));
  EXPECT_EQ(turned.at(199, 0), stored.at(0, 0)) << "a quarter to the right";
  EXPECT_EQ(turned.at(0, 319), stored.at(319, 199));
}

TEST_F(DocumentTest, ALargePictureComesReducedAndWholeWhenItIsLookedAt) {
  addJpeg("large.jpg", {.width = 1600, .height = 1200});
  document_.lookAtScale(0.25);
  open("large.jpg");
  EXPECT_EQ(shown().size, (Extent{400, 300}));
  EXPECT_EQ(document_.pictureSize(), (Extent{1600, 1200}));
  EXPECT_FALSE(document_.isWhole());
  document_.lookAtScale(1);
  EXPECT_TRUE(document_.isBusy());
  EXPECT_EQ(shown().size, (Extent{400, 300})) << "until the whole one is there";
  waitUntil([this] { return !document_.isBusy(); });
  EXPECT_EQ(shown(), expected("large.jpg"));
  document_.lookAtScale(0.25);
  EXPECT_FALSE(document_.isBusy()) << "what is there need not be decoded again";
}

TEST_F(DocumentTest, ABrokenFileHasAProblemAndTheNextOneNone) {
  fiohostTest::writeBytes(file("bad.jpg"), {'n', 'o', 'n', 'e'});
  open("bad.jpg");
  EXPECT_NE(document_.problem(), "");
  EXPECT_EQ(document_.facts(), nullptr);
  open("missing.jpg");
  EXPECT_NE(document_.problem(), "");
  addJpeg("good.jpg", {});
  open("good.jpg");
  EXPECT_EQ(document_.problem(), "");
  EXPECT_EQ(shown(), expected("good.jpg"));
}

TEST_F(DocumentTest, AnotherFileReplacesOneThatIsStillBeingRead) {
  addJpeg("slow.jpg", {.width = 2400, .height = 2000, .progressive = true});
  addJpeg("next.jpg", {});
  document_.open(nameOf("slow.jpg"));
  open("next.jpg");
  EXPECT_EQ(document_.pictureSize(), (Extent{64, 48}));
  EXPECT_EQ(shown(), expected("next.jpg"));
}

TEST_F(DocumentTest, StoppingKeepsWhatHasCome) {
  document_.setScreen({6000, 6000}, 96);
  addJpeg("slow.jpg", {.width = 4000, .height = 4000, .progressive = true});
  document_.open(nameOf("slow.jpg"));
  waitUntil([this] { return document_.facts() != nullptr; });
  while (document_.progress().done == 0) std::this_thread::yield();
  document_.stop();
  EXPECT_TRUE(document_.isStopped());
  EXPECT_FALSE(document_.isBusy());
  EXPECT_EQ(shown().size, (Extent{4000, 4000}));
  EXPECT_FALSE(document_.isWhole());
  open("slow.jpg");
  EXPECT_FALSE(document_.isStopped());
  EXPECT_TRUE(document_.isWhole());
}

TEST_F(DocumentTest, EachImageOfAStereoFileCanBeSeen) {
  addStereo();
  open("pair.mpo");
  ASSERT_EQ(document_.imageCount(), 2U);
  EXPECT_EQ(document_.shownStereo(), StereoMode::off);
  EXPECT_EQ(shown(), left());
  document_.select(1);
  waitUntil([this] { return !document_.isBusy(); });
  EXPECT_EQ(shown(), right());
  waitUntil([this] {
    bool both = true;
    for (const std::size_t image : {0U, 1U}) {
      bool has = false;
      document_.withThumbnail(image, [&](const Raster& r) { has = r.size == Extent{96, 60}; });
      both = both && has;
    }
    return both;
  });
}

TEST_F(DocumentTest, AFinerScreenGetsLargerThumbnails) {
  addStereo();
  open("pair.mpo");
  const auto hasThumbnail = [this](const Extent& size) {
    bool has = false;
    document_.withThumbnail(1, [&](const Raster& raster) { has = raster.size == size; });
    return has;
  };
  waitUntil([&] { return hasThumbnail({96, 60}); });
  document_.setScreen({400, 400}, 192);
  waitUntil([&] { return hasThumbnail({192, 120}); });
  EXPECT_FALSE(document_.isBusy()) << "the picture itself stays";
}

TEST_F(DocumentTest, APairIsComposed) {
  addStereo();
  document_.setStereo(StereoMode::sideBySide);
  open("pair.mpo");
  EXPECT_EQ(document_.pictureSize(), (Extent{640, 200}));
  EXPECT_EQ(shown(), composeStereo(StereoMode::sideBySide, left(), right(), 0));
  document_.setStereo(StereoMode::anaglyph);
  document_.setParallax(6);
  EXPECT_EQ(document_.pictureSize(), (Extent{320, 200}));
  EXPECT_EQ(shown(), composeStereo(StereoMode::anaglyph, left(), right(), 6));
  document_.setStereo(StereoMode::wiggle);
  document_.setParallax(0);
  EXPECT_EQ(shown(), left());
  document_.nextWiggle();
  EXPECT_EQ(shown(), right());
  document_.select(1);
  EXPECT_EQ(document_.stereo(), StereoMode::off);
  EXPECT_EQ(shown(), right());
}

TEST_F(DocumentTest, AFileWithoutAPairKeepsTheModeForTheNext) {
  addJpeg("one.jpg", {});
  addStereo();
  document_.setStereo(StereoMode::crossEyed);
  open("one.jpg");
  EXPECT_EQ(document_.shownStereo(), StereoMode::off);
  EXPECT_EQ(shown(), expected("one.jpg"));
  open("pair.mpo");
  EXPECT_EQ(document_.shownStereo(), StereoMode::crossEyed);
  EXPECT_EQ(shown(), composeStereo(StereoMode::crossEyed, left(), right(), 0));
}

TEST_F(DocumentTest, ParallaxIsOfTheWholePicture) {
  addStereo();
  document_.setScreen({160, 160}, 96);
  document_.setStereo(StereoMode::wiggle);
  document_.setParallax(10);
  open("pair.mpo");
  document_.nextWiggle();
  const Raster reduced = shown();
  ASSERT_EQ(reduced.size, (Extent{160, 100}));
  EXPECT_EQ(reduced.at(4, 50), 0U);
  EXPECT_NE(reduced.at(5, 50), 0U);
}

TEST_F(DocumentTest, TheShownImageIsSaved) {
  addStereo();
  const SaveOrder order = {nameOf("pair.mpo"), true, 1, nameOf("saved.jpg"), {1, 0, 90, 1}, false};
  host::u32 rows = 0;
  saveImage(plugin_.session, order, [&rows](host::u32 done, host::u32 total) {
    EXPECT_EQ(total, 200U);
    rows = done;
    return true;
  });
  EXPECT_EQ(rows, 199U);
  const Raster saved = expected("saved.jpg");
  ASSERT_EQ(saved.size, right().size);
  EXPECT_NEAR(static_cast<int>(greenOf(saved.at(100, 100))),
              static_cast<int>(greenOf(right().at(100, 100))), 8);
}

TEST_F(DocumentTest, ASaveTellsWhatItLosesAndKeepsWhatLiesBehindTheFirstImage) {
  addStereo();
  SaveOrder order = {nameOf("pair.mpo"), true, 0, nameOf("saved.mpo"), {1, 0, 90, 1}, false};
  const LossQuestion question = lossQuestion(plugin_.session, order);
  EXPECT_TRUE(question.canBeKept);
  EXPECT_THAT(question.text, testing::HasSubstr("image"));
  order.keepsOthers = true;
  const auto goOn = [](host::u32, host::u32) { return true; };
  saveImage(plugin_.session, order, goOn);
  order.source = order.target;
  order.image = 1;
  order.target = nameOf("second.jpg");
  order.keepsOthers = false;
  saveImage(plugin_.session, order, goOn);
  EXPECT_EQ(expected("second.jpg").size, right().size);
  EXPECT_EQ(lossQuestion(plugin_.session, {order.target, false, 0, {}, {}, false}).text, "")
      << "nothing is lost of a single picture";
}

TEST_F(DocumentTest, ASaveThatIsStoppedLeavesNothing) {
  addJpeg("a.jpg", {.width = 320, .height = 200});
  const SaveOrder order = {nameOf("a.jpg"), false, 0, nameOf("saved.jpg"), {}, false};
  EXPECT_THROW(
      saveImage(plugin_.session, order, [](host::u32 done, host::u32) { return done < 9; }),
      Failure);
  EXPECT_THAT(fiohostTest::namesIn(folder()), testing::ElementsAre("a.jpg"));
}

TEST_F(DocumentTest, ANameIsSuggestedForEveryImage) {
  EXPECT_EQ(suggestedName(nameOf("a.jpg"), false, 0), nameOf("a.jpg"));
  EXPECT_EQ(suggestedName(nameOf("a.mpo"), true, 1), nameOf("a-2.jpg"));
}

TEST(Worker, DoesJobsInTheirOrderAndLeavesOutStoppedOnes) {
  std::mutex mutex;
  std::string done;
  std::atomic<bool> go = false;
  {
    Mailbox mailbox([] {});
    Worker worker;
    std::atomic<int> ended = 0;
    const auto note = [&](char c) {
      return [&, c](const StopFlag&) {
        while (!go) std::this_thread::yield();
        const std::lock_guard guard(mutex);
        done += c;
        ++ended;
      };
    };
    worker.add(note('a'));
    const StopFlag second = worker.add(note('b'));
    worker.add(note('c'));
    *second = true;
    go = true;
    while (ended < 2) std::this_thread::yield();
  }
  EXPECT_EQ(done, "ac");
}

TEST(Worker, EndingStopsTheJobUnderWay) {
  std::atomic<bool> begun = false;
  std::atomic<bool> stopped = false;
  {
    Worker worker;
    worker.add([&](const StopFlag& flag) {
      begun = true;
      while (!*flag) std::this_thread::yield();
      stopped = true;
    });
    while (!begun) std::this_thread::yield();
  }
  EXPECT_TRUE(stopped);
}

}  // namespace
}  // namespace fiohost::view
