#pragma once

// The records that video codecs are described by and told with. On Windows they are the system's own, reachable in this
// namespace too; elsewhere they carry the same names and members.

#include <Quorvex/platform/Handles.h>

#if defined(_WIN32)

#include <vfw.h>

namespace KOVA::Quorvex {

using ::AVICOMPRESSOPTIONS;
using ::ICINFO;

} // namespace KOVA::Quorvex

#else

namespace KOVA::Quorvex {

// A codec that videos can be written with. Codes have four characters, the first one in the lowest byte. Of a codec
// that cannot be opened on this system name and description are empty.
struct ICINFO {
    DWORD dwSize;       // of this record, in bytes
    DWORD fccType;      // "vidc": video
    DWORD fccHandler;   // the codec's code, such as "MJPG"
    DWORD dwFlags;      // 0
    DWORD dwVersion;    // of the codec, 0 when it is not known
    DWORD dwVersionICM; // of these records
    wchar_t szName[16]; // short, perhaps cut off; like all texts it ends with a 0
    wchar_t szDescription[128];
    wchar_t szDriver[128]; // what implements it
};

// What a recording is written with.
struct AVICOMPRESSOPTIONS {
    DWORD fccType;         // "vids": a video stream
    DWORD fccHandler;      // the codec's code
    DWORD dwKeyFrameEvery; // not used: every frame is a key frame
    DWORD dwQuality;       // 1 to 10000; other values stand for the codec's default
    DWORD dwBytesPerSecond;
    DWORD dwFlags;
    void* lpFormat;
    DWORD cbFormat;
    void* lpParms;
    DWORD cbParms;
    DWORD dwInterleaveEvery;
};

} // namespace KOVA::Quorvex

#endif
