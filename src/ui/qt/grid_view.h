#pragma once

#include <QStringList>
#include <QTableView>

namespace kavorix {

// A table of records: columns can be resized, what is selected is copied as text with tabs between
// the cells.
class GridView : public QTableView {
    Q_OBJECT

  public:
    explicit GridView(QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model) override;

    // The selected cells, a line per row; cells between selected ones are empty.
    QString selected_text() const;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    void copy() const;
    void fit_columns();

    QStringList fitted_;  // the headings that the columns were fitted to
};

}  // namespace kavorix
