#include "Platform/Desktop/DesktopOpenPanel.h"

#include "BrimquillCore/Foundation/Log.h"
#include "Platform/Desktop/DesktopAppearance.h"
#include "Platform/Desktop/PortalFileChooser.h"

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <utility>

namespace brimquill::platform {
namespace {

using Answer = std::optional<OpenPanel::SaveAnswer>;
using Done = std::function<void(Answer)>;

std::string withExtension(std::string path, const std::string& extension) {
    if (extension.empty()) return path;
    const QString dotted = QLatin1Char('.') + QString::fromStdString(extension);
    if (!QString::fromStdString(path).endsWith(dotted, Qt::CaseInsensitive)) path += dotted.toStdString();
    return path;
}

/// Shows the toolkit's dialog, which goes when it is answered or when `owner` goes.
void showDialog(QFileDialog* dialog, QComboBox* choice, QObject* owner, const Done& done) {
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QFileDialog::finished, owner, [dialog, choice, done](int result) {
        const QStringList files = dialog->selectedFiles();
        if (result != QDialog::Accepted || files.isEmpty()) {
            done(std::nullopt);
            return;
        }
        const int index = choice == nullptr ? 0 : choice->currentIndex();
        done(OpenPanel::SaveAnswer{files.front().toStdString(), static_cast<std::size_t>(std::max(index, 0))});
    });
    QObject::connect(owner, &QObject::destroyed, dialog, [dialog] { delete dialog; });
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
}

bool canShowDialogs(QObject* owner, const Done& done) {
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr) return true;
    log::write("no file dialog can be shown here");
    QTimer::singleShot(0, owner, [done] { done(std::nullopt); });
    return false;
}

QFileDialog* makeDialog(const std::string& message) {
    auto* dialog = new QFileDialog();
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setWindowTitle(QString::fromStdString(message));
    return dialog;
}

void showOpenDialog(const OpenPanel::Request& request, QObject* owner, const Done& done) {
    if (!canShowDialogs(owner, done)) return;
    QFileDialog* dialog = makeDialog(request.message);
    dialog->setFileMode(request.allowsDirectories ? QFileDialog::Directory : QFileDialog::ExistingFile);
    QStringList patterns;
    for (const std::string& extension : request.allowedExtensions) {
        patterns += QStringLiteral("*.") + QString::fromStdString(extension);
    }
    if (!patterns.isEmpty()) dialog->setNameFilter(patterns.join(QLatin1Char(' ')));
    showDialog(dialog, nullptr, owner, done);
}

void showSaveDialog(const OpenPanel::SaveRequest& request, QObject* owner, const Done& done) {
    if (!canShowDialogs(owner, done)) return;
    QFileDialog* dialog = makeDialog(request.message);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    dialog->setDefaultSuffix(QString::fromStdString(request.extension));
    dialog->selectFile(QString::fromStdString(request.suggestedName));
    QComboBox* choice = nullptr;
    auto* grid = qobject_cast<QGridLayout*>(dialog->layout());
    if (!request.choices.empty() && grid != nullptr) {
        choice = new QComboBox(dialog);
        for (const std::string& text : request.choices)
            choice->addItem(QString::fromStdString(text));
        const int row = grid->rowCount();
        grid->addWidget(new QLabel(QString::fromStdString(request.choiceLabel), dialog), row, 0);
        grid->addWidget(choice, row, 1);
    }
    showDialog(dialog, choice, owner, done);
}

/// Asks the portal; `otherwise` runs when there is none.
void askPortal(const char* method, const std::string& message, const QVariantMap& options, QObject* owner,
               const Done& done, const std::function<void()>& otherwise) {
    if (!hasSessionBus() || !QDBusConnection::sessionBus().isConnected()) {
        otherwise();
        return;
    }
    new PortalFileChooser(
        QLatin1String(method), QString::fromStdString(message), options,
        [done, otherwise](const PortalFileChooser::Outcome& outcome) {
            using Kind = PortalFileChooser::Outcome::Kind;
            switch (outcome.kind) {
                case Kind::chosen:
                    done(outcome.answer);
                    break;
                case Kind::cancelled:
                    done(std::nullopt);
                    break;
                case Kind::unavailable:
                    otherwise();
                    break;
            }
        },
        owner);
}

}  // namespace

void DesktopOpenPanel::run(const Request& request, std::function<void(std::optional<std::string>)> done) {
    const Done answer = [done = std::move(done)](const Answer& chosen) {
        done(chosen ? std::optional(chosen->path) : std::nullopt);
    };
    askPortal("OpenFile", request.message, PortalFileChooser::options(request), &context_, answer,
              [this, request, answer] { showOpenDialog(request, &context_, answer); });
}

void DesktopOpenPanel::runSave(const SaveRequest& request, std::function<void(std::optional<SaveAnswer>)> done) {
    const Done answer = [done = std::move(done), extension = request.extension](Answer chosen) {
        if (chosen) chosen->path = withExtension(chosen->path, extension);
        done(std::move(chosen));
    };
    askPortal("SaveFile", request.message, PortalFileChooser::options(request), &context_, answer,
              [this, request, answer] { showSaveDialog(request, &context_, answer); });
}

}  // namespace brimquill::platform
