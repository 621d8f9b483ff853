// Which encoders there are, and how they are told to write.

#include <Quorvex/platform/linux/video/Encoders.h>

#include <algorithm>
#include <vector>

#include <Quorvex/platform/linux/AviWriter.h>

namespace KOVA::Quorvex::platform {

namespace {

// Encoders tell about themselves on standard error, which is the host's: what they say is made unimportant. Only the
// lowest eight bits of the sum with a message's own level (at most 56) count.
constexpr int UNIMPORTANT = 128;

constexpr std::uint32_t MOTION_JPEG = FourCharacters('M', 'J', 'P', 'G');

bool IsOrHas(const std::vector<AVPixelFormat>& formats, AVPixelFormat format) {
    return std::find(formats.begin(), formats.end(), format) != formats.end();
}

// The formats of pictures in memory; there are others, which are a device's.
std::vector<AVPixelFormat> PixelFormats(const FFmpeg& ffmpeg, const AVCodec& encoder) {
    std::vector<AVPixelFormat> formats;
    for (const AVPixelFormat* format = encoder.pix_fmts; format != nullptr && *format != AV_PIX_FMT_NONE; ++format) {
        const AVPixFmtDescriptor* description = ffmpeg.av_pix_fmt_desc_get(*format);
        if (description != nullptr && (description->flags & AV_PIX_FMT_FLAG_HWACCEL) == 0) {
            formats.push_back(*format);
        }
    }
    return formats;
}

// Codecs with loss get what every player shows; the others what is nearest to the pictures, so that nothing is lost.
AVPixelFormat ChoosePixelFormat(const FFmpeg& ffmpeg, const AVCodec& encoder) {
    std::vector<AVPixelFormat> formats = PixelFormats(ffmpeg, encoder);
    const AVCodecDescriptor* description = ffmpeg.avcodec_descriptor_get(encoder.id);
    const bool lossy = description != nullptr && (description->props & AV_CODEC_PROP_LOSSY) != 0;
    if (formats.empty() || (lossy && IsOrHas(formats, AV_PIX_FMT_YUV420P))) {
        return formats.empty() ? AV_PIX_FMT_NONE : AV_PIX_FMT_YUV420P;
    }
    formats.push_back(AV_PIX_FMT_NONE);
    return ffmpeg.avcodec_find_best_pix_fmt_of_list(formats.data(), AV_PIX_FMT_BGR24, 0, nullptr);
}

void SetQuality(AVCodecContext& codec, std::uint32_t quality) {
    constexpr std::uint32_t best = 10000;
    constexpr int defaultStep = 3; // of quantisation, from 1 to 31: the loss is hardly seen
    const bool given = quality > 0 && quality <= best;
    const int step = given ? 31 - static_cast<int>(quality * 30 / best) : defaultStep;
    codec.flags |= AV_CODEC_FLAG_QSCALE;
    codec.global_quality = step * FF_QP2LAMBDA;
    // For those that know rates only and would otherwise take one for films that hardly move.
    constexpr std::int64_t ratePerPixel = 40; // bits a second
    if (codec.bit_rate > 0) {
        codec.bit_rate = ratePerPixel * codec.width * codec.height;
    }
}

CodecPointer Open(const FFmpeg& ffmpeg, const AVCodec& encoder, unsigned int width, unsigned int height,
                  std::uint32_t quality) {
    const AVPixelFormat format = ChoosePixelFormat(ffmpeg, encoder);
    CodecPointer codec(format != AV_PIX_FMT_NONE ? ffmpeg.avcodec_alloc_context3(&encoder) : nullptr, {&ffmpeg});
    if (codec == nullptr) {
        return codec;
    }
    codec->log_level_offset = UNIMPORTANT;
    codec->width = static_cast<int>(width);
    codec->height = static_cast<int>(height);
    codec->pix_fmt = format;
    codec->time_base = {1, static_cast<int>(VIDEO_RATE)};
    codec->framerate = {static_cast<int>(VIDEO_RATE), 1};
    codec->gop_size = 1; // key frames only
    codec->keyint_min = 1;
    codec->max_b_frames = 0;
    codec->color_range = encoder.id == AV_CODEC_ID_MJPEG ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    codec->colorspace = AVCOL_SPC_SMPTE170M;
    // Encoders of other libraries are slow and divide their work; our own thread is enough for the rest.
    codec->thread_count = (encoder.capabilities & AV_CODEC_CAP_OTHER_THREADS) != 0 ? 0 : 1;
    SetQuality(*codec, quality);
    if (codec->priv_data != nullptr) { // each is known to some encoders only
        ffmpeg.av_opt_set(codec->priv_data, "x265-params", "log-level=none", 0);
        ffmpeg.av_opt_set(codec->priv_data, "huffman", "default", 0); // tables fitted to each picture cost a third more
    }
    if (ffmpeg.avcodec_open2(codec.get(), &encoder, nullptr) < 0) {
        codec.reset();
    }
    return codec;
}

template <class Action> void ForEachEncoder(const FFmpeg& ffmpeg, Action action) {
    void* position = nullptr;
    while (const AVCodec* codec = ffmpeg.av_codec_iterate(&position)) {
        if (codec->type == AVMEDIA_TYPE_VIDEO && ffmpeg.av_codec_is_encoder(codec) != 0 &&
            (codec->capabilities & AV_CODEC_CAP_EXPERIMENTAL) == 0 && !action(*codec)) {
            return;
        }
    }
}

// Encoders of devices are there whether or not the device is: only trying tells.
bool CanBeOpened(const FFmpeg& ffmpeg, const AVCodec& encoder) {
    if ((encoder.capabilities & AV_CODEC_CAP_HARDWARE) != 0) {
        return Open(ffmpeg, encoder, 640, 480, 0) != nullptr;
    }
    return ChoosePixelFormat(ffmpeg, encoder) != AV_PIX_FMT_NONE;
}

} // namespace

CodecPointer OpenEncoder(const FFmpeg& ffmpeg, std::uint32_t handler, unsigned int width, unsigned int height,
                         std::uint32_t quality) {
    const AVCodecTag* const tags[] = {ffmpeg.avformat_get_riff_video_tags(), nullptr};
    const AVCodecID id = ffmpeg.av_codec_get_id(tags, handler);
    CodecPointer opened(nullptr, {&ffmpeg});
    ForEachEncoder(ffmpeg, [&](const AVCodec& encoder) {
        if (id != AV_CODEC_ID_NONE && encoder.id == id) {
            opened = Open(ffmpeg, encoder, width, height, quality);
        }
        return opened == nullptr;
    });
    return opened;
}

std::vector<ICINFO> CompressingCodecs() {
    std::vector<ICINFO> all;
    const FFmpeg* ffmpeg = LoadFFmpeg();
    if (ffmpeg == nullptr) {
        return all;
    }
    const AVCodecTag* const tags[] = {ffmpeg->avformat_get_riff_video_tags(), nullptr};
    ForEachEncoder(*ffmpeg, [&](const AVCodec& encoder) {
        const unsigned int handler = ffmpeg->av_codec_get_tag(tags, encoder.id);
        if (handler != 0) {
            ICINFO info = DescribeCodec(handler);
            CopyText(encoder.name, info.szDriver);
            if (CanBeOpened(*ffmpeg, encoder)) {
                const AVCodecDescriptor* description = ffmpeg->avcodec_descriptor_get(encoder.id);
                CopyText(description != nullptr ? description->name : encoder.name, info.szName);
                CopyText(encoder.long_name, info.szDescription);
                info.dwVersion = ffmpeg->avcodec_version();
            }
            all.push_back(info);
        }
        return true;
    });
    return all;
}

std::uint32_t DefaultCodec() {
    const FFmpeg* ffmpeg = LoadFFmpeg();
    const bool jpeg = ffmpeg != nullptr && OpenEncoder(*ffmpeg, MOTION_JPEG, 640, 480, 0) != nullptr;
    return jpeg ? MOTION_JPEG : UNCOMPRESSED;
}

} // namespace KOVA::Quorvex::platform
