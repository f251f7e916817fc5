// The public header as C++ sees it, with nothing in front of it.
#include <libinfraconvertascii.h>

static_assert(sizeof(infraconvertascii_args_t) == 4 * sizeof(const char *));
static_assert(sizeof(convertascii_ret_value_t) == 8);
static_assert(INFRA_CONVERTASCII_STARTUP_ROWS ==
              sizeof infra_convertascii_startup_table / sizeof *infra_convertascii_startup_table);
