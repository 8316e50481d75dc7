#include "desktop/window/FormPage.h"

#include <QLabel>

#include "desktop/views/FaultLine.h"
#include "desktop/views/Skin.h"
#include "desktop/window/PanelRows.h"

namespace quorl {

namespace {

constexpr int kCaptionWidth = 104;

}  // namespace

FormPage::FormPage() : grid_(new QGridLayout(this)) {
  grid_->setContentsMargins(0, 0, 0, 0);
  grid_->setHorizontalSpacing(2 * skin::kGrid);
  grid_->setVerticalSpacing(skin::kGrid);
  grid_->setColumnMinimumWidth(0, kCaptionWidth);
  grid_->setColumnStretch(1, 1);
}

void FormPage::Row(const QString& caption, const std::vector<QWidget*>& fields, const QString& unit) {
  auto* line = new QWidget;
  auto* layout = new QHBoxLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  for (QWidget* field : fields) Put(layout, field);
  if (!unit.isEmpty()) layout->addWidget(Caption(unit));
  layout->addStretch(1);
  Place(caption, line, fields);
}

void FormPage::Options(const QString& caption, const std::vector<FaceView*>& options) {
  Row(caption, {options.begin(), options.end()});
}

void FormPage::OneOf(const QString& caption, const std::vector<QWidget*>& fields) {
  auto* line = new QWidget;
  auto* layout = new QGridLayout(line);
  layout->setContentsMargins(0, 0, 0, 0);
  for (QWidget* field : fields) {
    if (field) layout->addWidget(field, 0, 0, Qt::AlignLeft | Qt::AlignVCenter);
  }
  Place(caption, line, fields);
}

void FormPage::Place(const QString& caption, QWidget* line, const std::vector<QWidget*>& fields) {
  if (!caption.isEmpty()) grid_->addWidget(Caption(caption), row_, 0);
  grid_->addWidget(line, row_++, 1);
  for (QWidget* field : fields) {
    if (auto* view = dynamic_cast<View*>(field)) Under(new FaultLine(view->Shown()));
  }
}

void FormPage::Under(QWidget* widget) {
  if (widget) grid_->addWidget(widget, row_++, 1);
}

void FormPage::Hint(const QString& text) {
  QLabel* hint = Caption(text);
  hint->setWordWrap(true);
  hint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  Under(hint);
}

void FormPage::Head(const QString& text) {
  QLabel* head = Caption(text.toUpper());
  head->setFont(skin::TitleFont());
  if (row_ > 0) Gap();
  grid_->addWidget(head, row_++, 0, 1, 2);
}

void FormPage::Gap() {
  grid_->setRowMinimumHeight(row_++, skin::kGrid);
}

void FormPage::Across(QWidget* widget) {
  if (widget) grid_->addWidget(widget, row_++, 0, 1, 2);
}

void FormPage::End() {
  grid_->setRowStretch(row_, 1);
}

}  // namespace quorl
