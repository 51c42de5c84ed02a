#pragma once
// Helpers for the token stream tests: streams over byte literals, and writers that collect output.

#include <initializer_list>
#include <memory>
#include <string>

#include "formats/tokens/tokenstream.h"

namespace zv::testing {

/// A string of the given byte values.
inline std::string bytes(std::initializer_list<int> values) {
  std::string out;
  for (int v : values)
    out.push_back(static_cast<char>(v));
  return out;
}

/// A stream opened for reading over `data`, its form decided by the magic test.
inline std::unique_ptr<TokenStream> readerOver(std::string data, std::string name = "test.chr") {
  auto stream = std::make_unique<TokenStream>();
  stream->setStream(std::make_unique<MemoryByteStream>(std::move(data)));
  stream->setName(std::move(name));
  stream->openStream();
  return stream;
}

/// A stream writing into memory in the given form.
class Writer {
 public:
  explicit Writer(bool binary) {
    stream.setStream(&sink);
    stream.setBinary(binary);
    stream.beginWrite();
  }
  /// Everything written so far, after a flush.
  std::string output() {
    stream.flush();
    return sink.data();
  }

  MemoryByteStream sink;
  TokenStream stream;
};

}  // namespace zv::testing
