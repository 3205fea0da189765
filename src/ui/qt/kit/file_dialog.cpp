#include "ui/qt/kit/file_dialog.h"

#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include "ui/qt/kit/qt_text.h"
#include "ui/qt/kit/window_placing.h"

namespace kavorix {

namespace {

QString shown_pattern(const QString& pattern) {
    const QString lower = pattern.toLower();
    return lower == pattern ? pattern : pattern + u' ' + lower;
}

// Asks its questions through Dialogs: the toolkit's own would hold up exceptions.
class ChoosingDialog : public QFileDialog {
  public:
    ChoosingDialog(QtEventLoop& loop, Dialogs& dialogs, const FileRequest& request,
                   FileChoice choice)
        : loop_(loop),
          dialogs_(dialogs),
          choice_(choice),
          existing_welcome_(request.existing_welcome) {
        const bool saving = choice == FileChoice::Save;
        setWindowTitle(to_qt(request.title));
        setOption(DontConfirmOverwrite);
        setAcceptMode(saving ? AcceptSave : AcceptOpen);
        setFileMode(AnyFile);
        setNameFilters(to_name_filters(request.filter));
        setDefaultSuffix(to_qt(request.default_extension));
        if (!request.directory.empty())
            setDirectory(QFile::decodeName(QByteArray::fromStdString(request.directory)));
        if (!request.name.empty())
            selectFile(QFile::decodeName(QByteArray::fromStdString(request.name)));
    }

    void accept() override {
        loop_.dispatch([this] {
            const QStringList files = selectedFiles();
            if (files.isEmpty()) return;
            if (QFileInfo(files.front()).isDir() || usable(files.front())) QFileDialog::accept();
        });
    }

  private:
    bool usable(const QString& path) {
        const bool exists = QFileInfo::exists(path);
        const std::string shown = from_utf8_lossy(path.toStdString());
        if (choice_ == FileChoice::Open) {
            if (exists) return true;
            dialogs_.message_box(shown + "\n\nFile not found. Please check the name.",
                                 box::Ok | box::Exclamation, "KAVORIX");
            return false;
        }
        return !exists || existing_welcome_ ||
               dialogs_.message_box(shown + "\n\nThis file exists. Replace it?",
                                    box::YesNo | box::Question, "KAVORIX") == Answer::Yes;
    }

    QtEventLoop& loop_;
    Dialogs& dialogs_;
    FileChoice choice_;
    bool existing_welcome_;
};

}  // namespace

QStringList to_name_filters(std::string_view filter) {
    const QStringList parts = to_qt(filter).split(u'|');
    QStringList result;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        QStringList patterns;
        for (const QString& pattern : parts[i + 1].split(u';', Qt::SkipEmptyParts))
            patterns << shown_pattern(pattern.trimmed());
        result << QString("%1 (%2)").arg(parts[i].section(u'(', 0, 0).trimmed(),
                                         patterns.join(u' '));
    }
    return result;
}

std::optional<std::string> choose_file(QtEventLoop& loop, Dialogs& dialogs, QWidget* over,
                                       const FileRequest& request, FileChoice choice) {
    ChoosingDialog dialog(loop, dialogs, request, choice);
    const int result = run_modal(loop, dialog, over);
    const QStringList files = dialog.selectedFiles();
    if (result != QDialog::Accepted || files.isEmpty()) return std::nullopt;
    return QFile::encodeName(files.front()).toStdString();
}

}  // namespace kavorix
