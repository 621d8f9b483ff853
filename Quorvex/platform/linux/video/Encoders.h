#pragma once

#include <cstdint>
#include <memory>

#include <Quorvex/platform/AviTypes.h>
#include <Quorvex/platform/linux/video/FFmpeg.h>

namespace KOVA::Quorvex::platform {

struct FreeCodec {
    const FFmpeg* ffmpeg;
    void operator()(AVCodecContext* codec) const { ffmpeg->avcodec_free_context(&codec); }
};
using CodecPointer = std::unique_ptr<AVCodecContext, FreeCodec>;

// An encoder for the code that takes pictures of this size, ready to be used, every picture a key frame. Several may
// have the same code: the first that can be opened. Null when there is none.
CodecPointer OpenEncoder(const FFmpeg& ffmpeg, std::uint32_t handler, unsigned int width, unsigned int height,
                         std::uint32_t quality);

} // namespace KOVA::Quorvex::platform
