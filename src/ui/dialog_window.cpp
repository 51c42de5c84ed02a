#include "ui/dialog_window.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <algorithm>

#include "core/host.h"
#include "core/messages.h"
#include "core/text.h"
#include "core/undo.h"
#include "expr/compiler.h"
#include "formats/tokens/keywords.h"
#include "rules/lists/list_undo.h"
#include "ui/field_geometry.h"
#include "ui/field_values.h"
#include "ui/list_panel.h"
#include "ui/sheet_view.h"
#include "ui/text_codec.h"

namespace zv::ui {

namespace {

QColor colourOf(std::uint32_t colour) {
  Rgb rgb = rgbOf(colour);
  return QColor(rgb.red, rgb.green, rgb.blue);
}

QFont fontOf(const FontSpec& fontSpec, const QFont& fallback) {
  FontStyle style = fontStyleOf(fontSpec.fontSize);
  if (!style.present()) return fallback;
  QFont font(fromSystemText(fontSpec.fontFace.str()));
  font.setPixelSize(std::max(1, fontPixelHeight(style.points, host().screenPixelsPerInch().y)));
  font.setBold(style.bold);
  font.setItalic(style.italic);
  font.setUnderline(style.underline);
  font.setStrikeOut(style.strikeOut);
  return font;
}

Qt::Alignment alignmentOf(const DlgItem& item) {
  Qt::Alignment vertical = Qt::AlignTop;
  if (item.justify == kRight) return Qt::AlignRight | vertical;
  if (item.justify == kCenter) return Qt::AlignHCenter | vertical;
  return Qt::AlignLeft | vertical;
}

QString controlText(const QWidget* control) {
  if (auto* line = qobject_cast<const QLineEdit*>(control)) return line->text();
  if (auto* plain = qobject_cast<const QPlainTextEdit*>(control)) return plain->toPlainText();
  return {};
}

void setControlText(QWidget* control, const QString& text) {
  if (auto* line = qobject_cast<QLineEdit*>(control)) {
    if (line->text() == text) return;  // keeps the caret and the selection
    line->setText(text);
    line->setCursorPosition(0);
  } else if (auto* plain = qobject_cast<QPlainTextEdit*>(control)) {
    QSignalBlocker block(plain);
    plain->setPlainText(text);
  } else if (auto* label = qobject_cast<QLabel*>(control)) {
    label->setText(text);
  }
}

void selectAllText(QWidget* control) {
  if (auto* line = qobject_cast<QLineEdit*>(control)) line->selectAll();
  if (auto* plain = qobject_cast<QPlainTextEdit*>(control)) plain->selectAll();
}

// A placeholder for a picture until pictures can be shown: a frame with the field's name.
QLabel* pictureStandIn(const DlgItem& item, QWidget* parent) {
  auto* label = new QLabel(fromSystemText(item.varName), parent);
  label->setAlignment(Qt::AlignCenter);
  label->setFrameStyle(QFrame::Box | QFrame::Plain);
  label->setWordWrap(true);
  return label;
}

}  // namespace

DialogWindow::DialogWindow(SheetView& view, int dialogIndex, QWidget* parent)
    : QWidget(parent),
      view_(view),
      dialogIndex_(dialogIndex),
      dialog_(*view.sheet().dlgs[static_cast<std::size_t>(dialogIndex)]) {
  setObjectName(fromSystemText(dialog_.name.str()));
  dialogFont_ = fontOf(dialog_.font, QApplication::font());
  setFont(dialogFont_);
  if (dialog_.hasBgColor()) {
    background_ = colourOf(dialog_.bgColor);
  } else if (view.dialogColour >= 0) {
    background_ = colourOf(static_cast<std::uint32_t>(view.dialogColour));
  } else {
    background_ = palette().color(QPalette::Window);
  }
  QPalette colours = palette();
  colours.setColor(QPalette::Window, background_);
  if (dialog_.font.fontColor != 0)
    colours.setColor(QPalette::WindowText, colourOf(dialog_.font.fontColor));
  setPalette(colours);
  ClientSize size = dialogClientSize(dialog_.width, dialog_.height);
  resize(size.width, size.height);
  createFields();
}

DialogWindow::~DialogWindow() {
  view_.watches().removeObservers(this);
}

void DialogWindow::createFields() {
  fields_.reserve(dialog_.items.size());
  int position = 0;
  for (auto& item : dialog_.items) {
    fields_.push_back({item.get(), nullptr, false, false});
    QWidget* control = createControl(*item, position);
    fields_.back().control = control;
    if (control != nullptr) {
      control->setProperty(kFieldPositionProperty, position);
      control->setObjectName(fromSystemText(item->varName));
      watchVariable(fields_.back());
      applyDefaultFont(fields_.back());
    }
    ++position;
  }
  // Group boxes stand behind the fields they frame.
  for (Field& field : fields_) {
    if (field.control != nullptr && field.item->kind == kGroupbox) field.control->lower();
  }
}

QFont DialogWindow::fieldFont(const DlgItem& item, QColor& colour) const {
  int expressionResult = 0;
  if (item.fontIndex == 0 && !item.fontExp.empty()) {
    Value value;
    if (parseExp(view_.sheet().symbols.get(), item.fontExp, value) == 0) {
      expressionResult = valueToInteger(value);
    } else {
      showError(strprintf("Bad font expression: %s", item.fontExp));
    }
  }
  int index =
      resolveFontIndex(item.fontIndex, expressionResult, static_cast<int>(dialog_.fonts.size()));
  colour = palette().color(QPalette::WindowText);
  if (index > 0) {
    const FontSpec& fontSpec = dialog_.fonts[static_cast<std::size_t>(index) - 1];
    if (fontSpec.fontColor != 0) colour = colourOf(fontSpec.fontColor);
    return fontOf(fontSpec, dialogFont_);
  }
  return dialogFont_;
}

QWidget* DialogWindow::createControl(DlgItem& item, int position) {
  QWidget* control = nullptr;
  Field& field = fields_[static_cast<std::size_t>(position)];
  int charHeight = QFontMetrics(dialogFont_).height();
  int height = item.height;
  switch (item.kind) {
    case kText:
    case kFormula: {
      QString text = item.kind == kText ? fromSystemText(item.text)
                                        : fromSystemText(displayText(view_.sheet(), item));
      auto* label = new QLabel(text, this);
      label->setAlignment(alignmentOf(item));
      label->setWordWrap(item.kind == kText);
      control = label;
      break;
    }
    case kGroupbox:
      control = new QGroupBox(fromSystemText(item.text), this);
      break;
    case kEdittext:
    case kEditvar:
      control = createEdit(item, field);
      break;
    case kCheckbox: {
      auto* box = new QCheckBox(fromSystemText(item.text), this);
      box->setChecked(item.checked != 0);
      connect(box, &QCheckBox::clicked, this, [this, position](bool checked) {
        Field& target = fields_[static_cast<std::size_t>(position)];
        view_.fieldContext().control = target.control;
        if (!clickCheckbox(view_.sheet(), *target.item, checked, view_.fieldContext()))
          static_cast<QCheckBox*>(target.control)->setChecked(target.item->checked != 0);
        view_.refreshAfterEdit();
      });
      control = box;
      break;
    }
    case kCombobox:
      // The stored height includes the dropped-down list; the closed box is one line.
      control = createCombo(item);
      if (control != nullptr) height = std::min<int>(height, control->sizeHint().height());
      break;
    case kList:
      if (item.listField) {
        height = listFieldHeight(height, charHeight);
        control = new ListPanel(view_, *item.listField, this);
      }
      break;
    case kButton: {
      auto* button = new QPushButton(fromSystemText(item.text), this);
      // Buttons run scripts, which this program doesn't run yet.
      button->setEnabled(false);
      control = button;
      break;
    }
    case kPicture:
    case kDispbm:
      control = pictureStandIn(item, this);
      break;
    default:
      showError("Error creating dialog control");
      return nullptr;
  }
  if (control == nullptr) return nullptr;
  QColor colour;
  control->setFont(fieldFont(item, colour));
  if (item.kind != kList) {
    QPalette colours = control->palette();
    colours.setColor(QPalette::WindowText, colour);
    colours.setColor(QPalette::Text, colour);
    if (item.hasBgColor()) {
      colours.setColor(QPalette::Window, colourOf(item.bgColor));
      colours.setColor(QPalette::Base, colourOf(item.bgColor));
      control->setAutoFillBackground(!item.transparent());
    }
    control->setPalette(colours);
  }
  control->setGeometry(item.x, item.y, item.width, height);
  return control;
}

QWidget* DialogWindow::createEdit(DlgItem& item, Field& field) {
  int charHeight = QFontMetrics(dialogFont_).height();
  QString text = item.kind == kEditvar ? fromSystemText(displayText(view_.sheet(), item))
                                       : fromSystemText(item.text);
  QWidget* control = nullptr;
  std::size_t position = static_cast<std::size_t>(&field - fields_.data());
  if (isMultiLineEdit(item.height, charHeight)) {
    auto* plain = new QPlainTextEdit(text, this);
    plain->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(plain, &QPlainTextEdit::textChanged, this,
            [this, position] { fields_[position].modified = true; });
    if (item.noBorder()) plain->setFrameStyle(QFrame::NoFrame);
    control = plain;
  } else {
    auto* line = new QLineEdit(text, this);
    line->setCursorPosition(0);
    line->setFrame(!item.noBorder());
    connect(line, &QLineEdit::textEdited, this,
            [this, position] { fields_[position].modified = true; });
    control = line;
  }
  control->installEventFilter(this);
  return control;
}

QWidget* DialogWindow::createCombo(DlgItem& item) {
  std::optional<std::vector<ComboEntry>> entries = parseComboEntries(item.choices);
  if (!entries) {
    showError("Error creating dialog control");
    return nullptr;
  }
  auto* combo = new QComboBox(this);
  std::vector<int> order(entries->size());
  for (std::size_t i = 0; i < order.size(); ++i)
    order[i] = static_cast<int>(i);
  if (item.sorted()) {
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
      return compareIgnoringCase((*entries)[static_cast<std::size_t>(a)].label,
                                 (*entries)[static_cast<std::size_t>(b)].label) < 0;
    });
  }
  for (int index : order)
    combo->addItem(fromSystemText((*entries)[static_cast<std::size_t>(index)].label), index);
  combo->setCurrentIndex(combo->findData(item.selectedIndex));
  std::size_t position = fields_.size() - 1;
  connect(combo, &QComboBox::activated, this, [this, position, combo](int row) {
    Field& target = fields_[position];
    view_.fieldContext().control = combo;
    int entry = combo->itemData(row).toInt();
    if (entry != target.item->selectedIndex &&
        !chooseComboEntry(view_.sheet(), *target.item, entry, view_.fieldContext())) {
      combo->setCurrentIndex(combo->findData(target.item->selectedIndex));
    }
    view_.refreshAfterEdit();
  });
  return combo;
}

void DialogWindow::watchVariable(Field& field) {
  DlgItem& item = *field.item;
  if (item.symbol == nullptr) return;
  if (item.kind != kFormula && item.kind != kEditvar) return;
  std::size_t position = static_cast<std::size_t>(&field - fields_.data());
  view_.watches().observe(*item.symbol, this, [this, position] {
    Field& target = fields_[position];
    showValue(target);
    target.modified = false;
  });
}

void DialogWindow::showValue(Field& field) {
  DlgItem& item = *field.item;
  if (field.control == nullptr) return;
  switch (item.kind) {
    case kFormula:
    case kEditvar:
      setControlText(field.control, fromSystemText(displayText(view_.sheet(), item)));
      break;
    case kCheckbox:
      static_cast<QCheckBox*>(field.control)->setChecked(item.checked != 0);
      break;
    case kCombobox: {
      auto* combo = static_cast<QComboBox*>(field.control);
      combo->setCurrentIndex(combo->findData(item.selectedIndex));
      break;
    }
    default:
      break;
  }
}

void DialogWindow::applyDefaultFont(Field& field) {
  if (field.item->kind != kEditvar || field.control == nullptr) return;
  bool showing = showsDefaultFont(*field.item);
  if (showing == field.defaultFontShowing) return;
  field.defaultFontShowing = showing;
  QFont font = field.control->font();
  font.setBold(!font.bold());
  field.control->setFont(font);
}

DialogWindow::Field* DialogWindow::fieldOf(const QObject* control) {
  for (Field& field : fields_) {
    if (field.control == control) return &field;
  }
  return nullptr;
}

bool DialogWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusOut) {
    if (Field* field = fieldOf(watched)) commit(*field);
  }
  return QWidget::eventFilter(watched, event);
}

void DialogWindow::commit(Field& field) {
  if (!field.modified || committing_) return;
  committing_ = true;
  field.modified = false;
  FileInfo& sheet = view_.sheet();
  FieldContext& context = view_.fieldContext();
  context.control = field.control;
  std::string text = toSystemText(controlText(field.control));
  // The record of the old value is made before the store and kept only when the value changed.
  std::unique_ptr<FieldValueUndo> record;
  if (!undoing() && fieldEditIsUndoable(*field.item)) {
    record = std::make_unique<FieldValueUndo>(
        *field.item, [view = &view_, index = dialogIndex_](DlgItem& item) {
          QMdiSubWindow* window = view->openWindow(SheetWindowKind::Dialog, index);
          if (auto* dialog = window ? qobject_cast<DialogWindow*>(window->widget()) : nullptr)
            dialog->focusField(item);
        });
  }
  const bool wasChanged = sheet.changed();
  FieldOutcome outcome = setFieldValue(sheet, *field.item, text, FieldInput::Typed, context);
  if (record && outcome.stored && text != record->oldText()) {
    const long maxUndo =
        view_.appSettings != nullptr ? view_.appSettings->maxUndo : kDefaultMaxUndo;
    undoPush(sheet, kUndoFieldValue, nullptr, std::move(record), maxUndo, wasChanged);
  }
  if (outcome.restoreDisplay) {
    std::string shown = displayText(sheet, *field.item);
    setControlText(field.control, fromSystemText(shown.substr(0, kRestoreTextLimit)));
    selectAllText(field.control);
  } else if (outcome.stored && field.item->kind == kEditvar) {
    setControlText(field.control, fromSystemText(displayText(sheet, *field.item)));
  }
  field.modified = false;
  applyDefaultFont(field);
  committing_ = false;
  view_.refreshAfterEdit();
}

void DialogWindow::commitPendingEdit() {
  for (Field& field : fields_) {
    if (field.modified) commit(field);
  }
}

bool DialogWindow::hasPendingEdit() const {
  return std::any_of(fields_.begin(), fields_.end(), [](const Field& f) { return f.modified; });
}

void DialogWindow::refreshFields() {
  for (Field& field : fields_) {
    if (!field.modified) showValue(field);
  }
}

void DialogWindow::focusField(const DlgItem& item) {
  for (Field& field : fields_) {
    if (field.item != &item || field.control == nullptr) continue;
    if (item.kind == kEdittext) {
      setControlText(field.control, fromSystemText(item.text));
    } else {
      showValue(field);
    }
    field.modified = false;
    field.control->setFocus();
    selectAllText(field.control);
    return;
  }
}

QWidget* DialogWindow::controlFor(std::string_view varName) const {
  for (const Field& field : fields_) {
    if (field.control != nullptr && equalsIgnoringCase(field.item->varName, varName))
      return field.control;
  }
  return nullptr;
}

std::vector<ListPanel*> DialogWindow::listPanels() const {
  std::vector<ListPanel*> panels;
  for (const Field& field : fields_) {
    if (auto* panel = qobject_cast<ListPanel*>(field.control)) panels.push_back(panel);
  }
  return panels;
}

QSize DialogWindow::sizeHint() const {
  ClientSize size = dialogClientSize(dialog_.width, dialog_.height);
  return {size.width, size.height};
}

void DialogWindow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), background_);
}

}  // namespace zv::ui
