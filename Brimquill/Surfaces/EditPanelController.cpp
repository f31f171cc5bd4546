#include "Brimquill/Surfaces/EditPanelController.h"

#include "Brimquill/Surfaces/EditView.h"

namespace brimquill {

void EditPanelController::show(const ClipItem& item, std::function<void()> onDone) {
    auto model = std::make_unique<EditView>(item, store_, runLoop_);
    QObject::connect(model.get(), &EditView::done, &panel_, [this, onDone = std::move(onDone)] {
        panel_.close();
        if (onDone) onDone();
    });
    panel_.show({QStringLiteral("EditView"), QStringLiteral("Brimquill Edit"), std::move(model)});
}

}  // namespace brimquill
