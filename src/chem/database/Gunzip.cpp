#include "chem/database/Gunzip.h"

#include <zlib.h>

#include <algorithm>
#include <vector>

namespace QXChem {
namespace {

constexpr std::size_t kBufferSize = 256 * 1024;
constexpr std::size_t kMaxInput = 1u << 30;  // zlib counts its input in 32 bits
constexpr int kGzipWindow = 15 + 16;         // largest window, gzip header required

class Inflater {
 public:
  Inflater() : ready_(inflateInit2(&stream_, kGzipWindow) == Z_OK) {}
  ~Inflater() {
    if (ready_) inflateEnd(&stream_);
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;

  // Inflates the member at the head of `data` and removes it from there.
  bool InflateMember(std::string_view& data, TempFile& out, std::string& reason);

 private:
  z_stream stream_{};
  bool ready_;
  std::vector<char> buffer_ = std::vector<char>(kBufferSize);
};

bool Inflater::InflateMember(std::string_view& data, TempFile& out, std::string& reason) {
  if (!ready_ || inflateReset(&stream_) != Z_OK) {
    reason = "zlib cannot be used";
    return false;
  }
  for (int state = Z_OK; state != Z_STREAM_END;) {
    const std::size_t offered = std::min(data.size(), kMaxInput);
    stream_.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data()));
    stream_.avail_in = static_cast<uInt>(offered);
    stream_.next_out = reinterpret_cast<Bytef*>(buffer_.data());
    stream_.avail_out = static_cast<uInt>(kBufferSize);
    state = inflate(&stream_, Z_NO_FLUSH);
    data.remove_prefix(offered - stream_.avail_in);
    const std::size_t made = kBufferSize - stream_.avail_out;
    if (!out.Write(buffer_.data(), made, reason)) return false;
    if (state == Z_OK || state == Z_STREAM_END) continue;
    // No progress is possible: without input left the data has been cut, else it is damaged.
    reason = state == Z_BUF_ERROR && data.empty() ? "gzip data is cut short" : "gzip data is corrupt";
    if (stream_.msg) reason += std::string(" (") + stream_.msg + ")";
    return false;
  }
  return true;
}

}  // namespace

bool IsGzip(std::string_view data) {
  return data.starts_with("\x1f\x8b");
}

bool Gunzip(std::string_view data, TempFile& out, std::string& reason) {
  Inflater inflater;
  while (IsGzip(data)) {
    if (!inflater.InflateMember(data, out, reason)) return false;
  }
  if (data.find_first_not_of('\0') == std::string_view::npos) return true;
  reason = "gzip data is followed by something else";
  return false;
}

}  // namespace QXChem
