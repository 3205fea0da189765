#pragma once

#include <QDialog>
#include <QTextBrowser>

namespace kavorix {

// Shows pages of Markdown with tables, pictures and links among them.
class GuideBrowser : public QTextBrowser {
  public:
    explicit GuideBrowser(QWidget* parent);

  protected:
    // Pictures no wider than the page.
    QVariant loadResource(int type, const QUrl& name) override;

  private:
    void dress_page();
    void scroll_to_heading(const QString& fragment);
};

// A window of pages that can stay open beside everything else, over modal windows too.
class GuideWindow : public QDialog {
  public:
    // `first_page`: the file that the button Contents shows.
    explicit GuideWindow(const QString& first_page);

    void show_page(const QString& path);
    const GuideBrowser& browser() const { return *browser_; }

  private:
    GuideBrowser* browser_;
};

// The name by which a page links to a heading: "Stream 0: scans" is #stream-0-scans.
QString heading_anchor(const QString& heading);

}  // namespace kavorix
