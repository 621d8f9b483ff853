#include <Quorvex/platform/linux/video/FFmpeg.h>

#include <dlfcn.h>

// The versions whose headers these are.
#define QUORVEX_TEXT(number) #number
#define QUORVEX_LIBRARY(name, version) "lib" name ".so." QUORVEX_TEXT(version)

namespace KOVA::Quorvex::platform {

namespace {

// Takes functions out of one library; says at the end whether all of them were there.
class Loader {
public:
    explicit Loader(const char* library) : m_library(dlopen(library, RTLD_NOW | RTLD_LOCAL)) {}

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

#define QUORVEX_TAKE(name) .Take(f.name, #name)

bool LoadFormats(FFmpeg& f) {
    return Loader(QUORVEX_LIBRARY("avformat", LIBAVFORMAT_VERSION_MAJOR)) QUORVEX_TAKE(av_codec_get_id)
        QUORVEX_TAKE(av_codec_get_tag) QUORVEX_TAKE(avformat_alloc_output_context2) QUORVEX_TAKE(avformat_free_context)
            QUORVEX_TAKE(avformat_get_riff_video_tags) QUORVEX_TAKE(avformat_new_stream)
                QUORVEX_TAKE(avformat_write_header) QUORVEX_TAKE(avio_alloc_context) QUORVEX_TAKE(avio_context_free)
                    QUORVEX_TAKE(avio_flush) QUORVEX_TAKE(av_write_frame) QUORVEX_TAKE(av_write_trailer)
                        .IsComplete();
}

bool LoadCodecs(FFmpeg& f) {
    return Loader(QUORVEX_LIBRARY("avcodec", LIBAVCODEC_VERSION_MAJOR)) QUORVEX_TAKE(av_codec_is_encoder)
        QUORVEX_TAKE(av_codec_iterate) QUORVEX_TAKE(av_packet_alloc) QUORVEX_TAKE(av_packet_free)
            QUORVEX_TAKE(av_packet_rescale_ts) QUORVEX_TAKE(avcodec_alloc_context3) QUORVEX_TAKE(avcodec_descriptor_get)
                QUORVEX_TAKE(avcodec_find_best_pix_fmt_of_list) QUORVEX_TAKE(avcodec_free_context)
                    QUORVEX_TAKE(avcodec_open2) QUORVEX_TAKE(avcodec_parameters_from_context)
                        QUORVEX_TAKE(avcodec_receive_packet) QUORVEX_TAKE(avcodec_send_frame)
                            QUORVEX_TAKE(avcodec_version)
                                .IsComplete();
}

bool LoadUtilities(FFmpeg& f) {
    return Loader(QUORVEX_LIBRARY("avutil", LIBAVUTIL_VERSION_MAJOR)) QUORVEX_TAKE(av_frame_alloc)
        QUORVEX_TAKE(av_frame_free) QUORVEX_TAKE(av_frame_get_buffer) QUORVEX_TAKE(av_frame_make_writable)
            QUORVEX_TAKE(av_free) QUORVEX_TAKE(av_malloc) QUORVEX_TAKE(av_opt_set) QUORVEX_TAKE(av_pix_fmt_desc_get)
                .IsComplete();
}

bool LoadScaler(FFmpeg& f) {
    return Loader(QUORVEX_LIBRARY("swscale", LIBSWSCALE_VERSION_MAJOR)) QUORVEX_TAKE(sws_freeContext)
        QUORVEX_TAKE(sws_getCoefficients) QUORVEX_TAKE(sws_getContext) QUORVEX_TAKE(sws_scale)
            QUORVEX_TAKE(sws_setColorspaceDetails)
                .IsComplete();
}

#undef QUORVEX_TAKE

} // namespace

const FFmpeg* LoadFFmpeg() {
    static FFmpeg s_functions{};
    static const bool s_complete =
        LoadUtilities(s_functions) && LoadCodecs(s_functions) && LoadFormats(s_functions) && LoadScaler(s_functions);
    return s_complete ? &s_functions : nullptr;
}

} // namespace KOVA::Quorvex::platform
