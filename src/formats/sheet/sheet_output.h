#pragma once
// The writing side of the sheet grammar: a token stream wrapper that keeps the first failure and
// writes nothing after it, so that the writers can emit their sections without checking each
// token.

#include <cstdint>
#include <string>
#include <string_view>

#include "core/basic_records.h"
#include "core/dialog.h"
#include "core/item.h"
#include "core/list_info.h"
#include "formats/tokens/tokenstream.h"

namespace zv {

class SheetOut {
 public:
  explicit SheetOut(TokenStream& stream) : out_(stream) {}

  TokenStream& stream() { return out_; }
  /// kWriteOk, or the first failure.
  int result() const { return result_; }
  bool ok() const { return result_ == kWriteOk; }
  bool binary() const { return out_.binary(); }

  void keyword(int id) { apply(ok() ? out_.writeKeyword(id) : result_); }
  void string(std::string_view text) { apply(ok() ? out_.writeString(text) : result_); }
  /// A string with a 32-bit length in binary (the rich text).
  void longString(std::string_view text) { apply(ok() ? out_.writeString(text, true) : result_); }
  void integer(std::int16_t value) { apply(ok() ? out_.writeInt(value) : result_); }
  void longValue(std::int32_t value) { apply(ok() ? out_.writeLong(value) : result_); }
  void real(double value) { apply(ok() ? out_.writeReal(value) : result_); }
  /// A coordinate: 16 bits, written as unsigned in text so that "not set" reads 65535.
  void coord(std::int16_t value);
  void bytes(std::string_view data) { apply(ok() ? out_.writeBytes(data) : result_); }
  /// Ends the line in text form, unless nothing stands on it yet.
  void lineBreak() {
    if (ok() && !binary() && out_.column() > 0) apply(out_.writeLineBreak());
  }
  void flush() { apply(ok() ? out_.flush() : result_); }

  void keywordInt(int id, std::int16_t value) {
    keyword(id);
    integer(value);
  }
  void keywordLong(int id, std::int32_t value) {
    keyword(id);
    longValue(value);
  }
  void keywordReal(int id, double value) {
    keyword(id);
    real(value);
  }
  /// The keyword and the text, or nothing for an empty text.
  void keywordText(int id, std::string_view text) {
    if (text.empty()) return;
    keyword(id);
    string(text);
  }
  /// The keyword alone when `on`.
  void flag(int id, bool on) {
    if (on) keyword(id);
  }

 private:
  void apply(int result) {
    if (result_ == kWriteOk) result_ = result;
  }

  TokenStream& out_;
  int result_ = kWriteOk;
};

// The blocks, in the writer's order.
void writeListBlock(SheetOut& out, const ListInfo& list);
void writeItemBlock(SheetOut& out, const Item& item);
void writeOptionBlock(SheetOut& out, const std::vector<std::unique_ptr<Option>>& options);
/// One option: its kind and texts, wrapped in `begin ... end` when it has more to say.
void writeOptionEntry(SheetOut& out, const Option& option);
void writeDialogBlock(SheetOut& out, const DlgInfo& dialog);

}  // namespace zv
