#include "cli/json_writer.h"

#include <charconv>
#include <cmath>

#include "core/codepage.h"

namespace zv::cli {

void JsonWriter::separate() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (!first_.empty()) {
    if (!first_.back()) out_ += ',';
    first_.back() = false;
  }
}

void JsonWriter::beginObject() {
  separate();
  out_ += '{';
  first_.push_back(true);
}

void JsonWriter::endObject() {
  out_ += '}';
  first_.pop_back();
}

void JsonWriter::beginArray() {
  separate();
  out_ += '[';
  first_.push_back(true);
}

void JsonWriter::endArray() {
  out_ += ']';
  first_.pop_back();
}

void JsonWriter::key(std::string_view name) {
  string(name);
  out_ += ':';
  afterKey_ = true;
}

void JsonWriter::string(std::string_view text) {
  separate();
  out_ += '"';
  for (char c : windows1252ToUtf8(text)) {
    switch (c) {
      case '"':
        out_ += "\\\"";
        break;
      case '\\':
        out_ += "\\\\";
        break;
      case '\n':
        out_ += "\\n";
        break;
      case '\r':
        out_ += "\\r";
        break;
      case '\t':
        out_ += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          static const char* hex = "0123456789abcdef";
          out_ += "\\u00";
          out_ += hex[(c >> 4) & 0xF];
          out_ += hex[c & 0xF];
        } else {
          out_ += c;
        }
    }
  }
  out_ += '"';
}

void JsonWriter::number(double value) {
  separate();
  if (!std::isfinite(value)) {
    out_ += "null";
    return;
  }
  char buffer[64];
  auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  out_.append(buffer, result.ptr);
}

void JsonWriter::integer(long value) {
  separate();
  out_ += std::to_string(value);
}

void JsonWriter::value(const Value& v) {
  switch (v.kind()) {
    case ValueKind::Integer:
      integer(v.integer());
      break;
    case ValueKind::Float:
      number(v.real());
      break;
    case ValueKind::String:
      string(v.text());
      break;
    default:
      separate();
      out_ += "null";
  }
}

}  // namespace zv::cli
