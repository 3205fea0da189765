// The tests of the toolkit's room need an application; it runs without a screen.

#include <gtest/gtest.h>

#include <QApplication>

namespace {

// What the toolkit warns of is a fault, but for what its screenless platform cannot do.
void judge(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtDebugMsg || type == QtInfoMsg) return;
    if (message.startsWith("This plugin does not support")) return;
    ADD_FAILURE() << message.toStdString();
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    QApplication::setStyle("Fusion");
    qInstallMessageHandler(judge);
    return RUN_ALL_TESTS();
}
