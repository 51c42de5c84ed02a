// Reads arbitrary bytes as a print template. A read either fails whole with its message or gives
// a template that writes and reads back to the same bytes; then its pages are produced with
// fixed-width metrics and drawn on a recording canvas. Nothing may crash, hang, leak or read out
// of bounds.

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/headless_host.h"
#include "print/file/prt_reader.h"
#include "print/file/prt_writer.h"
#include "print/produce/draw_object.h"
#include "print/produce/page_production.h"
#include "print/produce/test_devices.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zv;
  static HeadlessHost host(nullptr);
  static HostInstallation installation(host);
  host.clearTranscript();
  std::string bytes(reinterpret_cast<const char*>(data), size);
  std::unique_ptr<PrintTemplate> tmpl = readPrintTemplateBytes(bytes, "fuzz.prt");
  if (!tmpl) return 0;
  tmpl->includeFile.reset();  // no file is opened
  std::string written = printTemplateBytes(*tmpl);
  std::unique_ptr<PrintTemplate> again = readPrintTemplateBytes(written, "again.prt");
  if (!again || printTemplateBytes(*again) != written) __builtin_trap();
  FixedWidthMetrics metrics(120, 240, 96);
  std::unique_ptr<OutputTemplate> output = producePages(metrics, *tmpl, nullptr, {});
  if (output) {
    RecordingCanvas canvas;
    for (const OutputPage& page : output->pages)
      for (const TemplateObject* object : page.objects)
        drawObject(metrics, canvas, nullptr, *object, RuleLines::Shown, {});
  }
  return 0;
}
