#pragma once

// A panel of the main window that shows a label of the record under a small title.

#include <QWidget>

#include "platform/controls.h"

namespace kavorix {

// Its accessible name is title and text.
class StatusPanel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle)
    Q_PROPERTY(Kind kind READ kind WRITE setKind)

  public:
    enum Kind {
        Plain,
        Message,  // wide, with a mark for progress (blue) or error (red)
        Active,   // stands out, with a mark, as soon as it says anything
        Fault,    // the same in the colour of errors
        Load,     // draws the "|" of the caption as a bar
        Stream    // can be opened; the caption is its title
    };
    Q_ENUM(Kind)

    explicit StatusPanel(QWidget* parent = nullptr);

    void show_label(const Label& label);
    QString text() const { return text_; }

    QString title() const { return title_; }
    void setTitle(const QString& title);
    Kind kind() const { return kind_; }
    void setKind(Kind kind);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    void speak();
    void paint_ground(QPainter& painter, const QColor& accent) const;
    void paint_text(QPainter& painter, QRectF box, const QColor& colour) const;
    void paint_load(QPainter& painter, QRectF box, const QColor& colour) const;
    QColor accent() const;

    QString title_;
    QString text_;
    Colour fore_ = Colour::Automatic;
    Kind kind_ = Plain;
};

}  // namespace kavorix
