#include "ui/qt/logs/path_label.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace kavorix {

namespace {

constexpr int LeastWidth = 120;

}  // namespace

PathLabel::PathLabel(QWidget* parent) : QLabel(parent) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QString PathLabel::shown_text() const {
    return fontMetrics().elidedText(text(), Qt::ElideMiddle, contentsRect().width());
}

// However long the text is.
QSize PathLabel::sizeHint() const {
    return minimumSizeHint();
}

QSize PathLabel::minimumSizeHint() const {
    return {LeastWidth, fontMetrics().height()};
}

bool PathLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip || shown_text() == text()) return QLabel::event(event);
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
}

void PathLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    style()->drawItemText(&painter, contentsRect(), Qt::AlignVCenter | Qt::TextSingleLine,
                          palette(), isEnabled(), shown_text(), foregroundRole());
}

}  // namespace kavorix
