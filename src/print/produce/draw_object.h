#pragma once
// Drawing one template object on a device: shapes with their pens, brushes and cell lines, rule
// lines, laid-out text, pictures and picture references.

#include <filesystem>

#include "core/record_types.h"
#include "print/produce/canvas.h"

namespace zv {

/// How rule lines are asked for: by the caller, or by the preference "Show Rule Lines".
enum class RuleLines { FromPreference, Shown };

struct DrawSettings {
  /// The preference "Show Rule Lines" (the setting `ShowRules`).
  bool showRulesPreference = false;
  /// Where picture files named by a sheet are looked for first.
  std::filesystem::path sourceDirectory;
  /// The editor shows "Continuation: %s" in a continuation box instead of its text.
  bool editor = false;
};

/// Computes the device rectangle and line width of every object of the template from twips.
void computeDeviceGeometry(PrintTemplate& tmpl, PixelsPerInch ppi);

/// Draws `object` (its device rectangle must be computed). `sheet` is null in the template
/// editor. False after "Object type missing from drawObject" was shown.
bool drawObject(TextMetrics& metrics, Canvas& canvas, const FileInfo* sheet,
                const TemplateObject& object, RuleLines rules, const DrawSettings& settings);

/// The picture file a picture reference names for a sheet (types 1 to 3), or the picture bytes
/// of its field (type 0); empty when there is none.
std::string pictureReferenceBytes(const FileInfo& sheet, const TemplateObject& object,
                                  const std::filesystem::path& sourceDirectory);

}  // namespace zv
