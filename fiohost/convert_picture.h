// Saving a picture anew: read through the plug-in's read entry, written through its write entry,
// the rows flowing from one to the other.
#pragma once

#include <functional>
#include <string>

#include "fiohost/file_data.h"
#include "fiohost/save_report.h"
#include "fiohost/save_settings.h"
#include "fiohost/session.h"
#include "fiohost/source_file.h"

namespace fiohost {

// What becomes of other images, and other data, behind the first picture.
enum class BehindPicture { refused, dropped, kept };

// What the command line says; what it leaves open comes from the settings, or from the source.
struct ConvertOptions {
  std::optional<host::u32> quality;
  std::optional<host::u32> sample;
  std::optional<host::u32> mode;
  std::optional<host::u32> jfif;
  bool keepSourceSettings = false;  // mode, sampling and JFIF as the source has them
  bool askUser = false;             // in the plug-in's dialog, which begins with all that
  bool dropMetadata = false;
  bool replace = false;  // an existing output
  // A file that is a multi-picture one by its name too is not saved when nothing is said.
  BehindPicture behind = BehindPicture::refused;
  // Asked with the rows that were written and their number; false stops the save. Null: nobody
  // asks.
  std::function<bool(host::u32 done, host::u32 total)> goesOn;
};

// What is done to the metadata on the way. Both may throw Failure, and nothing is written then.
struct MetadataEdit {
  std::function<EditedParts(FileData&)> apply;    // to what was loaded
  std::function<void(const SourceFile&)> verify;  // the saved file, before it takes its name
};

struct Converted {
  std::string output;
  std::uint64_t byteCount;
  std::vector<SegmentOutcome> segments;
};

// Lets the user change, in the plug-in's dialog over its owner, what a save of the file would take.
// Nothing when the user cancelled. Throws Failure.
std::optional<SaveSettings> askSaveSettings(const Session& session, const SourceFile& file,
                                            const ConvertOptions& options, HWND owner);

// Writes outputName, which may be the source itself; it appears complete or not at all. Throws
// Failure and leaves everything as it was. edit: null for none. An EXIF segment that is built anew
// gets a thumbnail of the picture.
Converted convertPicture(const Session& session, const SourceFile& file,
                         const std::string& outputName, const ConvertOptions& options,
                         const MetadataEdit* edit = nullptr);

}  // namespace fiohost
