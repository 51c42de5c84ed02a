#include "filter/run/output_streams.h"

#include "core/text.h"

namespace zv {

OutputStreams::OutputStreams() {
  select("", StreamKind::Body);
}

OutputStream& OutputStreams::select(std::string_view name, StreamKind kind) {
  name = name.substr(0, 64);
  for (auto& stream : streams_) {
    if (stream->kind == kind && equalsIgnoringCase(stream->name, name)) {
      current_ = stream.get();
      return *current_;
    }
  }
  streams_.push_back(std::make_unique<OutputStream>(OutputStream{std::string(name), kind, {}}));
  current_ = streams_.back().get();
  return *current_;
}

std::string OutputStreams::join() const {
  std::string out;
  for (const auto& stream : streams_) {
    if (stream->kind == StreamKind::Header && stream->name.empty()) out += stream->text;
  }
  for (const auto& stream : streams_) {
    if (stream->kind == StreamKind::Body || !stream->name.empty()) out += stream->text;
  }
  for (const auto& stream : streams_) {
    if (stream->kind == StreamKind::Footer && stream->name.empty()) out += stream->text;
  }
  return out;
}

}  // namespace zv
