#include "Brimquill/Views/ViewHost.h"

#include "Brimquill/Views/ShadowImage.h"
#include "BrimquillCore/Foundation/Log.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlError>

namespace brimquill {

ViewHost::ViewHost(AppSettings& settings, platform::SystemAppearance& system, platform::Panels& panels)
    : panels_(panels), appearance_(settings, system, panels) {}

ViewHost::~ViewHost() = default;

QQmlEngine& ViewHost::engine() {
    if (engine_) return *engine_;
    engine_ = std::make_unique<QQmlEngine>();
    // Text fields would ask the clipboard's owner what it has at each change of it, and wait for the answer: a program
    // that does not give one would stop the interface for seconds.
    QGuiApplication::clipboard()->blockSignals(true);
    engine_->setOutputWarningsToStandardError(false);
    QObject::connect(engine_.get(), &QQmlEngine::warnings, engine_.get(), [](const QList<QQmlError>& warnings) {
        for (const QQmlError& warning : warnings)
            log::write("view: " + warning.toString().toStdString());
    });
    engine_->rootContext()->setContextProperty(QStringLiteral("appearance"), &appearance_);
    engine_->addImageProvider(QString::fromUtf8(ShadowImage::provider), new ShadowImage);
    return *engine_;
}

}  // namespace brimquill
