#include "Brimquill/Surfaces/TagPanelController.h"

#include <utility>

namespace brimquill {

void TagPanelController::show(const ClipItem& item, OrganizeView::Field focus, std::function<void()> onDone,
                              OrganizeView::Wording wording) {
    auto model = std::make_unique<OrganizeView>(item, focus, std::move(wording), store_);
    QObject::connect(model.get(), &OrganizeView::done, &panel_, [this, onDone = std::move(onDone)] {
        panel_.close();
        if (onDone) onDone();
    });
    panel_.show({QStringLiteral("OrganizeView"), QStringLiteral("Brimquill Organize"), std::move(model)});
}

}  // namespace brimquill
