// The exported entries as a host calls them, with records, rows and answers of a small host's.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "fiohost/session.h"
#include "tests/fault/scratch.h"

namespace fault {

// What one call of an entry came to.
struct Reply {
  host::i64 result = 0;  // a handle counts as 1, all ones as -1
  int code = 0;          // of the last report; 0 = none
  bool operator==(const Reply&) const = default;
};

// One host with one picture in hand. Its callbacks are uses of Resource::calls: one that fails
// answers `refusal`, or gives no rows.
class EntryBench {
 public:
  EntryBench();
  EntryBench(const EntryBench&) = delete;
  EntryBench& operator=(const EntryBench&) = delete;
  ~EntryBench();

  const fiohost::Session session;
  const Scratch scratch;
  // The two pictures' paths, which a call can name without memory.
  const std::string jpegPath = scratch.file("in.jpg");
  const std::string mpoPath = scratch.file("in.mpo");
  const std::wstring wideJpegPath;
  const std::wstring wideMpoPath;
  int refusal = -1;

  // The record that the next call is about, described on a machine in order. takeBack() frees it.
  void describe(fiohost::Family family, const std::string& name);
  void loadProperties();
  // Makes the picture's EXIF fields the only place where its EXIF is, and wants a thumbnail.
  void forgetExifSegment();
  void wantPreview(host::i32 marker);
  void nameOutput(const std::string& name);
  [[nodiscard]] HGLOBAL record() const { return record_; }
  [[nodiscard]] HGLOBAL properties() const;

  template <typename Entry>
  [[nodiscard]] Entry* entry(host::PluginOrdinal ordinal) const {
    return plugin_.entry<Entry>(ordinal);
  }
  // Calls and notes what the entry answered and reported.
  void call(const std::function<host::i64()>& entry);
  [[nodiscard]] const Reply& reply() const { return reply_; }
  // A handle that the entry made, and what it counts as.
  [[nodiscard]] host::i64 take(HGLOBAL made);
  [[nodiscard]] host::i64 take(host::u64 made) { return take(reinterpret_cast<HGLOBAL>(made)); }

  // What the callbacks got, as one number that stands for every byte in its order.
  [[nodiscard]] host::u64 delivered() const { return delivered_; }
  // Frees what the record got since it was described, and what the call made.
  void takeBack();
  void forget();

  host::ReadRequest request = {};
  static int onRows(host::ReadRequest* request, host::u64, host::u32 first, host::u32 width,
                    host::u32 count, host::u8** rows, host::u16, host::i32, host::u32);
  static void* rowSource(void* context, host::u64, host::u32 first, host::u32 width,
                         host::u32 count, host::u32 second, host::i32, host::i32);
  static void* mpoRow(void* user, host::u32 width, host::u32 height, host::u32 first, host::u32,
                      int, int, host::u32);
  static int onRequest(int action, void* record, void* context, HGLOBAL);

 private:
  void note(const host::u8* bytes, std::size_t count);
  [[nodiscard]] host::u8* ownRow(host::u32 row);

  static constexpr std::size_t longestRow = 4096;
  static constexpr std::size_t mostRows = 64;

  const fiohost::Module plugin_;
  HGLOBAL record_ = nullptr;
  std::wstring path_;
  HGLOBAL made_ = nullptr;
  Reply reply_;
  host::u64 delivered_ = 0;
  host::u8 row_[longestRow] = {};
  host::u8* rows_[mostRows] = {};
};

}  // namespace fault
