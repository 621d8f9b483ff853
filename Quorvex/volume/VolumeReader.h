#pragma once

#include <Quorvex/core/Export.h>
#include <Quorvex/core/ReadProgress.h>
#include <Quorvex/volume/RekHeader.h>
#include <Quorvex/volume/Volume.h>

namespace KOVA::Quorvex {

// Reads volumes from REK files. Paths are in the encoding of fopen. Failures are exceptions derived from std::exception
// with the texts below; nothing stays open or allocated. Files are not trusted: what a header announces and the file
// does not hold is refused before anything is allocated. No GL context is needed; large files are read on several
// threads, with a few small buffers beside the voxels.
class QUORVEX_API VolumeReader {
public:
    // A new volume with data of its own and a default attribute; its bricks are made by VolumeData::Update. The file's
    // first slice is the volume's last. Of 16-bit samples the high byte is kept. Floats are scaled so that the header's
    // RecVolMin becomes 0 and its RecVolMax 255; values beyond wrap around, what is not finite becomes 0. Equal limits
    // are warned of (see SetWarningHandler) and count as a range of 1. A file that announces no voxels gives a volume
    // without any.
    //
    // The texts all begin with "Quorvex::VolumeReader::ReadREK -> " and go on with "open failed", "Reading of header
    // failed", "Reading of 8-bit volume failed" (16-bit, float; also for negative dimensions) or, after a warning,
    // "Volume must be of type unsigned 8-bit, unsigned 16-bit oder float!". Throws std::bad_alloc as well.
    static Volume ReadREK(const char* path);

    // The same while other threads look how far it has come, and may end it: the text goes on with "cancelled" then.
    static Volume ReadREKWatched(const char* path, ReadProgress& progress);

    // The header alone, unchecked. Fails as the first two steps of ReadREK do.
    static RekHeader ReadREKHeader(const char* path);
};

} // namespace KOVA::Quorvex
