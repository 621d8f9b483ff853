#pragma once

// FFmpeg's headers are C.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
#include <libavutil/pixdesc.h>
#include <libswscale/swscale.h>
}

namespace KOVA::Quorvex::platform {

// The functions of FFmpeg's libraries that are used here, named as they are. The libraries are loaded when a video is
// first asked for: with all that they bring along, every program that uses this library would start by a tenth of a
// second later.
struct FFmpeg {
    decltype(&::av_codec_get_id) av_codec_get_id;
    decltype(&::av_codec_get_tag) av_codec_get_tag;
    decltype(&::avformat_alloc_output_context2) avformat_alloc_output_context2;
    decltype(&::avformat_free_context) avformat_free_context;
    decltype(&::avformat_get_riff_video_tags) avformat_get_riff_video_tags;
    decltype(&::avformat_new_stream) avformat_new_stream;
    decltype(&::avformat_write_header) avformat_write_header;
    decltype(&::avio_alloc_context) avio_alloc_context;
    decltype(&::avio_context_free) avio_context_free;
    decltype(&::avio_flush) avio_flush;
    decltype(&::av_write_frame) av_write_frame;
    decltype(&::av_write_trailer) av_write_trailer;

    decltype(&::av_codec_is_encoder) av_codec_is_encoder;
    decltype(&::av_codec_iterate) av_codec_iterate;
    decltype(&::av_packet_alloc) av_packet_alloc;
    decltype(&::av_packet_free) av_packet_free;
    decltype(&::av_packet_rescale_ts) av_packet_rescale_ts;
    decltype(&::avcodec_alloc_context3) avcodec_alloc_context3;
    decltype(&::avcodec_descriptor_get) avcodec_descriptor_get;
    decltype(&::avcodec_find_best_pix_fmt_of_list) avcodec_find_best_pix_fmt_of_list;
    decltype(&::avcodec_free_context) avcodec_free_context;
    decltype(&::avcodec_open2) avcodec_open2;
    decltype(&::avcodec_parameters_from_context) avcodec_parameters_from_context;
    decltype(&::avcodec_receive_packet) avcodec_receive_packet;
    decltype(&::avcodec_send_frame) avcodec_send_frame;
    decltype(&::avcodec_version) avcodec_version;

    decltype(&::av_frame_alloc) av_frame_alloc;
    decltype(&::av_frame_free) av_frame_free;
    decltype(&::av_frame_get_buffer) av_frame_get_buffer;
    decltype(&::av_frame_make_writable) av_frame_make_writable;
    decltype(&::av_free) av_free;
    decltype(&::av_malloc) av_malloc;
    decltype(&::av_opt_set) av_opt_set;
    decltype(&::av_pix_fmt_desc_get) av_pix_fmt_desc_get;

    decltype(&::sws_freeContext) sws_freeContext;
    decltype(&::sws_getCoefficients) sws_getCoefficients;
    decltype(&::sws_getContext) sws_getContext;
    decltype(&::sws_scale) sws_scale;
    decltype(&::sws_setColorspaceDetails) sws_setColorspaceDetails;
};

// Null when the libraries of the version that this was built with are not there. On any thread.
const FFmpeg* LoadFFmpeg();

} // namespace KOVA::Quorvex::platform
