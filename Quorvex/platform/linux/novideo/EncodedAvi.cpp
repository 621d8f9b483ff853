// A build without FFmpeg: frames are not compressed.

#include <Quorvex/platform/linux/AviWriter.h>

namespace KOVA::Quorvex::platform {

std::unique_ptr<AviWriter> MakeEncodedAvi(SeekableFile& /*file*/, unsigned int /*width*/, unsigned int /*height*/,
                                          const AVICOMPRESSOPTIONS& /*options*/) {
    return nullptr;
}

std::vector<ICINFO> CompressingCodecs() {
    return {};
}

std::uint32_t DefaultCodec() {
    return UNCOMPRESSED;
}

} // namespace KOVA::Quorvex::platform
