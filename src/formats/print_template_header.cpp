#include "formats/print_template_header.h"

#include <cstdint>
#include <fstream>

namespace zv {

namespace {

enum HeaderCode : uint16_t {
  kMagicCode = 0,
  kVersionCode = 1,
  kGameSystemCode = 2,
  kLevelCode = 49,
  kDescriptionCode = 50,
};

constexpr uint16_t kGameSystemLimit = 23;

class LittleEndianReader {
 public:
  explicit LittleEndianReader(std::istream& in) : in_(in) {}
  std::optional<uint16_t> u16() {
    unsigned char bytes[2];
    if (!in_.read(reinterpret_cast<char*>(bytes), 2)) return std::nullopt;
    return static_cast<uint16_t>(bytes[0] | (bytes[1] << 8));
  }
  std::optional<uint32_t> u32() {
    auto low = u16();
    auto high = low ? u16() : std::nullopt;
    if (!high) return std::nullopt;
    return static_cast<uint32_t>(*low) | (static_cast<uint32_t>(*high) << 16);
  }
  std::optional<std::string> str(uint16_t limit) {
    auto length = u16();
    if (!length || *length > limit) return std::nullopt;
    std::string text(*length, '\0');
    if (*length > 0 && !in_.read(text.data(), *length)) return std::nullopt;
    return text;
  }

 private:
  std::istream& in_;
};

}  // namespace

std::optional<PrintTemplateHeader> readPrintTemplateHeader(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) return std::nullopt;
  LittleEndianReader reader(in);
  PrintTemplateHeader header;
  bool seenKnown = false;
  for (;;) {
    auto code = reader.u16();
    if (!code) break;
    switch (*code) {
      case kMagicCode: {
        auto magic = reader.u32();
        if (!magic || *magic != kPrintTemplateMagic) return std::nullopt;
        break;
      }
      case kVersionCode: {
        auto version = reader.u16();
        if (!version || *version >= 4) return std::nullopt;
        header.version = *version;
        break;
      }
      case kGameSystemCode: {
        auto name = reader.str(kGameSystemLimit);
        if (!name) return std::nullopt;
        header.gameSystem = *name;
        break;
      }
      case kLevelCode: {
        auto level = reader.u16();
        if (!level) return std::nullopt;
        header.level = *level;
        break;
      }
      case kDescriptionCode: {
        auto text = reader.str(0xFFFF);
        if (!text) return std::nullopt;
        header.description = *text;
        break;
      }
      default:
        return seenKnown ? std::optional(header) : std::nullopt;
    }
    seenKnown = true;
  }
  return seenKnown ? std::optional(header) : std::nullopt;
}

}  // namespace zv
