// Delivering the EXIF thumbnail as a preview.
#pragma once

#include "host/file_data.h"
#include "host/requests.h"

namespace jpeg {

// Decodes the thumbnail of the record's source file into the size of its preview fields and hands
// it to the host in one call. 1 when it was delivered, 0 (never reported) when not.
[[nodiscard]] int deliverThumbnail(HGLOBAL fileData, host::ReadRequest& request,
                                   host::RowCallback* rowCallback) noexcept;

}  // namespace jpeg
