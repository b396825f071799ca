// Asking the plug-in what a file holds: the JPEG family first, then the MPO family. A file that
// only its name makes an MPO is described as the JPEG picture that it begins with.
#pragma once

#include "fiohost/file_data.h"
#include "fiohost/session.h"
#include "fiohost/source_file.h"

namespace fiohost {

struct Described {
  Family family;
  FileData fileData;  // names the file, so it can be read
  std::string note;   // why the file is not served as its name says; mostly empty
};

// Throws Failure when neither family serves the file. session must outlive the result.
[[nodiscard]] Described describeFile(const Session& session, const SourceFile& file);

}  // namespace fiohost
