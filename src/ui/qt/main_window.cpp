#include "ui/qt/main_window.h"

#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMenuBar>
#include <QMimeData>
#include <QShortcutEvent>

#include "ui/operations.h"
#include "ui/qt/glyphs.h"
#include "ui/qt/icons.h"
#include "ui/qt/qt_text.h"
#include "ui_frmMain.h"

namespace kavorix {

namespace {

struct CommandButton {
    const char* name;
    Button MainScreen::*field;
    std::function<void()> MainWindowHandlers::*handler;
    Glyph glyph;
};

constexpr CommandButton CommandButtons[] = {
    {"cmdTrig", &MainScreen::cmdTrig, &MainWindowHandlers::cmdTrig_Click, Glyph::Trigger},
    {"cmdHalt", &MainScreen::cmdHalt, &MainWindowHandlers::cmdHalt_Click, Glyph::Halt},
    {"cmdTransmit", &MainScreen::cmdTransmit, &MainWindowHandlers::cmdTransmit_Click,
     Glyph::Transmit},
    {"cmdConfig", &MainScreen::cmdConfig, &MainWindowHandlers::cmdConfig_Click, Glyph::Configure},
    {"cmdDefault", &MainScreen::cmdDefault, &MainWindowHandlers::cmdDefault_Click, Glyph::Layout},
    {"cmdSelectAll", &MainScreen::cmdSelectAll, &MainWindowHandlers::cmdSelectAll_Click,
     Glyph::SelectAll},
    {"cmdClear", &MainScreen::cmdClear, &MainWindowHandlers::cmdClear_Click, Glyph::Clear},
};

// The menu of a pod, out of the menu bar's items.
constexpr const char* Separator = "-";
constexpr const char* PodMenu[] = {"mnuOperateItem(0)",
                                   "mnuOperateItem(1)",
                                   Separator,
                                   "mnuConfigItem(1)",
                                   "mnuConfigItem(7)",
                                   "mnuConfigItem(11)",
                                   Separator,
                                   "mnuViewDataItem(0)",
                                   "mnuViewDataItem(1)",
                                   "mnuViewDataItem(2)",
                                   "mnuViewDataItem(3)",
                                   "mnuViewItem(1)"};

constexpr int SpareHeight = 48;  // of a window that was never resized: room to breathe

QString to_name(std::string_view name) {
    return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
}

}  // namespace

MainWindowHandlers handlers_of(Operations& operations) {
    MainWindowHandlers handlers;
    handlers.run = [&](Command command) { operations.run(command); };
    handlers.cmdTrig_Click = [&] { operations.cmdTrig_Click(); };
    handlers.cmdHalt_Click = [&] { operations.cmdHalt_Click(); };
    handlers.cmdTransmit_Click = [&] { operations.cmdTransmit_Click(); };
    handlers.cmdConfig_Click = [&] { operations.cmdConfig_Click(); };
    handlers.cmdDefault_Click = [&] { operations.cmdDefault_Click(); };
    handlers.cmdSelectAll_Click = [&] { operations.cmdSelectAll_Click(); };
    handlers.cmdClear_Click = [&] { operations.cmdClear_Click(); };
    handlers.img_ZAV_Click = [&](int pod) { operations.img_ZAV_Click(pod); };
    handlers.select_for_menu = [&](int pod) { operations.select_for_menu(pod); };
    handlers.img_4A_Click = [&] { operations.img_4A_Click(); };
    handlers.pnlErr_DblClick = [&] { operations.pnlErr_DblClick(); };
    handlers.pnlButton_DblClick = [&](int stream) { operations.pnlButton_DblClick(stream); };
    handlers.unload_request = [&] { operations.unload_request(); };
    handlers.mnuOperate_Click = [&] { operations.mnuOperate_Click(); };
    return handlers;
}

QtMainWindow::QtMainWindow(MainScreen& screen, MainWindowHandlers handlers, Mirrors& mirrors,
                           const QString& memory_path)
    : screen_(screen),
      handlers_(std::move(handlers)),
      mirrors_(mirrors),
      memory_(memory_path),
      recent_(memory_),
      ui_(std::make_unique<Ui::frmMain>()) {
    ui_->setupUi(this);
    setWindowIcon(program_icon());
    binder_ = std::make_unique<Binder>(mirrors, *this);
    build_menus();
    build_recent_menu();
    setAcceptDrops(true);
    bind_panels();
    bind_buttons();
    connect(ui_->img_4A, &QAbstractButton::clicked, this,
            [this] { mirrors_.loop().dispatch(handlers_.img_4A_Click); });
    ui_->podDisplay->on_click = [this](int pod) {
        mirrors_.loop().dispatch([&] { handlers_.img_ZAV_Click(pod); });
    };
    ui_->podDisplay->on_menu = [this](int pod, const QPoint& place) { show_pod_menu(pod, place); };
    mirrors_.add(*this);
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
    binder_->on_double_click("pnlErr", handlers_.pnlErr_DblClick);
    for (int stream = 0; stream < StreamCount; ++stream)
        binder_->on_double_click("pnlButton_" + std::to_string(stream),
                                 [this, stream] { handlers_.pnlButton_DblClick(stream); });
}

void QtMainWindow::bind_buttons() {
    for (const CommandButton& button : CommandButtons) {
        binder_->add(button.name, screen_.*button.field);
        binder_->on_click(button.name, handlers_.*button.handler);
        auto* const widget = findChild<QPushButton*>(button.name);
        widget->setIcon(glyph_icon(button.glyph));
        widget->installEventFilter(this);
    }
    menuBar()->installEventFilter(this);
}

void QtMainWindow::build_menus() {
    for (const MenuEntry& entry : menu_bar()) {
        QMenu& menu = *menuBar()->addMenu(to_qt(entry.caption));
        menu.setObjectName(to_name(entry.name));
        binder_->add(*menu.menuAction(), entry.item(screen_));
        if (entry.name == "mnuOperate" && handlers_.mnuOperate_Click)
            connect(&menu, &QMenu::aboutToShow, this,
                    [this] { mirrors_.loop().dispatch(handlers_.mnuOperate_Click); });
        fill_menu(menu, entry.children);
    }
}

void QtMainWindow::fill_menu(QMenu& menu, std::span<const MenuEntry> entries) {
    menu.setToolTipsVisible(true);
    // What the rules have changed since the last refresh counts before the menu is looked at.
    connect(&menu, &QMenu::aboutToShow, this,
            [this] { mirrors_.loop().dispatch([this] { binder_->refresh(); }); });
    for (const MenuEntry& entry : entries) {
        if (entry.separator()) {
            menu.addSeparator();
            continue;
        }
        if (!entry.children.empty()) {
            QMenu& submenu = *menu.addMenu(to_qt(entry.caption));
            submenu.menuAction()->setObjectName(to_name(entry.name));
            binder_->add(*submenu.menuAction(), entry.item(screen_));
            fill_menu(submenu, entry.children);
            continue;
        }
        QAction& action = *menu.addAction(to_qt(entry.caption));
        action.setObjectName(to_name(entry.name));
        action.setToolTip(to_qt(entry.tool_tip));
        action.setCheckable(entry.checkable);
        action.setMenuRole(QAction::NoRole);
        binder_->add(action, entry.item(screen_));
        connect(&action, &QAction::triggered, this, [this, command = entry.command] {
            mirrors_.loop().dispatch([&] { handlers_.run(command); });
        });
    }
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
    recent_menu_->menuAction()->setEnabled(!paths.isEmpty() && handlers_.open &&
                                           findChild<QAction*>("mnuConfigItem(3)")->isEnabled());
}

void QtMainWindow::note_recent(const std::string& path) {
    recent_.add(QFile::decodeName(QByteArray::fromStdString(path)));
}

// Behind the event that asked for it: whoever dropped a file does not have to wait.
void QtMainWindow::open_later(const QString& path) {
    mirrors_.loop().call_later(
        0, [this, bytes = QFile::encodeName(path).toStdString()] { handlers_.open(bytes); });
}

void QtMainWindow::dragEnterEvent(QDragEnterEvent* event) {
    const QList<QUrl> urls = event->mimeData()->urls();
    if (handlers_.open && urls.size() == 1 && urls.front().isLocalFile() &&
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
    if (!screen_.img_ZAV[static_cast<std::size_t>(pod)].visible) return;
    mirrors_.loop().dispatch([&] {
        handlers_.select_for_menu(pod);
        if (handlers_.mnuOperate_Click) handlers_.mnuOperate_Click();
        binder_->refresh();
    });
    auto* const menu = new QMenu(this);
    menu->setObjectName("mnuPod");
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const char* name : PodMenu)
        if (std::string_view(name) == Separator)
            menu->addSeparator();
        else
            menu->addAction(findChild<QAction*>(name));
    menu->popup(place);
}

void QtMainWindow::refresh() {
    const QString caption = to_qt(screen_.caption);
    if (windowTitle() != caption) setWindowTitle(caption);
    ui_->img_4A->show_icon(screen_.img_4A);
    if (ui_->podDisplay->expanded() != screen_.expanded)
        show_expanded();
    else
        ui_->podDisplay->show_screen(screen_);
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
    mirrors_.loop().dispatch(handlers_.unload_request);
    asking_ = false;
}

// An accelerator that a command button shares with a menu is the button's as long as the button can
// be pressed.
bool QtMainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Shortcut) {
        const auto* const shortcut = static_cast<QShortcutEvent*>(event);
        if (shortcut->isAmbiguous())
            for (const CommandButton& button : CommandButtons) {
                auto* const widget = findChild<QPushButton*>(button.name);
                if (widget->shortcut() != shortcut->key()) continue;
                widget->click();
                return true;
            }
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace kavorix
