#include <Quorvex/platform/linux/video/FFmpeg.h>

#include <string>

#include <dlfcn.h>

namespace KOVA::Quorvex::platform {

namespace {

// Takes functions out of one library; says at the end whether all of them were there.
class Loader {
public:
    // The version whose headers these are.
    Loader(const std::string& name, int version)
        : m_library(dlopen(("lib" + name + ".so." + std::to_string(version)).c_str(), RTLD_NOW | RTLD_LOCAL)) {}

    template <class Function> Loader& Take(Function& function, const char* name) {
        function = m_library != nullptr ? reinterpret_cast<Function>(dlsym(m_library, name)) : nullptr;
        m_complete = m_complete && function != nullptr;
        return *this;
    }

    bool IsComplete() const { return m_complete; }

private:
    void* m_library; // stays loaded
    bool m_complete = true;
};

bool LoadFormats(FFmpeg& f) {
    return Loader("avformat", LIBAVFORMAT_VERSION_MAJOR)
        .Take(f.av_codec_get_id, "av_codec_get_id")
        .Take(f.av_codec_get_tag, "av_codec_get_tag")
        .Take(f.avformat_alloc_output_context2, "avformat_alloc_output_context2")
        .Take(f.avformat_free_context, "avformat_free_context")
        .Take(f.avformat_get_riff_video_tags, "avformat_get_riff_video_tags")
        .Take(f.avformat_new_stream, "avformat_new_stream")
        .Take(f.avformat_write_header, "avformat_write_header")
        .Take(f.avio_alloc_context, "avio_alloc_context")
        .Take(f.avio_context_free, "avio_context_free")
        .Take(f.avio_flush, "avio_flush")
        .Take(f.av_write_frame, "av_write_frame")
        .Take(f.av_write_trailer, "av_write_trailer")
        .IsComplete();
}

bool LoadCodecs(FFmpeg& f) {
    return Loader("avcodec", LIBAVCODEC_VERSION_MAJOR)
        .Take(f.av_codec_is_encoder, "av_codec_is_encoder")
        .Take(f.av_codec_iterate, "av_codec_iterate")
        .Take(f.av_packet_alloc, "av_packet_alloc")
        .Take(f.av_packet_free, "av_packet_free")
        .Take(f.av_packet_rescale_ts, "av_packet_rescale_ts")
        .Take(f.avcodec_alloc_context3, "avcodec_alloc_context3")
        .Take(f.avcodec_descriptor_get, "avcodec_descriptor_get")
        .Take(f.avcodec_find_best_pix_fmt_of_list, "avcodec_find_best_pix_fmt_of_list")
        .Take(f.avcodec_free_context, "avcodec_free_context")
        .Take(f.avcodec_open2, "avcodec_open2")
        .Take(f.avcodec_parameters_from_context, "avcodec_parameters_from_context")
        .Take(f.avcodec_receive_packet, "avcodec_receive_packet")
        .Take(f.avcodec_send_frame, "avcodec_send_frame")
        .Take(f.avcodec_version, "avcodec_version")
        .IsComplete();
}

bool LoadUtilities(FFmpeg& f) {
    return Loader("avutil", LIBAVUTIL_VERSION_MAJOR)
        .Take(f.av_frame_alloc, "av_frame_alloc")
        .Take(f.av_frame_free, "av_frame_free")
        .Take(f.av_frame_get_buffer, "av_frame_get_buffer")
        .Take(f.av_frame_make_writable, "av_frame_make_writable")
        .Take(f.av_free, "av_free")
        .Take(f.av_malloc, "av_malloc")
        .Take(f.av_opt_set, "av_opt_set")
        .Take(f.av_pix_fmt_desc_get, "av_pix_fmt_desc_get")
        .IsComplete();
}

bool LoadScaler(FFmpeg& f) {
    return Loader("swscale", LIBSWSCALE_VERSION_MAJOR)
        .Take(f.sws_freeContext, "sws_freeContext")
        .Take(f.sws_getCoefficients, "sws_getCoefficients")
        .Take(f.sws_getContext, "sws_getContext")
        .Take(f.sws_scale, "sws_scale")
        .Take(f.sws_setColorspaceDetails, "sws_setColorspaceDetails")
        .IsComplete();
}

} // namespace

const FFmpeg* LoadFFmpeg() {
    static FFmpeg s_functions{};
    static const bool s_complete =
        LoadUtilities(s_functions) && LoadCodecs(s_functions) && LoadFormats(s_functions) && LoadScaler(s_functions);
    return s_complete ? &s_functions : nullptr;
}

} // namespace KOVA::Quorvex::platform
