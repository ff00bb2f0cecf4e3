#include "ui/labelled_row.h"

#include <QBoxLayout>
#include <QLabel>

#include "ui/quiet_label.h"

namespace reelvane {

void addLabelledRow(QBoxLayout& column, QWidget& field, const QString& label, const QString& help) {
    describe(field, label, help);
    auto* const shown = new QLabel(label, field.parentWidget());
    shown->setBuddy(&field);
    shown->setWordWrap(true);
    auto* const row = new QHBoxLayout;
    row->addWidget(shown, 1);
    row->addWidget(&field);
    column.addLayout(row);
    addHelp(column, help);
}

void addHelp(QBoxLayout& column, const QString& help, int indent) {
    auto* const row = new QHBoxLayout;
    row->addSpacing(indent);
    row->addWidget(new QuietLabel(help, nullptr, QuietLabel::Spoken::Elsewhere), 1);
    column.addLayout(row);
}

void describe(QWidget& widget, const QString& name, const QString& description) {
    widget.setAccessibleName(name);
    widget.setAccessibleDescription(description);
}

}  // namespace reelvane
