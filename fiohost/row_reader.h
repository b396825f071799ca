// A picture being read through the plug-in in a thread of its own, its rows going into a pipe.
#pragma once

#include <exception>
#include <thread>

#include "fiohost/row_pipe.h"
#include "fiohost/session.h"
#include "fiohost/source_file.h"

namespace fiohost {

// Describes the file anew, so that nothing is shared with the writing call but the rows.
class RowReader {
 public:
  // Begins at once. Everything must outlive the reader.
  RowReader(const Session& session, const SourceFile& file, RowPipe& pipe);
  RowReader(const RowReader&) = delete;
  RowReader& operator=(const RowReader&) = delete;
  ~RowReader();

  void stop();
  // Throws what went wrong while reading, if anything did. Only after stop().
  void rethrow() const;

 private:
  void run(const Session& session, const SourceFile& file) noexcept;
  void read(const Session& session, const SourceFile& file);

  RowPipe& pipe_;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace fiohost
