/// Images in files.

#ifndef IMAGECONFIG_IMAGEFILE_H
#define IMAGECONFIG_IMAGEFILE_H

#include "image.h"

#include <optional>
#include <string>

namespace imageconfig {

/// The image in a file; nothing, with the reason in `error`, if there is none or it is damaged. Of a file that is no
/// image, or is longer than it says, no more is read than shows that.
std::optional<Image> LoadImage(const std::string & path, std::string & error);

/// Puts an image into a file, whole or not at all. False with the reason in `error`.
bool SaveImage(const std::string & path, const Image & image, std::string & error);

}   // namespace imageconfig

#endif
