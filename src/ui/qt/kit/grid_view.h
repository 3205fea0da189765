#pragma once

#include <QByteArrayList>
#include <QStringList>
#include <QTableView>
#include <vector>

namespace kavorix {

// A table of records: columns can be resized, what is selected is copied as text with tabs between
// the cells.
class GridView : public QTableView {
    Q_OBJECT

  public:
    explicit GridView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;

    // Least widths of the columns while they are fitted, in pixels, for tables whose cells are not
    // readings; columns beyond the list have that of a reading.
    void set_least_widths(std::vector<int> widths);

    // The widths of the columns, for another time. Those that are restored stay.
    QByteArray column_widths() const;
    void restore_column_widths(const QByteArray& widths);

    // The selected cells, a line per row; cells between selected ones are empty.
    QString selected_text() const;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void copy() const;
    void fit_columns();
    int fitting_width(int column) const;

    QStringList headings_;  // that the columns were fitted to
    bool fitted_ = false;   // to rows, not to headings alone
    QByteArrayList remembered_;
    std::vector<int> least_widths_;
};

}  // namespace kavorix
