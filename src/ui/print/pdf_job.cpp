#include "ui/print/pdf_job.h"

#include <QBuffer>
#include <QFile>
#include <QLocale>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include "core/fileinfo.h"
#include "core/messages.h"
#include "print/job/forms.h"
#include "ui/print/qt_print_device.h"

namespace zv {

QPageSize defaultPaper() {
  return QLocale::system().measurementSystem() == QLocale::ImperialUSSystem
             ? QPageSize(QPageSize::Letter)
             : QPageSize(QPageSize::A4);
}

void paintPages(QPagedPaintDevice& device, QPainter& painter, const OutputTemplate& output,
                const FileInfo* sheet, const DrawSettings& settings, int first, int last,
                int copies) {
  QtPrintDevice canvas(device, &painter);
  const PrintTemplate& tmpl = *output.source;
  const PixelsPerInch ppi = canvas.pixelsPerInch();
  FormPlacer forms(tmpl.printsForms()
                       ? FormLayout{twipsToDevice(static_cast<int>(tmpl.formWidth), ppi.x),
                                    twipsToDevice(static_cast<int>(tmpl.formHeight), ppi.y),
                                    device.width(), device.height()}
                       : FormLayout{});
  bool firstSheet = true;
  for (int copy = 0; copy < copies; ++copy) {
    for (int index = first; index <= last && index < static_cast<int>(output.pages.size());
         ++index) {
      if (forms.startsNewSheet() && !firstSheet) device.newPage();
      firstSheet = false;
      painter.save();
      painter.translate(forms.x(), forms.y());
      for (const TemplateObject* object : output.pages[index].objects)
        drawObject(canvas, canvas, sheet, *object, RuleLines::FromPreference, settings);
      painter.restore();
      forms.pageDone();
    }
  }
}

bool exportPdf(PrintTemplate& tmpl, FileInfo& sheet, const ProductionSettings& production,
               const DrawSettings& drawing, const std::string& pdfPath, const QPageSize& paper) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  QPdfWriter writer(&buffer);
  writer.setResolution(600);
  writer.setPageSize(paper);
  writer.setPageOrientation(tmpl.landscape() ? QPageLayout::Landscape : QPageLayout::Portrait);
  writer.setPageMargins(QMarginsF(0, 0, 0, 0));
  writer.setCreator("Zarvelin");
  writer.setTitle(QString::fromStdString(sheet.name.str()));
  QtPrintDevice metrics(writer);
  std::unique_ptr<OutputTemplate> output = producePages(metrics, tmpl, &sheet, production);
  if (!output) return false;
  {
    QPainter painter;
    if (!painter.begin(&writer)) {
      showError(strprintf("Could not print %s", pdfPath));
      return false;
    }
    paintPages(writer, painter, *output, &sheet, drawing, 0,
               static_cast<int>(output->pages.size()) - 1, 1);
    painter.end();
  }
  buffer.close();
  QSaveFile file(QString::fromStdString(pdfPath));
  if (!file.open(QIODevice::WriteOnly) || file.write(buffer.data()) != buffer.data().size() ||
      !file.commit()) {
    showError(strprintf("Error writing file %s", pdfPath));
    return false;
  }
  return true;
}

}  // namespace zv
