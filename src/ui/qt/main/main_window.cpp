#include "ui/qt/main/main_window.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QShortcutEvent>

#include "ui/qt/kit/glyphs.h"
#include "ui/qt/kit/icons.h"
#include "ui/qt/kit/qt_text.h"
#include "ui_frmMain.h"

namespace kavorix {

namespace {

constexpr int SpareHeight = 48;  // of a window that was never resized: room to breathe

QString to_name(std::string_view name) {
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

QtMainWindow::QtMainWindow(MainWindow& rules, OpenFile open, Mirrors& mirrors,
                           const QString& memory_path)
    : rules_(rules),
      open_(std::move(open)),
      screen_(rules.screen()),
      mirrors_(mirrors),
      memory_(memory_path),
      recent_(memory_),
      ui_(std::make_unique<Ui::frmMain>()) {
    ui_->setupUi(this);
    setWindowIcon(program_icon());
    mirrors_.add(*this);  // before the binder, which shows what this has computed
    binder_ = std::make_unique<Binder>(mirrors, *this);
    build_menus();
    build_recent_menu();
    setAcceptDrops(true);
    bind_panels();
    bind_buttons();
    connect(ui_->img_4A, &QAbstractButton::clicked, this,
            [this] { mirrors_.loop().dispatch([this] { rules_.img_4A_Click(); }); });
    ui_->podDisplay->on_click = [this](int pod) {
        mirrors_.loop().dispatch([&] { rules_.img_ZAV_Click(Pod::at_index(pod)); });
    };
    ui_->podDisplay->on_menu = [this](int pod, const QPoint& place) { show_pod_menu(pod, place); };
    refresh();
    restore_place();
    ui_->podDisplay->setFocus();
}

QtMainWindow::~QtMainWindow() {
    memory_.save(*this);
    mirrors_.remove(*this);
}

void QtMainWindow::bind_panels() {
    binder_->add("lblMsg", screen_.lblMsg);
    binder_->add("pnlStatus", screen_.pnlStatus);
    binder_->add("pnlContScan", screen_.pnlContScan);
    binder_->add("pnlErr", screen_.pnlErr);
    binder_->add("pnlPollCnt", screen_.pnlPollCnt);
    binder_->add("pnlBars", screen_.pnlBars);
    binder_->add("pnlButton", screen_.pnlButton);
    binder_->on_double_click("pnlErr", [this] { rules_.pnlErr_DblClick(); });
    for (int stream = 0; stream < StreamCount; ++stream)
        binder_->on_double_click("pnlButton_" + std::to_string(stream),
                                 [this, stream] { rules_.pnlButton_DblClick(stream); });
}

void QtMainWindow::bind_buttons() {
    for (const ButtonRow& row : buttons()) {
        auto& button = *findChild<QPushButton*>(to_name(row.name));
        button.setText(to_qt(row.caption));
        button.setToolTip(to_qt(row.tip));
        button.setIcon(glyph_icon(row.glyph));
        button.installEventFilter(this);
        buttons_.emplace_back(&button, row.id);
        binder_->on_click(row.name, [this, &row] { rules_.press(row); });
    }
    menuBar()->installEventFilter(this);
}

void QtMainWindow::build_menus() {
    const auto bar = menu_bar();
    for (std::size_t i = 0; i < bar.size(); ++i) {
        menus_[i] = menuBar()->addMenu(to_qt(bar[i].caption));
        menus_[i]->setObjectName(to_name(bar[i].name));
        fill_menu(*menus_[i], bar[i]);
    }
}

void QtMainWindow::fill_menu(QMenu& menu, const MenuRow& row) {
    menu.setToolTipsVisible(true);
    // What the rules have changed since the last refresh counts before the menu is looked at.
    connect(&menu, &QMenu::aboutToShow, this,
            [this] { mirrors_.loop().dispatch([this] { refresh_all(); }); });
    for (const MenuLine& line : row.lines) {
        if (line.submenu != nullptr) {
            QMenu& submenu = *menu.addMenu(to_qt(line.submenu->caption));
            submenu.menuAction()->setObjectName(to_name(line.submenu->name));
            fill_menu(submenu, *line.submenu);
        } else if (line.separator()) {
            menu.addSeparator();
        } else {
            add_action(menu, command_row(line.command));
        }
    }
}

void QtMainWindow::add_action(QMenu& menu, const CommandRow& row) {
    QAction& action = *menu.addAction(to_qt(row.caption));
    action.setObjectName(to_name(row.name));
    action.setToolTip(to_qt(row.tip));
    action.setCheckable(row.checked != nullptr);
    action.setMenuRole(QAction::NoRole);
    actions_.emplace_back(&action, row.id);
    connect(&action, &QAction::triggered, this,
            [this, command = row.id] { mirrors_.loop().dispatch([&] { rules_.run(command); }); });
}

void QtMainWindow::build_recent_menu() {
    auto* const save_as = findChild<QAction*>("mnuConfigItem(5)");
    QMenu& config = *findChild<QMenu*>("mnuConfig");
    recent_menu_ = new QMenu("&Recent Files", &config);
    recent_menu_->setObjectName("mnuRecent");
    const QList<QAction*> actions = config.actions();
    config.insertMenu(actions.value(actions.indexOf(save_as) + 1), recent_menu_);
    connect(&config, &QMenu::aboutToShow, this, [this] { list_recent_files(); });
}

// Usable whenever a file can be opened.
void QtMainWindow::list_recent_files() {
    recent_menu_->clear();
    const QStringList paths = recent_.paths();
    for (qsizetype i = 0; i < paths.size(); ++i) {
        QString name = QFileInfo(paths[i]).fileName();
        name.replace(u'&', "&&");
        QAction& action = *recent_menu_->addAction(QString("&%1  %2").arg(i + 1).arg(name));
        action.setToolTip(paths[i]);
        connect(&action, &QAction::triggered, this, [this, path = paths[i]] { open_later(path); });
    }
    recent_menu_->setToolTipsVisible(true);
    recent_menu_->menuAction()->setEnabled(!paths.isEmpty() && open_ &&
                                           rules_.available(Command::OpenFile));
}

void QtMainWindow::note_recent(const std::string& path) {
    recent_.add(QFile::decodeName(QByteArray::fromStdString(path)));
}

// Behind the event that asked for it: whoever dropped a file does not have to wait.
void QtMainWindow::open_later(const QString& path) {
    mirrors_.loop().call_later(
        0, [this, bytes = QFile::encodeName(path).toStdString()] { open_(bytes); });
}

void QtMainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (open_ && urls.size() == 1 && urls.front().isLocalFile() &&
        QStringList{"cfg", "dat"}.contains(
            QFileInfo(urls.front().toLocalFile()).suffix().toLower()))
        event->acceptProposedAction();
}

void QtMainWindow::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    open_later(event->mimeData()->urls().front().toLocalFile());
}

// The menu items that make sense for a pod, as the menu bar has them.
void QtMainWindow::show_pod_menu(int pod, const QPoint& place) {
    if (!screen_.img_ZAV[Pod::at_index(pod)].visible) return;
    mirrors_.loop().dispatch([&] {
        rules_.select_for_menu(Pod::at_index(pod));
        refresh_all();
    });
    auto* const menu = new QMenu(this);
    menu->setObjectName("mnuPod");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const MenuLine& line : pod_menu())
        if (line.separator())
            menu->addSeparator();
        else
            menu->addAction(findChild<QAction*>(to_name(command_row(line.command).name)));
    menu->popup(place);
}

void QtMainWindow::refresh() {
    screen_ = rules_.screen();
    const QString caption = to_qt(screen_.caption);
    if (windowTitle() != caption) setWindowTitle(caption);
    ui_->img_4A->show_icon(screen_.img_4A);
    show_commands();
    if (ui_->podDisplay->expanded() != screen_.expanded)
        show_expanded();
    else
        ui_->podDisplay->show_screen(screen_);
}

// The record and what the binder shows of it.
void QtMainWindow::refresh_all() {
    refresh();
    binder_->refresh();
}

void QtMainWindow::show_commands() {
    for (const auto& [action, command] : actions_) {
        action->setEnabled(screen_.command(command).enabled);
        action->setChecked(screen_.command(command).checked);
    }
    for (const auto& [button, command] : buttons_)
        button->setEnabled(screen_.command(command).enabled);
    for (std::size_t i = 0; i < menus_.size(); ++i)
        menus_[i]->menuAction()->setEnabled(screen_.Menus[i]);
}

// The window grows and shrinks by the rows that come and go.
void QtMainWindow::show_expanded() {
    const int before = ui_->podDisplay->minimumSizeHint().height();
    const int height_before = height();
    ui_->podDisplay->show_screen(screen_);
    if (isMaximized() || isFullScreen()) return;
    const int rows = ui_->podDisplay->minimumSizeHint().height() - before;
    // From the inside out: the window's least height follows that of the display.
    ui_->desk->layout()->activate();
    layout()->activate();
    resize(width(), std::max(height_before + rows, minimumSizeHint().height()));
}

void QtMainWindow::restore_place() {
    if (!memory_.restore(*this)) resize(1280, minimumSizeHint().height() + SpareHeight);
}

void QtMainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    memory_.save(*this);
    if (asking_) return;
    asking_ = true;
    mirrors_.loop().dispatch([this] { rules_.unload_request(); });
    asking_ = false;
}

// An accelerator that a command button shares with a menu is the button's as long as the button can
// be pressed.
bool QtMainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Shortcut) {
        const auto* const shortcut = static_cast<QShortcutEvent*>(event);
        if (shortcut->isAmbiguous())
            for (const auto& [widget, command] : buttons_) {
                if (widget->shortcut() != shortcut->key()) continue;
                widget->click();
                return true;
            }
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace kavorix
