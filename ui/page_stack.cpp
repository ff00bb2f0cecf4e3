#include "ui/page_stack.h"

#include <QAccessibleWidget>

namespace reelvane {
namespace {

QAccessibleInterface* makeAccessibleStack(const QString& /*className*/, QObject* object) {
    auto* const stack = dynamic_cast<PageStack*>(object);
    return stack == nullptr ? nullptr : new QAccessibleWidget(stack, QAccessible::Client);
}

}  // namespace

PageStack::PageStack(QWidget* parent) : QStackedWidget(parent) {
    QAccessible::installFactory(makeAccessibleStack);
}

}  // namespace reelvane
