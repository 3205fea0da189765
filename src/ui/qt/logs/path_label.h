#pragma once

#include <QLabel>

namespace kavorix {

// One line of text, cut in its middle where it is wider than its place: of a path, drive and file
// name stay. The whole text is the tool tip then.
class PathLabel : public QLabel {
    Q_OBJECT

  public:
    explicit PathLabel(QWidget* parent = nullptr);

    // What is shown of the text now.
    QString shown_text() const;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kavorix
