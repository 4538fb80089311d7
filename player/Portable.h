// Portable.h - the player's few calls whose spelling differs between Linux
// and Windows: making a directory and the local time.
#ifndef QUINDLE_PLAYER_PORTABLE_H
#define QUINDLE_PLAYER_PORTABLE_H

#include <sys/stat.h>

#include <ctime>

#ifdef _WIN32
#include <direct.h>
#endif

// Makes one directory; 0 on success, as mkdir gives.
inline int PortableMakeDirectory(const char* path)
{
#ifdef _WIN32
    return ::_mkdir(path);
#else
    return ::mkdir(path, 0777);
#endif
}

// The broken-down local time of `when`.
inline void PortableLocalTime(std::time_t when, std::tm* local)
{
#ifdef _WIN32
    ::localtime_s(local, &when);
#else
    ::localtime_r(&when, local);
#endif
}

#endif
