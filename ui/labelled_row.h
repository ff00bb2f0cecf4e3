#pragma once

#include <QString>

class QBoxLayout;
class QWidget;

namespace reelvane {

/// Puts a field into the column, with its label before it and a sentence of help below. Label and
/// help are also the field's accessible name and description.
void addLabelledRow(QBoxLayout& column, QWidget& field, const QString& label, const QString& help);

/// A sentence of help, this far from the leading edge.
void addHelp(QBoxLayout& column, const QString& help, int indent = 0);

/// For those who hear the window.
void describe(QWidget& widget, const QString& name, const QString& description);

}  // namespace reelvane
