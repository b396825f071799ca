#include "fiohost/read_picture.h"

#include "fiohost/explain.h"
#include "fiohost/thumbnail.h"

namespace fiohost {
namespace {

// What a read will deliver, and the request words that ask for it.
struct Plan {
  host::ReadRequest request;
  host::u32 bytesPerPixel;
  Size size;
};

Plan planPicture(const Described& described, const ReadOptions& options) {
  const host::FileDataRecord record = described.fileData.common();
  Plan plan = {{}, record.bitsPerPixel / 8, {record.width, record.height}};
  plan.request.fullImage = 1;
  // Only a picture that is its own preview is decoded at a reduced size; any other the plug-in
  // would thin out by dropping rows, so it is fetched whole and averaged here.
  if (options.box && record.previewMarker == host::previewIsImage && plan.size.width > 0 &&
      plan.size.height > 0) {
    const Size target = fitInside(plan.size, *options.box);
    plan.request.preview = 1;
    plan.request.targetWidth = target.width;
    plan.request.targetHeight = target.height;
  }
  return plan;
}

Plan planThumbnail(const Session& session, const SourceFile& file, Described& described) {
  const std::optional<ThumbnailFacts> facts = findThumbnail(session, file);
  if (!facts) throw Failure("the file has no EXIF thumbnail", "read it without --thumbnail");
  described.fileData.setPreview({facts->components * 8, facts->width, facts->height,
                                 facts->horizontalResolution, facts->verticalResolution});
  return {{}, facts->components, {facts->width, facts->height}};
}

void runRead(const Session& session, Described& described, RowReceiver& receiver) {
  session.reports.clear();
  const int result = session.plugin.read(described.family, described.fileData.handle(),
                                         receiver.request(), &RowReceiver::onRows);
  if (result == 1) return;
  receiver.rethrow();
  throw explainCode(session.reports.code(), "the plug-in delivered no picture",
                    "the file may be damaged or may have changed meanwhile");
}

}  // namespace

PictureShape deliverPicture(const Session& session, const SourceFile& file, Described& described,
                            const ReadOptions& options, const RowReceiver::BeginPass& begin) {
  const Plan plan =
      options.thumbnail ? planThumbnail(session, file, described) : planPicture(described, options);
  Progress progress(file.name());
  RowReceiver receiver({begin, options.box}, plan.bytesPerPixel, plan.size, progress);
  *receiver.request() = plan.request;
  runRead(session, described, receiver);
  receiver.finish();
  return receiver.shape();
}

PictureShape readPicture(const Session& session, const SourceFile& file, Described& described,
                         const ReadOptions& options, const std::string& outputName) {
  MakeRowWriter* makeWriter = writerFor(outputName);
  OutputFile output(outputName);
  bool begun = false;
  const PictureShape written =
      deliverPicture(session, file, described, options, [&](const PictureShape& shape) {
        if (begun) output.restart();
        begun = true;
        return makeWriter(output, shape);
      });
  output.commit();
  return written;
}

}  // namespace fiohost
