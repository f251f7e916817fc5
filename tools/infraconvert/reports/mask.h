// Conversions as they are shown with the secrets in them masked.
#pragma once

#include "conversion/conversion.h"

namespace infraconvert {

// The conversion as it is shown, with secrets masked if so wished. The script stays, so that a
// difference within a secret still shows as one.
converted_t shown_conversion(converted_t conversion, bool mask);

} // namespace infraconvert
