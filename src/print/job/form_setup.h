#pragma once
// Forms: the margins and orientation a user gives a template that asks for them, kept in the
// settings per form, and the size text the Form Setup dialog shows.

#include <string>
#include <string_view>

#include "core/settings.h"
#include "print/job/measure_field.h"
#include "print/model/print_template.h"

namespace zv {

/// Margins in twips and the orientation of one form.
struct FormMargins {
  long left = 0;
  long right = 0;
  long top = 0;
  long bottom = 0;
  bool landscape = false;
  friend bool operator==(const FormMargins&, const FormMargins&) = default;
};

/// The settings section of a form: "Printing\Forms\%s".
std::string formSettingsSection(std::string_view formName);

/// The name a template's form is kept under: its file name without folder, or its game system
/// for a template that has no file.
std::string formNameOf(const PrintTemplate& tmpl);

/// The form's margins from keys LeftMargin, RightMargin, TopMargin, BottomMargin and Landscape
/// of its section; a key not there gives 0, and the template's own orientation.
FormMargins readFormMargins(const Settings& settings, std::string_view formName,
                            bool landscapeByDefault);

/// Keeps the form's margins and orientation in its section.
void writeFormMargins(Settings& settings, std::string_view formName, const FormMargins& margins);

/// "The height and width of the form is %s x %s." with the form's height and width in `unit`.
std::string formSizeText(const PrintTemplate& tmpl, MeasureUnit unit);

}  // namespace zv
