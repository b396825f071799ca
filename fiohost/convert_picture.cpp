#include "fiohost/convert_picture.h"

#include <algorithm>

#include "fiohost/describe.h"
#include "fiohost/explain.h"
#include "fiohost/held_fields.h"
#include "fiohost/mpo_edit/mpo_content.h"
#include "fiohost/output_file.h"
#include "fiohost/preview.h"
#include "fiohost/progress.h"
#include "fiohost/row_reader.h"
#include "fiohost/temporary_copy.h"
#include "fiohost/thumbnail.h"
#include "fiohost/whole_metadata.h"

namespace fiohost {
namespace {

// The writing half's row source.
struct RowSupply {
  RowPipe* pipe;
  Progress* progress;
  host::u32 height;
  std::vector<host::u8*> preview;  // none when no thumbnail is wanted
  const std::function<bool(host::u32, host::u32)>& goesOn;
  host::u8* row = nullptr;

  static void* onRequest(void* context, host::u64, host::u32 first, host::u32, host::u32,
                         host::u32 second, host::i32, host::i32) noexcept {
    auto& supply = *static_cast<RowSupply*>(context);
    if (second == 0) return supply.preview.empty() ? nullptr : supply.preview.data();
    if (supply.goesOn && !supply.goesOn(first, supply.height)) return nullptr;
    supply.row = supply.pipe->take();
    supply.progress->update(first, supply.height);
    return supply.row != nullptr ? &supply.row : nullptr;
  }
};

SaveSettings chooseSettings(const Session& session, const host::JpegTail& source,
                            const ConvertOptions& options) {
  SaveSettings chosen = SettingsFile(session.folder).load();
  if (options.keepSourceSettings) {
    chosen.mode = source.mode;
    chosen.sample = source.sample;
    chosen.jfif = source.jfif;
  }
  chosen.quality = options.quality.value_or(chosen.quality);
  chosen.mode = options.mode.value_or(chosen.mode);
  chosen.sample = options.sample.value_or(chosen.sample);
  chosen.jfif = options.jfif.value_or(chosen.jfif);
  return chosen;
}

void giveSettings(FileData& fileData, const SaveSettings& settings) {
  fileData.setSaveOptions({settings.quality, settings.mode, settings.sample, settings.jfif});
}

// Nothing when the user cancelled.
std::optional<SaveSettings> confirmSettings(const Session& session, const Described& described,
                                            HWND owner = nullptr) {
  if (!session.plugin.showSaveOptions(described.fileData.handle(), owner)) return std::nullopt;
  const host::JpegTail chosen = described.fileData.jpegTail();
  return SaveSettings{chosen.mode, chosen.sample, chosen.quality, chosen.jfif};
}

SaveSettings confirmedOrFail(const Session& session, const Described& described) {
  const std::optional<SaveSettings> confirmed = confirmSettings(session, described);
  if (!confirmed) throw Failure("saving was cancelled", "nothing was written");
  return *confirmed;
}

// The file as the JPEG picture that it begins with. The copy, if one was made, goes with it.
struct FirstPicture {
  std::unique_ptr<TemporaryCopy> copy;
  SourceFile file;
  Described described;
};

FirstPicture firstPictureOf(const Session& session, const SourceFile& file, BehindPicture behind) {
  Described described = describeFile(session, file);
  if (described.family == Family::jpeg) return {nullptr, file, std::move(described)};
  if (behind == BehindPicture::refused) {
    throw Failure("this file holds several pictures, and only one can be written",
                  "add --keep-images to keep the others as they are, or take them out with "
                  "\"fiohost mpo extract\" and convert each");
  }
  auto copy = std::make_unique<TemporaryCopy>(file.path(), ".jpg");
  const SourceFile first(file.name(), copy->path());
  return {std::move(copy), first, describeFile(session, first)};
}

int ignoreRows(host::ReadRequest*, host::u64, host::u32, host::u32, host::u32, host::u8**,
               host::u16, host::i32, host::u32) noexcept {
  return 1;
}

// Asking for the metadata alone leaves out the pixels but joins extended XMP, whose later chunks
// are then no segments any more. Reading keeps every chunk; the smallest preview is the cheapest
// read.
void takeMetadata(const Session& session, const JpegLayout& layout, Described& described) {
  const auto extended = [](const JpegSegment& segment) { return isExtendedXmp(segment); };
  if (std::none_of(layout.segments.begin(), layout.segments.end(), extended)) {
    session.plugin.loadProperties(described.fileData.handle());
    return;
  }
  host::ReadRequest request = {0, {}, 1, {}, 1, 1};
  session.reports.clear();
  const int result =
      session.plugin.read(described.family, described.fileData.handle(), &request, &ignoreRows);
  if (result == 1) return;
  throw explainCode(session.reports.code(), "the plug-in delivered no picture",
                    "the file may be damaged or may have changed meanwhile");
}

// Half of what a segment holds, whatever the picture: the size that EXIF 2.32 knows.
constexpr Size thumbnailBox = {160, 160};

PreviewRows takePreview(const Session& session, const SourceFile& file, FileData& fileData) {
  PreviewRows preview = makePreview(session, file, thumbnailBox);
  constexpr host::u32 resolution = 72;
  fileData.setPreview({preview.shape.channels * 8, preview.shape.width, preview.shape.height,
                       resolution, resolution});
  return preview;
}

void writeRows(const Session& session, const SourceFile& file, Described& described,
               bool severalPasses, PreviewRows& preview, const ConvertOptions& options) {
  const host::FileDataRecord record = described.fileData.common();
  Progress progress(file.name());
  RowPipe pipe(severalPasses);
  RowReader reader(session, file, pipe);
  RowSupply supply = {&pipe, &progress, record.height, preview.rows(), options.goesOn};
  session.reports.clear();
  const int result =
      session.plugin.write(described.fileData.handle(), &supply, &RowSupply::onRequest);
  const int code = session.reports.code();
  reader.stop();
  if (result == 1) return;
  reader.rethrow();
  throw explainCode(code, "the picture could not be written",
                    "check that the output's folder has room");
}

void requireThumbnail(const Session& session, const SourceFile& saved) {
  if (findThumbnail(session, saved)) return;
  throw Failure("there is no memory for the thumbnail", "close other programs");
}

// Other images, and what else lies behind the first, as the source has them.
// Answers where the bytes are now.
std::filesystem::path appendOthers(const SourceFile& source, OutputFile& output,
                                   const std::filesystem::path& written) {
  const ByteBlock whole = withOthersOf(readWhole(source.path()), readWhole(written));
  output.restart();
  output.write(whole.data(), whole.size());
  return output.handOver();
}

}  // namespace

std::optional<SaveSettings> askSaveSettings(const Session& session, const SourceFile& source,
                                            const ConvertOptions& options, HWND owner) {
  FirstPicture first = firstPictureOf(session, source, options.behind);
  FileData& fileData = first.described.fileData;
  // The dialog goes by the segments that were found, too.
  session.plugin.loadProperties(fileData.handle());
  giveSettings(fileData, chooseSettings(session, fileData.jpegTail(), options));
  return confirmSettings(session, first.described, owner);
}

Converted convertPicture(const Session& session, const SourceFile& source,
                         const std::string& outputName, const ConvertOptions& options,
                         const MetadataEdit* edit) {
  FirstPicture first = firstPictureOf(session, source, options.behind);
  const SourceFile& file = first.file;
  Described& described = first.described;
  const JpegLayout sourceLayout = layoutOf(file.path());
  if (!options.dropMetadata) {
    takeWhole(session, file, described,
              [&](Described& target) { takeMetadata(session, sourceLayout, target); });
  }
  const EditedParts edited = edit != nullptr ? edit->apply(described.fileData) : EditedParts{};
  dropHeldFields(described.fileData);
  PreviewRows preview;
  if (edited.exif) preview = takePreview(session, file, described.fileData);
  const host::JpegTail sourceTail = described.fileData.jpegTail();
  SaveSettings settings = chooseSettings(session, sourceTail, options);
  giveSettings(described.fileData, settings);
  if (options.askUser) settings = confirmedOrFail(session, described);
  OutputFile output(outputName, options.replace ? Existing::replaced : Existing::refused);
  std::filesystem::path written = output.handOver();
  described.fileData.setSourcePath(written);
  writeRows(session, file, described, sourceTail.mode != host::modeBaseline, preview, options);
  requireExifSegment(described.fileData);
  {
    const SourceFile saved(platform::displayPath(written));
    if (edit != nullptr) edit->verify(saved);
    if (!preview.rows().empty()) requireThumbnail(session, saved);
  }
  const bool kept = options.behind == BehindPicture::kept;
  if (kept) written = appendOthers(file, output, written);
  Converted converted = {outputName, std::filesystem::file_size(written), {}};
  converted.segments = compareLayouts(sourceLayout, layoutOf(written),
                                      {options.dropMetadata, settings.jfif != 0, edited, kept});
  output.commit();
  return converted;
}

}  // namespace fiohost
