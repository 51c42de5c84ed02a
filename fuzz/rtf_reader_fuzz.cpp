// Feeds the input to the RTF reader and writes what it read as text, HTML and RTF, which must
// read back; then reads the input as filter output with formatting lines and chooses its
// clipboard formats, with and without "HTML Format". Nothing may crash or leak.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/headless_host.h"
#include "filter/rich/clipboard.h"
#include "filter/rich/filter_text.h"
#include "filter/rich/rich_writers.h"
#include "filter/rich/rtf_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string_view text(reinterpret_cast<const char*>(data), size);
  zv::HeadlessHost host(nullptr);
  zv::HostInstallation installed(host);
  zv::RichText rich;
  if (zv::parseRichText(text, rich) == zv::kRichOk) {
    zv::textOf(rich);
    zv::htmlOf(rich);
    zv::RichText again;
    if (zv::parseRichText(zv::rtfOf(rich), again) != zv::kRichOk) std::abort();
  }
  bool formatted = false;
  zv::parseFilterText(text, nullptr, rich, formatted);
  zv::FilterDocument document;
  zv::clipboardContentsFor(document, text);
  document.clipFormat = "HTML Format";
  zv::clipboardContentsFor(document, text);
  return 0;
}
