#pragma once
// The named output streams of a run: header, body and footer streams in order of creation,
// joined into one block at the end.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zv {

enum class StreamKind { Header = 0, Body = 1, Footer = 2 };

struct OutputStream {
  std::string name;  ///< at most 64 bytes; empty for the unnamed streams
  StreamKind kind = StreamKind::Body;
  std::string text;
};

class OutputStreams {
 public:
  /// Starts with the unnamed body stream current.
  OutputStreams();

  OutputStream& current() { return *current_; }
  /// Makes the stream of that name and kind current, creating it at the end when new.
  OutputStream& select(std::string_view name, StreamKind kind);

  /// The block: the unnamed header, then in order of creation every body stream and every named
  /// header or footer stream, then the unnamed footer.
  std::string join() const;

 private:
  std::vector<std::unique_ptr<OutputStream>> streams_;
  OutputStream* current_ = nullptr;
};

}  // namespace zv
