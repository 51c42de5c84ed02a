#pragma once
// A small writer of JSON text for the CLI's reports. Texts of the system are Windows-1252 and are
// written as UTF-8.

#include <string>
#include <string_view>
#include <vector>

#include "core/value.h"

namespace zv::cli {

class JsonWriter {
 public:
  void beginObject();
  void endObject();
  void beginArray();
  void endArray();
  /// The name of the next member of an object.
  void key(std::string_view name);
  void string(std::string_view text);
  void number(double value);
  void integer(long value);
  /// A value by its kind: numbers as numbers, texts as strings, anything else as null.
  void value(const Value& v);

  const std::string& text() const { return out_; }

 private:
  void separate();
  std::string out_;
  std::vector<bool> first_;  ///< per open container: nothing written in it yet
  bool afterKey_ = false;
};

}  // namespace zv::cli
