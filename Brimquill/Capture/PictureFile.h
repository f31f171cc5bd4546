#pragma once

#include "Platform/Types.h"

#include <optional>

namespace brimquill::PictureFile {

/// The picture in `bytes`, of any format that the desktop's image plugins read, as a PNG. Nothing when it is none of
/// them, is damaged, or would take more memory than is sensible, whatever its header says. Any thread.
std::optional<platform::Bytes> pngFrom(const platform::Bytes& bytes);

}  // namespace brimquill::PictureFile
