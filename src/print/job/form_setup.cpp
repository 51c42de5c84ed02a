#include "print/job/form_setup.h"

#include <algorithm>

#include "core/messages.h"

namespace zv {

std::string formSettingsSection(std::string_view formName) {
  return strprintf("Printing\\Forms\\%s", std::string(formName));
}

std::string formNameOf(const PrintTemplate& tmpl) {
  std::string name = tmpl.path;
  std::size_t slash = name.find_last_of("/\\");
  if (slash != std::string::npos) name.erase(0, slash + 1);
  return name.empty() ? tmpl.gameSystem : name;
}

FormMargins readFormMargins(const Settings& settings, std::string_view formName,
                            bool landscapeByDefault) {
  const std::string section = formSettingsSection(formName);
  FormMargins margins;
  margins.left = std::max(0L, settings.getInt(section, "LeftMargin", 0));
  margins.right = std::max(0L, settings.getInt(section, "RightMargin", 0));
  margins.top = std::max(0L, settings.getInt(section, "TopMargin", 0));
  margins.bottom = std::max(0L, settings.getInt(section, "BottomMargin", 0));
  margins.landscape = settings.getInt(section, "Landscape", landscapeByDefault ? 1 : 0) != 0;
  return margins;
}

void writeFormMargins(Settings& settings, std::string_view formName, const FormMargins& margins) {
  const std::string section = formSettingsSection(formName);
  settings.setInt(section, "LeftMargin", margins.left);
  settings.setInt(section, "RightMargin", margins.right);
  settings.setInt(section, "TopMargin", margins.top);
  settings.setInt(section, "BottomMargin", margins.bottom);
  settings.setInt(section, "Landscape", margins.landscape ? 1 : 0);
}

std::string formSizeText(const PrintTemplate& tmpl, MeasureUnit unit) {
  return strprintf("The height and width of the form is %s x %s.",
                   formatMeasure(static_cast<long>(tmpl.formHeight), unit),
                   formatMeasure(static_cast<long>(tmpl.formWidth), unit));
}

}  // namespace zv
