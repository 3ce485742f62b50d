#include <unistd.h>

#include <QImage>
#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "platform/linux/decoder/facts.h"
#include "platform/linux/decoder/modules.h"
#include "platform/linux/decoder/readPicture.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

// What a film or a piece of music is, and a picture of it: its cover, or one of its first scenes.

namespace {

constexpr int kBufferBytes = 32 * 1024;
constexpr int64_t kMostProbed = 4 << 20, kMostAnalysed = 3 * AV_TIME_BASE;
constexpr int kMostSide = 8192, kMostPackets = 600;

int readBytes(void* handle, uint8_t* buffer, int size) {
    const ssize_t count = read(*static_cast<int*>(handle), buffer, size_t(size));
    if (count > 0) return int(count);
    return count == 0 ? AVERROR_EOF : AVERROR(errno);
}

int64_t seekTo(void* handle, int64_t offset, int whence) {
    const int file = *static_cast<int*>(handle);
    if (whence != AVSEEK_SIZE) return lseek(file, offset, whence & ~AVSEEK_FORCE);
    const off_t here = lseek(file, 0, SEEK_CUR), size = lseek(file, 0, SEEK_END);
    lseek(file, here, SEEK_SET);
    return size;
}

/// A list of other files is no film: nothing beside the file itself is opened.
int openNothing(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
    return AVERROR(EPERM);
}

std::string lengthText(int64_t microseconds) {
    const auto seconds = static_cast<long>(microseconds / AV_TIME_BASE);
    char text[48];
    if (seconds >= 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld", seconds / 60, seconds % 60);
    return text;
}

std::string streamText(const AVStream& stream) {
    const AVCodecParameters& what = *stream.codecpar;
    const AVCodecDescriptor* codec = avcodec_descriptor_get(what.codec_id);
    std::string text = codec && codec->long_name ? codec->long_name : "unknown";
    text = text.substr(0, text.find(" ("));
    if (what.codec_type == AVMEDIA_TYPE_VIDEO) {
        text += ", " + dimensionsText(what.width, what.height);
        const double rate = av_q2d(stream.avg_frame_rate);
        char number[48];
        std::snprintf(number, sizeof number, ", %.4g frames a second", rate);
        if (rate > 0) text += number;
        return text;
    }
    if (what.sample_rate > 0) text += ", " + numberText(what.sample_rate) + " Hz";
    const int channels = what.ch_layout.nb_channels;
    if (channels > 0)
        text += channels == 1   ? ", mono"
                : channels == 2 ? ", stereo"
                                : ", " + std::to_string(channels) + " channels";
    return text;
}

bool isCover(const AVStream& stream) {
    return (stream.disposition & AV_DISPOSITION_ATTACHED_PIC) != 0;
}

void addFacts(const AVFormatContext& media, Preview& preview) {
    auto at = preview.facts.begin();
    const auto add = [&](const char* name, const std::string& value) {
        if (!value.empty()) at = preview.facts.insert(at, {name, value}) + 1;
    };
    constexpr std::pair<const char*, const char*> kTags[] = {
        {"title", "Title"}, {"artist", "Artist"}, {"album", "Album"}};
    for (const auto& [key, name] : kTags)
        if (const AVDictionaryEntry* tag = av_dict_get(media.metadata, key, nullptr, 0))
            add(name, std::string(tag->value).substr(0, 300));
    if (media.duration > 0) add("Length", lengthText(media.duration));
    for (unsigned i = 0; i < std::min(media.nb_streams, 4U); i++) {
        const AVStream& stream = *media.streams[i];
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_VIDEO && !isCover(stream))
            add("Video", streamText(stream));
        if (stream.codecpar->codec_type == AVMEDIA_TYPE_AUDIO) add("Sound", streamText(stream));
    }
}

QImage toImage(const AVFrame& frame, int pixels) {
    if (frame.width < 1 || frame.height < 1) return {};
    if (frame.width > kMostSide || frame.height > kMostSide) return {};
    QSize size(frame.width, frame.height);
    if (frame.sample_aspect_ratio.num > 0 && frame.sample_aspect_ratio.den > 0)
        size.setWidth(
            std::clamp(int(size.width() * av_q2d(frame.sample_aspect_ratio)), 1, kMostSide));
    size.scale(pixels, pixels, Qt::KeepAspectRatio);
    QImage image(size.expandedTo({1, 1}), QImage::Format_RGB32);
    SwsContext* scaler = sws_getContext(
        frame.width, frame.height, static_cast<AVPixelFormat>(frame.format), image.width(),
        image.height(), AV_PIX_FMT_BGR0, SWS_AREA, nullptr, nullptr, nullptr);
    if (!scaler || image.isNull()) return {};
    uint8_t* const lines[] = {image.bits(), nullptr, nullptr, nullptr};
    const int strides[] = {int(image.bytesPerLine()), 0, 0, 0};
    sws_scale(scaler, frame.data, frame.linesize, 0, frame.height, lines, strides);
    sws_freeContext(scaler);
    return image;
}

/// The first picture that the stream gives from here.
QImage firstPicture(AVFormatContext& media, int index, int pixels) {
    const AVStream& stream = *media.streams[index];
    const AVCodec* codec = avcodec_find_decoder(stream.codecpar->codec_id);
    AVCodecContext* decoder = codec ? avcodec_alloc_context3(codec) : nullptr;
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    QImage image;
    if (decoder && packet && frame &&
        avcodec_parameters_to_context(decoder, stream.codecpar) >= 0) {
        decoder->thread_count = 1;
        bool isOpen = avcodec_open2(decoder, codec, nullptr) >= 0;
        for (int read = 0; isOpen && image.isNull() && read < kMostPackets; read++) {
            const bool hasPacket = av_read_frame(&media, packet) >= 0;
            if (!hasPacket || packet->stream_index == index)
                avcodec_send_packet(decoder, hasPacket ? packet : nullptr);
            av_packet_unref(packet);
            if (avcodec_receive_frame(decoder, frame) >= 0) image = toImage(*frame, pixels);
            isOpen = hasPacket;
        }
    }
    av_frame_free(&frame);
    av_packet_free(&packet);
    avcodec_free_context(&decoder);
    return image;
}

QImage pictureOf(AVFormatContext& media, int pixels) {
    for (unsigned i = 0; i < media.nb_streams; i++) {
        const AVStream& stream = *media.streams[i];
        if (!isCover(stream) || stream.attached_pic.size <= 0) continue;
        return QImage::fromData(stream.attached_pic.data, stream.attached_pic.size);
    }
    const int video = av_find_best_stream(&media, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (video < 0) return {};
    if (media.duration > 10 * int64_t{AV_TIME_BASE})
        av_seek_frame(&media, -1, media.duration / 10, AVSEEK_FLAG_BACKWARD);
    return firstPicture(media, video, pixels);
}

}  // namespace

void trovastDecode(int handle, uint32_t pixels, Preview& preview) {
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext* media = avformat_alloc_context();
    auto* buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (!media || !buffer) return;
    AVIOContext* input =
        avio_alloc_context(buffer, kBufferBytes, 0, &handle, readBytes, nullptr, seekTo);
    if (!input) return;
    media->pb = input;
    media->io_open = openNothing;
    media->probesize = kMostProbed;
    media->max_analyze_duration = kMostAnalysed;
    if (avformat_open_input(&media, nullptr, nullptr, nullptr) == 0 &&
        avformat_find_stream_info(media, nullptr) >= 0 && media->nb_streams > 0) {
        addFacts(*media, preview);
        preview.picture = toPicture(pictureOf(*media, int(pixels)), pixels);
        if (preview.picture) preview.kind = Preview::Kind::picture;
    } else {
        preview.message = "The recording cannot be read: it is damaged, or of an unknown kind.";
    }
    avformat_close_input(&media);
    av_freep(&input->buffer);
    avio_context_free(&input);
}
