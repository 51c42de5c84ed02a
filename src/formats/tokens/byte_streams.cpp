#include <algorithm>
#include <cstring>

#include "formats/tokens/tokenstream.h"

namespace zv {

FileByteStream::FileByteStream(const std::string& path, Mode mode)
    : file_(std::fopen(path.c_str(), mode == Mode::Read ? "rb" : "wb")) {}

long FileByteStream::read(char* buffer, long count) {
  if (!file_ || count < 0) return -1;
  size_t got = std::fread(buffer, 1, static_cast<size_t>(count), file_.get());
  if (got == 0 && std::ferror(file_.get())) return -1;
  return static_cast<long>(got);
}

long FileByteStream::write(const char* buffer, long count) {
  if (!file_ || count < 0) return -1;
  size_t put = std::fwrite(buffer, 1, static_cast<size_t>(count), file_.get());
  if (put == 0 && count > 0) return -1;
  return static_cast<long>(put);
}

bool FileByteStream::rewind() {
  if (!file_) return false;
  std::clearerr(file_.get());
  return std::fseek(file_.get(), 0, SEEK_SET) == 0;
}

bool FileByteStream::close() {
  if (!file_) return false;
  return std::fclose(file_.release()) == 0;
}

long MemoryByteStream::read(char* buffer, long count) {
  if (count < 0) return -1;
  size_t take = std::min({static_cast<size_t>(count), data_.size() - readPos_, readChunk_});
  std::memcpy(buffer, data_.data() + readPos_, take);
  readPos_ += take;
  return static_cast<long>(take);
}

long MemoryByteStream::write(const char* buffer, long count) {
  if (failWrites_ || count < 0) return -1;
  size_t room = data_.size() < writeCapacity_ ? writeCapacity_ - data_.size() : 0;
  size_t put = std::min(static_cast<size_t>(count), room);
  data_.append(buffer, put);
  return static_cast<long>(put);
}

bool MemoryByteStream::rewind() {
  readPos_ = 0;
  return true;
}

}  // namespace zv
