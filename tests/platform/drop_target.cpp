// A window that takes whatever is dropped on it and tells on standard output what happens: "enter", "move" for each
// place the pointer comes to, "leave", and at a drop a line for each format, "format NAME SIZE", and then "drop".

#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QWindow>

#include <cstdio>

namespace {

void tell(const char* what) {
    std::printf("%s\n", what);
    std::fflush(stdout);
}

class Target final : public QWindow {
protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
            case QEvent::DragEnter:
            case QEvent::DragMove:
                static_cast<QDropEvent*>(event)->acceptProposedAction();
                tell(event->type() == QEvent::DragEnter ? "enter" : "move");
                return true;
            case QEvent::DragLeave:
                tell("leave");
                return true;
            case QEvent::Drop:
                take(*static_cast<QDropEvent*>(event));
                return true;
            default:
                return QWindow::event(event);
        }
    }

private:
    static void take(QDropEvent& drop) {
        for (const QString& format : drop.mimeData()->formats()) {
            const auto data = drop.mimeData()->data(format);
            const bool isWords = format.startsWith(QLatin1String("text/"));
            std::printf("format %s %lld %s\n", qPrintable(format), static_cast<long long>(data.size()),
                        isWords ? data.trimmed().constData() : "");
        }
        drop.acceptProposedAction();
        tell("drop");
    }
};

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    Target target;
    target.setTitle(QStringLiteral("Drop Target"));
    target.resize(400, 300);
    target.show();
    return QGuiApplication::exec();
}
