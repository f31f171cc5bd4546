#include "Brimquill/Settings/AppDefaults.h"

#include "Platform/Factory.h"

namespace brimquill::AppDefaults {

platform::UserDefaults& store() {
    static platform::UserDefaults& defaults = *platform::createUserDefaults({}).release();
    return defaults;
}

platform::UserDefaults& screenCapture() {
    static platform::UserDefaults& defaults = *platform::createUserDefaults("com.apple.screencapture").release();
    return defaults;
}

}  // namespace brimquill::AppDefaults
