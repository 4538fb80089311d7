// Portable.h - the player's few calls whose spelling differs between Linux
// and Windows: making a directory, the local time, and what makes a path
// absolute.
#ifndef QUINDLE_PLAYER_PORTABLE_H
#define QUINDLE_PLAYER_PORTABLE_H

#include <sys/stat.h>

#include <ctime>
#include <string>

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

// Whether `path` names its file from a root: "/games"; on Windows also
// "C:\games", "C:/games" and "\\server\share".
inline bool PortableIsAbsolute(const std::string& path)
{
#ifdef _WIN32
    if (path.size() >= 3 && path[1] == ':' && (path[2] == '\\' || path[2] == '/'))
        return true;
    if (path.size() >= 2 && (path[0] == '\\' || path[0] == '/') && (path[1] == '\\' || path[1] == '/'))
        return true;
#endif
    return !path.empty() && path[0] == '/';
}

#endif
