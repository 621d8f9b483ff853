#pragma once

#include <functional>
#include <utility>

#include <Quorvex/core/Export.h>
#include <Quorvex/volume/RekHeader.h>
#include <Quorvex/volume/VolumeData.h>

namespace KOVA::Quorvex {

// Writes REK files. Paths are in the encoding of fopen. A file takes its name when it is complete: failures leave what
// was there before.
//
// Raw files are bare little-endian samples, x fastest, then y, then z from 0 upwards. They are streamed through a small
// buffer, whatever their size. The functions throw an exception derived from std::exception whose text is a reason in
// one line.
class QUORVEX_API VolumeWriter {
public:
    // 8-bit samples. False when the file cannot be written, a dimension is larger than 32767, or there is no store.
    static bool WriteREK(const char* path, const VolumeData& data);

    // Told from 0 to 1 how far a stream is, on the calling thread.
    using Progress = std::function<void(double done)>;

    // The smallest and the largest finite sample of a raw file of floats; 0 and 0 when there is none.
    static std::pair<float, float> MeasureRaw(const char* rawPath, const RekHeader& header,
                                              const Progress& progress = nullptr);

    // Writes the samples of a raw file under the header. The raw file must hold what the header says, no more and no
    // less; every dimension must be at least 1. 16-bit samples are stretched when recVolMin is less than recVolMax: the
    // one becomes 0, the other 65535, and what lies beyond is cut off.
    static void ConvertRaw(const char* rawPath, const RekHeader& header, const char* rekPath,
                           const Progress& progress = nullptr);
};

} // namespace KOVA::Quorvex
