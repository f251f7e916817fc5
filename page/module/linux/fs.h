// What the library knows of Linux file systems and this platform does not define. The files of the
// page stand in memory, and have neither flags nor attributes.
#pragma once

#define FS_IOC_GETFLAGS 0x80086601UL
#define FS_IOC_SETFLAGS 0x40086602UL
#define FS_IMMUTABLE_FL 0x00000010
#define FS_APPEND_FL 0x00000020
#define FS_NOCOW_FL 0x00800000
#define FS_FL_USER_MODIFIABLE 0x000380FF
