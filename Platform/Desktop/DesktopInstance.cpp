#include "Platform/Desktop/DesktopInstance.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/PrivateFile.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QLocalSocket>
#include <QThread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace brimquill::platform {
namespace {

constexpr std::int64_t longestClaim = 2000, pauseInMilliseconds = 50;

/// The runtime directory, or a private one among the temporary files. Nothing when that belongs to somebody else.
std::string runtimeDirectory() {
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && runtime[0] == '/') {
        if (access(runtime, W_OK | X_OK) == 0) return runtime;
    }
    const std::string own = "/tmp/brimquill-" + std::to_string(getuid());
    struct stat status {};
    const bool isOwn = makePrivateDirectory(own) && lstat(own.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                       status.st_uid == getuid() && (status.st_mode & 077) == 0;
    return isOwn ? own : std::string();
}

std::string nameOf(const std::string& dataDirectory) {
    std::error_code error;
    const auto path = std::filesystem::weakly_canonical(dataDirectory, error);
    const std::string text = error ? dataDirectory : path.string();
    const auto digest = QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Sha256);
    constexpr qsizetype enough = 16;
    return "brimquill-" + digest.toHex().left(enough).toStdString();
}

}  // namespace

DesktopInstance::DesktopInstance(const std::string& dataDirectory) {
    const std::string directory = runtimeDirectory();
    if (!directory.empty()) base_ = directory + "/" + nameOf(dataDirectory);
}

DesktopInstance::~DesktopInstance() {
    server_.reset();
    if (lock_ >= 0) ::close(lock_);
}

bool DesktopInstance::claim() {
    if (lock_ >= 0) return true;
    if (base_.empty()) {
        log::write("no private runtime directory: a second start will not be noticed");
        return true;
    }
    const std::string path = base_ + ".lock";
    const int descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) {
        log::write("the lock file cannot be opened, a second start will not be noticed: " + path);
        return true;
    }
    // The other one may be ending, or only just listening: what fails is tried again while there is time.
    const QDeadlineTimer deadline(longestClaim);
    bool isFirst = false, wasTold = false;
    while (!isFirst && !wasTold && !deadline.hasExpired()) {
        isFirst = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
        wasTold = !isFirst && tellRunningOne(static_cast<int>(deadline.remainingTime()));
        if (!isFirst && !wasTold)
            QThread::msleep(std::min<std::int64_t>(pauseInMilliseconds, deadline.remainingTime()));
    }
    if (isFirst) {
        lock_ = descriptor;
        listen();
        return true;
    }
    ::close(descriptor);
    if (!wasTold) log::write("the running program does not answer");
    return false;
}

void DesktopInstance::listen() {
    const QString name = QString::fromStdString(base_ + ".socket");
    QLocalServer::removeServer(name);  // only the holder of the lock gets here
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(server_.get(), &QLocalServer::newConnection, [this] {
        // To connect is the whole message; the answer tells it from a connection that ended with its program.
        while (QLocalSocket* connection = server_->nextPendingConnection()) {
            connection->write("1");
            connection->flush();
            connection->close();
            connection->deleteLater();
            if (handler_) handler_();
        }
    });
    if (!server_->listen(name)) log::write("a second start cannot be heard: " + server_->errorString().toStdString());
}

/// Whether it has answered. Where it does not, the connection stays in its queue.
bool DesktopInstance::tellRunningOne(int milliseconds) const {
    const QDeadlineTimer deadline(milliseconds);
    QLocalSocket socket;
    socket.connectToServer(QString::fromStdString(base_ + ".socket"));
    if (!socket.waitForConnected(milliseconds)) return false;
    return socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()));
}

void DesktopInstance::setReopenHandler(std::function<void()> handler) {
    handler_ = std::move(handler);
}

}  // namespace brimquill::platform
