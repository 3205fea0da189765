#include "ui/qt/kit/guide_window.h"

#include <QAbstractTextDocumentLayout>
#include <QHBoxLayout>
#include <QImage>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <QVBoxLayout>

#include "ui/qt/kit/icons.h"
#include "ui/qt/kit/theme.h"

namespace kavorix {

namespace {

constexpr int PageMargin = 16;

void dress_table(QTextTable& table, const QPalette& palette) {
    QTextTableFormat format = table.format();
    format.setCellPadding(5);
    format.setCellSpacing(0);
    format.setBorder(1);
    format.setBorderCollapse(true);
    format.setBorderBrush(
        blend(palette.color(QPalette::Base), palette.color(QPalette::Text), 0.25));
    format.setTopMargin(6);
    format.setBottomMargin(10);
    table.setFormat(format);
}

}  // namespace

QString heading_anchor(const QString& heading) {
    QString anchor;
    for (const QChar c : heading.toLower()) {
        if (c == ' ') anchor += '-';
        if (c.isLetterOrNumber() || c == '-' || c == '_') anchor += c;
    }
    return anchor;
}

GuideBrowser::GuideBrowser(QWidget* parent) : QTextBrowser(parent) {
    setOpenExternalLinks(true);
    // The width of the page, and so of its pictures, does not depend on its length.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    document()->setDocumentMargin(PageMargin);
    connect(this, &QTextBrowser::sourceChanged, this, [this](const QUrl& source) {
        dress_page();
        if (source.hasFragment()) scroll_to_heading(source.fragment());
    });
}

QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
    const QVariant found = QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource) return found;
    const QImage picture = QImage::fromData(found.toByteArray());
    const int most = viewport()->width() - 2 * PageMargin;
    return picture.width() > most ? picture.scaledToWidth(most, Qt::SmoothTransformation) : picture;
}

void GuideBrowser::dress_page() {
    const QList<QTextFrame*> frames = document()->rootFrame()->childFrames();
    for (QTextFrame* frame : frames)
        if (auto* const table = qobject_cast<QTextTable*>(frame)) dress_table(*table, palette());
}

void GuideBrowser::scroll_to_heading(const QString& fragment) {
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 0 || heading_anchor(block.text()) != fragment)
            continue;
        const double top = document()->documentLayout()->blockBoundingRect(block).top();
        verticalScrollBar()->setValue(static_cast<int>(top) - PageMargin / 2);
        return;
    }
}

GuideWindow::GuideWindow(const QString& first_page) : browser_(new GuideBrowser(this)) {
    setObjectName("frmGuide");
    setWindowTitle("KAVORIX Guide");
    setWindowIcon(program_icon());
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    auto* const back = new QPushButton("&Back", this);
    auto* const contents = new QPushButton("&Contents", this);
    back->setToolTip("The page before");
    contents->setToolTip("The first page of the guide");
    for (QPushButton* button : {back, contents}) button->setAutoDefault(false);
    back->setEnabled(false);
    connect(back, &QPushButton::clicked, browser_, &QTextBrowser::backward);
    connect(contents, &QPushButton::clicked, this, [this, first_page] { show_page(first_page); });
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(back);
    buttons->addWidget(contents);
    buttons->addStretch();
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(buttons);
    layout->addWidget(browser_);
    browser_->setAccessibleName("Page of the guide");
    browser_->setFocus();
}

void GuideWindow::show_page(const QString& path) {
    browser_->setSource(QUrl::fromLocalFile(path));
}

}  // namespace kavorix
