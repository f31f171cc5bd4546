#include "Platform/Desktop/DesktopOpener.h"

#include "Platform/OpenableUrl.h"

#include <QProcess>

#include <unistd.h>

namespace brimquill::platform {
bool openWithDesktop(const std::string& url) {
    if (!isOpenableUrl(url)) return false;
    const QStringList arguments{QString::fromStdString(url)};
    return QProcess::startDetached(QStringLiteral("xdg-open"), arguments) ||
           QProcess::startDetached(QStringLiteral("gio"), QStringList{QStringLiteral("open")} + arguments);
}

RunningApplication thisApplication() {
    return {static_cast<int>(getpid()), "com.brimquill.app", "Brimquill"};
}

}  // namespace brimquill::platform
