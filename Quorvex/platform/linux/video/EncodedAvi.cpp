// Compressed pictures in AVI files, through FFmpeg. Its AVI files have an index of the kind that reaches beyond 2 GiB.

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include <Quorvex/platform/linux/AviWriter.h>
#include <Quorvex/platform/linux/video/Encoders.h>

namespace KOVA::Quorvex::platform {

namespace {

struct Release {
    const FFmpeg* ffmpeg;
    void operator()(AVFormatContext* format) const { ffmpeg->avformat_free_context(format); }
    void operator()(AVIOContext* stream) const {
        ffmpeg->av_free(stream->buffer);
        ffmpeg->avio_context_free(&stream);
    }
    void operator()(AVFrame* frame) const { ffmpeg->av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { ffmpeg->av_packet_free(&packet); }
    void operator()(SwsContext* scaler) const { ffmpeg->sws_freeContext(scaler); }
};
template <class T> using Pointer = std::unique_ptr<T, Release>;

std::int64_t SeekFile(void* opaque, std::int64_t offset, int whence) {
    auto& file = *static_cast<SeekableFile*>(opaque);
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return file.Size();
    case SEEK_CUR:
        offset += file.Position();
        break;
    case SEEK_END:
        offset += file.Size();
        break;
    default:
        break;
    }
    return file.Seek(offset) ? offset : AVERROR(EIO);
}

class EncodedAvi final : public AviWriter {
public:
    EncodedAvi(const FFmpeg& ffmpeg, CodecPointer codec)
        : m_ffmpeg(ffmpeg), m_codec(std::move(codec)), m_stream(nullptr, {&ffmpeg}), m_format(nullptr, {&ffmpeg}),
          m_scaler(nullptr, {&ffmpeg}), m_frame(nullptr, {&ffmpeg}), m_packet(nullptr, {&ffmpeg}) {}

    bool Start(SeekableFile& file, std::uint32_t handler) { return MakeFrame() && MakeStream(file, handler); }

    VideoResult Write(const unsigned char* rgba) override {
        if (m_ffmpeg.av_frame_make_writable(m_frame.get()) < 0) { // the encoder may still hold the picture before
            return VideoResult::Failed;
        }
        const int rowBytes = m_codec->width * 4;
        const auto lastRow = static_cast<std::ptrdiff_t>(rowBytes) * (m_codec->height - 1);
        const std::uint8_t* const rows[] = {rgba + lastRow}; // from the top
        const int strides[] = {-rowBytes};
        m_ffmpeg.sws_scale(m_scaler.get(), rows, strides, 0, m_codec->height, m_frame->data, m_frame->linesize);
        m_frame->pts = m_next++;
        m_frame->pict_type = AV_PICTURE_TYPE_I; // a key frame
        return Encode(m_frame.get()) ? VideoResult::Written : VideoResult::Failed;
    }

    bool Finish() override {
        const bool flushed = Encode(nullptr);
        const bool ended = m_ffmpeg.av_write_trailer(m_format.get()) >= 0;
        m_ffmpeg.avio_flush(m_stream.get());
        return flushed && ended && m_stream->error >= 0;
    }

private:
    bool MakeFrame() {
        m_packet.reset(m_ffmpeg.av_packet_alloc());
        m_frame.reset(m_ffmpeg.av_frame_alloc());
        if (m_packet == nullptr || m_frame == nullptr) {
            return false;
        }
        m_frame->format = m_codec->pix_fmt;
        m_frame->width = m_codec->width;
        m_frame->height = m_codec->height;
        m_frame->color_range = m_codec->color_range;
        m_frame->colorspace = m_codec->colorspace;
        if (m_ffmpeg.av_frame_get_buffer(m_frame.get(), 0) < 0) {
            return false;
        }
        m_scaler.reset(m_ffmpeg.sws_getContext(m_codec->width, m_codec->height, AV_PIX_FMT_RGB0, m_codec->width,
                                               m_codec->height, m_codec->pix_fmt, SWS_AREA, nullptr, nullptr, nullptr));
        if (m_scaler == nullptr) {
            return false;
        }
        const int* const coefficients = m_ffmpeg.sws_getCoefficients(SWS_CS_SMPTE170M);
        constexpr int one = 1 << 16;
        m_ffmpeg.sws_setColorspaceDetails(m_scaler.get(), coefficients, 1, coefficients,
                                          m_codec->color_range == AVCOL_RANGE_JPEG ? 1 : 0, 0, one, one);
        return true; // formats without colour spaces refuse the details
    }

    bool MakeStream(SeekableFile& file, std::uint32_t handler) {
        constexpr int bufferBytes = 1 << 16;
        auto* const buffer = static_cast<unsigned char*>(m_ffmpeg.av_malloc(bufferBytes));
        // Whether the bytes are constant differs from version to version.
        const auto write = [](void* opaque, auto* data, int bytes) {
            return static_cast<SeekableFile*>(opaque)->Write(data, static_cast<std::size_t>(bytes)) ? bytes
                                                                                                    : AVERROR(EIO);
        };
        m_stream.reset(m_ffmpeg.avio_alloc_context(buffer, bufferBytes, 1, &file, nullptr, write, SeekFile));
        AVFormatContext* format = nullptr;
        m_ffmpeg.avformat_alloc_output_context2(&format, nullptr, "avi", nullptr);
        m_format.reset(format);
        if (m_stream == nullptr || m_format == nullptr) {
            return false;
        }
        m_format->pb = m_stream.get();
        m_format->flags |= AVFMT_FLAG_CUSTOM_IO;
        AVStream* const video = m_ffmpeg.avformat_new_stream(m_format.get(), nullptr);
        if (video == nullptr || m_ffmpeg.avcodec_parameters_from_context(video->codecpar, m_codec.get()) < 0) {
            return false;
        }
        video->codecpar->codec_tag = handler;
        video->time_base = m_codec->time_base;
        video->avg_frame_rate = m_codec->framerate;
        return m_ffmpeg.avformat_write_header(m_format.get(), nullptr) >= 0;
    }

    // The encoder may keep pictures back until it is given null.
    bool Encode(const AVFrame* frame) {
        if (m_ffmpeg.avcodec_send_frame(m_codec.get(), frame) < 0) {
            return false;
        }
        while (true) {
            const int received = m_ffmpeg.avcodec_receive_packet(m_codec.get(), m_packet.get());
            if (received < 0) {
                return received == AVERROR(EAGAIN) || received == AVERROR_EOF;
            }
            m_packet->duration = 1;
            m_ffmpeg.av_packet_rescale_ts(m_packet.get(), m_codec->time_base, m_format->streams[0]->time_base);
            m_packet->stream_index = 0;
            if (m_ffmpeg.av_write_frame(m_format.get(), m_packet.get()) < 0) {
                return false;
            }
        }
    }

    const FFmpeg& m_ffmpeg;
    CodecPointer m_codec;
    Pointer<AVIOContext> m_stream;
    Pointer<AVFormatContext> m_format;
    Pointer<SwsContext> m_scaler; // to the encoder's pixel format
    Pointer<AVFrame> m_frame;
    Pointer<AVPacket> m_packet;
    std::int64_t m_next = 0; // picture
};

} // namespace

std::unique_ptr<AviWriter> MakeEncodedAvi(SeekableFile& file, unsigned int width, unsigned int height,
                                          const AVICOMPRESSOPTIONS& options) {
    const FFmpeg* ffmpeg = LoadFFmpeg();
    if (ffmpeg == nullptr) {
        return nullptr;
    }
    CodecPointer codec = OpenEncoder(*ffmpeg, options.fccHandler, width, height, options.dwQuality);
    if (codec == nullptr) {
        return nullptr;
    }
    auto writer = std::make_unique<EncodedAvi>(*ffmpeg, std::move(codec));
    return writer->Start(file, options.fccHandler) ? std::move(writer) : nullptr;
}

} // namespace KOVA::Quorvex::platform
