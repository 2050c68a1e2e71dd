// The minimal program with a window and a tray icon, with which the client's start is compared.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QPixmap>
#include <QSystemTrayIcon>

int main(int argc, char *argv[]) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Minimal"));
    window.setCentralWidget(new QLabel(QStringLiteral("Minimal"), &window));
    QPixmap picture(22, 22);
    picture.fill(Qt::darkGray);
    QSystemTrayIcon tray(QIcon(picture), &window);
    tray.show();
    window.show();
    return QApplication::exec();
}
