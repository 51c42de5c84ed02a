#pragma once
// A dialog of a sheet and its fields.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/basic_records.h"
#include "core/bit_field.h"
#include "core/fixed_string.h"
#include "core/list_info.h"
#include "core/record_limits.h"
#include "core/record_types.h"

namespace zv {

/// One field of a dialog. Which members are used depends on `kind`, the keyword id of the field
/// (`text`, `checkbox`, `edittext`, `groupbox`, `editvar`, `formula`, `combobox`, `list`,
/// `picture`, `button` or `dispbm`).
struct DlgItem {
  DlgItem() = default;
  DlgItem(const DlgItem&) = delete;
  DlgItem& operator=(const DlgItem&) = delete;

  DlgInfo* owner = nullptr;
  std::int32_t kind = 0;
  std::int32_t justify = 0;  ///< keyword id of `left`, `right` or `center`
  std::int16_t checked = 0;  ///< the state of a checkbox
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::int16_t width = 0;
  std::int16_t height = 0;
  std::uint32_t flags = 0;
  std::string varName;
  std::string text;  ///< caption, or initial value
  std::string defaultExp;
  Symbol* symbol = nullptr;
  std::string checkExp;
  std::string checkMsg;
  std::string script;  ///< for a button, the script it runs
  std::int16_t fontIndex = 0;
  std::string fontExp;
  std::uint32_t bgColor = 0;

  // The slots that depend on the kind.
  std::unique_ptr<ListInfo> listField;  ///< `list`: the field's own list
  std::string choices;                  ///< `combobox`: the choices as one text
  std::int32_t selectedIndex = 0;       ///< `combobox`
  std::string pictureData;              ///< `picture`: the raw picture block
  std::shared_ptr<void> picture;        ///< `picture`: the decoded form, owned by the picture code
  std::string buttonText1;              ///< `button`: the two further texts
  std::string buttonText2;
  std::vector<std::string> pictureNames;  ///< `dispbm`

  std::string format;   ///< `editvar`
  std::string formula;  ///< `editvar`

  bool forceConst() const { return bits::test(flags, 2); }
  void setForceConst(bool on) { bits::assign(flags, 2, on); }
  bool sorted() const { return bits::test(flags, 4); }
  void setSorted(bool on) { bits::assign(flags, 4, on); }
  bool noBorder() const { return bits::test(flags, 7); }
  void setNoBorder(bool on) { bits::assign(flags, 7, on); }
  bool transparent() const { return bits::test(flags, 9); }
  void setTransparent(bool on) { bits::assign(flags, 9, on); }
  bool hasBgColor() const { return bits::test(flags, 10); }
  void setHasBgColor(bool on) { bits::assign(flags, 10, on); }

  /// A deep copy: the kind's texts and, for a `list`, the list with all its items. Symbols and
  /// the owner are cleared; the decoded picture is shared.
  std::unique_ptr<DlgItem> clone() const;
};

struct DlgInfo {
  DlgInfo() = default;
  DlgInfo(const DlgInfo&) = delete;
  DlgInfo& operator=(const DlgInfo&) = delete;

  std::uint32_t flags = 0;
  FileInfo* owner = nullptr;
  WindowHandle window = nullptr;
  std::int16_t x = 0;
  std::int16_t y = 0;
  FixedString<kDialogNameCapacity> name;
  std::string help;
  FixedString<kMenuCharCapacity> menuChar;
  FontSpec font;
  std::int16_t width = 0;
  std::int16_t height = 0;
  std::vector<FontSpec> fonts;  ///< fonts that fields select by fontIndex; its size is fontCount
  std::vector<std::unique_ptr<DlgItem>> items;
  std::string checkExp;
  std::string checkMsg;
  std::string defCheckExp;
  std::string defCheckMsg;
  std::string skin;  ///< a picture name
  std::uint32_t bgColor = 0;

  bool open() const { return bits::test(flags, 0); }
  void setOpen(bool on) { bits::assign(flags, 0, on); }
  bool inUse() const { return bits::test(flags, 1); }
  void setInUse(bool on) { bits::assign(flags, 1, on); }
  bool hasBgColor() const { return bits::test(flags, 2); }
  void setHasBgColor(bool on) { bits::assign(flags, 2, on); }

  /// Appends a field, owned by this dialog; a `list` field's list takes the dialog's owner.
  DlgItem& appendItem(std::unique_ptr<DlgItem> item);

  /// A deep copy with the same owner; the window and symbols are cleared.
  std::unique_ptr<DlgInfo> clone() const;
};

}  // namespace zv
