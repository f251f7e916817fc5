// The fixed parts of the page that a browser shows.
#pragma once

namespace infraconvert {

extern const char *const page_style;
extern const char *const page_body;
extern const char *const page_script;

} // namespace infraconvert
