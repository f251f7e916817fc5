/* What the converters need from the switch's platform: its basic types and three functions.
 *
 * The library refers to the functions as weak symbols and has a stand-in for each, so that it runs
 * on any machine. A definition in the program, in a preloaded library or in the platform's own
 * library is called instead, without a rebuild. (A library that nothing but weak symbols asks for
 * must not be linked with --as-needed: the linker would drop it.) */
#ifndef INFRACONVERTASCII_PLATFORM_H
#define INFRACONVERTASCII_PLATFORM_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma GCC visibility push(default)

/* Status of an operation: 0 is success, every converter failure is -1 (all bits set). */
typedef uint32_t syserr_t;

/* Identifier of a platform service. */
typedef uint32_t uuid_t;

/* Handle of the platform's message queue. */
typedef int32_t mts_q_handle_t;

/* The platform's truth value: 0 is false. A debug switch is on only when it is exactly 1. */
typedef uint32_t boolean;

/* Returns the release text held in the release file at `path`, which may be null. The text belongs
 * to the platform and stays valid until the next call.
 * Stand-in: the file's first line without its newline; the empty text when it cannot be read. */
const char *srg_sw_ver_file_get(const char *path);

/* Removes the persistent store that `locator` names ("volatile:DIR/NAME" or "nonvolatile:DIR/NAME")
 * and returns the platform's status.
 * Stand-in: there is no store to remove, so -1. */
syserr_t pss2_destroy(const char *locator);

/* Returns a text for `status`, which belongs to the platform and stays valid until the next call.
 * Stand-in: "success" for 0, else "error 0x" and the status in hexadecimal. */
const char *syserr2str(syserr_t status);

#pragma GCC visibility pop

#ifdef __cplusplus
}
#endif

#endif
