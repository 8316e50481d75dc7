// The rows of a dialog: captions in a column, their fields in line beside them.
#pragma once

#include <QGridLayout>
#include <QWidget>
#include <vector>

#include "desktop/views/FaceView.h"

namespace quorl {

// What was not bound is left out. A field that has a fault says so under its row.
class FormPage : public QWidget {
 public:
  FormPage();

  // `unit` stands after the fields.
  void Row(const QString& caption, const std::vector<QWidget*>& fields, const QString& unit = {});
  // The buttons of a group.
  void Options(const QString& caption, const std::vector<FaceView*>& options);
  // A row whose fields take turns: one of them is seen.
  void OneOf(const QString& caption, const std::vector<QWidget*>& fields);
  // A hint in quiet ink, under the last row.
  void Hint(const QString& text);
  // Whatever goes in line with the fields.
  void Under(QWidget* widget);
  // The title of the rows to come.
  void Head(const QString& text);
  // Over the whole width.
  void Across(QWidget* widget);
  // A little room before the next row.
  void Gap();
  // All that is left below stays free.
  void End();

 private:
  void Place(const QString& caption, QWidget* line, const std::vector<QWidget*>& fields);

  QGridLayout* grid_;
  int row_ = 0;
};

}  // namespace quorl
