// What the writer asks of the host's request callback.
#pragma once

#include <span>

#include "host/mpo.h"
#include "host/plugin_entries.h"
#include "platform/global_memory.h"

namespace mpo {

// The host's side of one write. Answers other than 1 are the host's own.
class WriteRequests {
 public:
  WriteRequests(host::MPORequestCallback* callback, void* context) noexcept
      : callback_(callback), context_(context) {}

  // How many images the file has and which one is written.
  [[nodiscard]] int askCount(host::MpoCountAnswer& counts) const noexcept;
  // The descriptions of all images, which come zeroed.
  [[nodiscard]] int askDescriptions(std::span<host::MpoImageDesc> images) const noexcept;
  // The first byte of the rows goes into the request.
  [[nodiscard]] int askRows(host::RowRequest& request) const noexcept;

 private:
  [[nodiscard]] int ask(host::u32 question, host::u32 imageNumber, void* answer) const noexcept;

  host::MPORequestCallback* callback_;
  void* context_;
};

// A request for rows of a picture with that many bytes per pixel.
[[nodiscard]] host::RowRequest rowRequest(host::u32 width, host::u32 height, host::u32 firstRow,
                                          host::u32 rowCount, host::u32 bytesPerPixel,
                                          host::u32 rowDistance) noexcept;

}  // namespace mpo
