// The platform's functions as the library calls them: the platform's own where they exist, else
// stand-ins. platform.h says what each does.
#pragma once

#include "platform/platform.h"

namespace platform {

// srg_sw_ver_file_get(); the empty text in place of a null one.
const char *release_in_file(const char *path);

// pss2_destroy()
syserr_t destroy_store(const char *locator);

// syserr2str()
const char *status_text(syserr_t status);

} // namespace platform
