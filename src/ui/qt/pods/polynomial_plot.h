#pragma once

#include <QWidget>

#include "ui/pods/polynomial.h"

namespace kavorix {

// A small picture of a polynomial: its curve over a range of x, the axes where they are in sight,
// the limits at the edges.
class PolynomialPlot : public QWidget {
    Q_OBJECT

  public:
    explicit PolynomialPlot(QWidget* parent = nullptr);

    // Shows another polynomial or range; nothing happens when both are as before.
    void show_curve(const Coefficients6& coefficients, double from, double to);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QPointF place(const QRectF& area, double x, double y) const;
    void draw_axes(QPainter& painter, const QRectF& area) const;
    void draw_curve(QPainter& painter, const QRectF& area) const;
    void draw_limits(QPainter& painter, const QRectF& area) const;

    Coefficients6 coefficients_{};
    double from_ = -10;
    double to_ = 10;
    PolynomialRange values_;
};

}  // namespace kavorix
