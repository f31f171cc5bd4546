#pragma once

#include "Platform/Accessibility.h"
#include "Platform/EventMonitors.h"
#include "Platform/FolderWatcher.h"
#include "Platform/HotKeys.h"
#include "Platform/Instance.h"
#include "Platform/LoginItem.h"
#include "Platform/OpenPanel.h"
#include "Platform/Panels.h"
#include "Platform/Pasteboard.h"
#include "Platform/RunLoop.h"
#include "Platform/ScreenCapture.h"
#include "Platform/Screens.h"
#include "Platform/SecureInput.h"
#include "Platform/SyntheticKeys.h"
#include "Platform/SystemAppearance.h"
#include "Platform/TextRecognizer.h"
#include "Platform/UserDefaults.h"
#include "Platform/Workspace.h"

namespace brimquill::platform {

/// Everything the program asks of the system it runs on, for as long as this lives. Main thread.
class Services {
public:
    virtual ~Services() = default;
    virtual RunLoop& runLoop() = 0;
    virtual Pasteboard& pasteboard() = 0;
    virtual Workspace& workspace() = 0;
    virtual EventMonitors& eventMonitors() = 0;
    virtual HotKeys& hotKeys() = 0;
    virtual SyntheticKeys& syntheticKeys() = 0;
    virtual Accessibility& accessibility() = 0;
    virtual Screens& screens() = 0;
    virtual Panels& panels() = 0;
    virtual UserDefaults& defaults() = 0;
    virtual SystemAppearance& appearance() = 0;
    virtual OpenPanel& openPanel() = 0;
    virtual TextRecognizer& textRecognizer() = 0;
    virtual ScreenCapture& screenCapture() = 0;
    virtual FolderWatcher& folderWatcher() = 0;
    virtual SecureInput& secureInput() = 0;
    virtual Instance& instance() = 0;
    virtual LoginItem& loginItem() = 0;
};

}  // namespace brimquill::platform
