// The peers' calls. What a library lacks has no row; conversions to another target than ours (libyuv has no
// three-byte output for some) carry it in their name.
#include "peers/peers.h"

#if QVN_PEER_OPENCV
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#if QVN_PEER_LIBYUV
#include <libyuv.h>
#endif
#if QVN_PEER_DC1394
#include <dc1394/conversions.h>
#endif

void prepare_peers() {
#if QVN_PEER_OPENCV
  cv::setNumThreads(1);
#endif
}

namespace {

#if QVN_PEER_OPENCV
Peer opencv(int code, int from, int to) {
  return {"OpenCV", [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
            const int w = static_cast<int>(width), h = static_cast<int>(height);
            const cv::Mat in(h, w, from, src);
            cv::Mat out(h, w, to, dst);
            cv::cvtColor(in, out, code);
          }};
}
#endif

#if QVN_PEER_DC1394
Peer dc1394(dc1394color_coding_t coding) {
  return {"libdc1394", [=](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
            dc1394_convert_to_RGB8(src, dst, width, height, DC1394_BYTE_ORDER_UYVY, coding, 8);
          }};
}
#endif

#if QVN_PEER_LIBYUV
int stride(uint32_t width, int bytes) { return static_cast<int>(width) * bytes; }
#endif

}  // namespace

std::vector<Peer> bayer_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv(cv::COLOR_BayerRG2BGR, CV_8UC1, CV_8UC3));
#endif
#if QVN_PEER_DC1394
  for (const auto& [name, method] : {std::pair{"libdc1394-simple", DC1394_BAYER_METHOD_SIMPLE},
                                     std::pair{"libdc1394-bilinear", DC1394_BAYER_METHOD_BILINEAR}}) {
    peers.push_back({name, [method = method](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                       dc1394_bayer_decoding_8bit(src, dst, width, height, DC1394_COLOR_FILTER_RGGB, method);
                     }});
  }
#endif
  return peers;
}

std::vector<Peer> yuv444_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv(cv::COLOR_YUV2BGR, CV_8UC3, CV_8UC3));
#endif
#if QVN_PEER_DC1394
  peers.push_back(dc1394(DC1394_COLOR_CODING_YUV444));
#endif
  return peers;
}

std::vector<Peer> yuv422_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv(cv::COLOR_YUV2BGR_UYVY, CV_8UC2, CV_8UC3));
#endif
#if QVN_PEER_LIBYUV
  peers.push_back({"libyuv-ARGB", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     libyuv::UYVYToARGB(src, stride(width, 2), dst, stride(width, 4), static_cast<int>(width),
                                        static_cast<int>(height));
                   }});
#endif
#if QVN_PEER_DC1394
  peers.push_back(dc1394(DC1394_COLOR_CODING_YUV422));
#endif
  return peers;
}

std::vector<Peer> yuv411_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_DC1394
  peers.push_back(dc1394(DC1394_COLOR_CODING_YUV411));
#endif
  return peers;
}

std::vector<Peer> swap_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv(cv::COLOR_RGB2BGR, CV_8UC3, CV_8UC3));
#endif
#if QVN_PEER_LIBYUV
  peers.push_back({"libyuv", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     libyuv::RAWToRGB24(src, stride(width, 3), dst, stride(width, 3), static_cast<int>(width),
                                        static_cast<int>(height));
                   }});
#endif
  return peers;
}

std::vector<Peer> grey_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv(cv::COLOR_RGB2GRAY, CV_8UC3, CV_8UC1));
#endif
#if QVN_PEER_LIBYUV
  peers.push_back({"libyuv", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     libyuv::RAWToJ400(src, stride(width, 3), dst, stride(width, 1), static_cast<int>(width),
                                       static_cast<int>(height));
                   }});
#endif
  return peers;
}

std::vector<Peer> grey_to_colour_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back(opencv(cv::COLOR_GRAY2BGR, CV_8UC1, CV_8UC3));
#endif
#if QVN_PEER_LIBYUV
  peers.push_back({"libyuv-ARGB", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     libyuv::J400ToARGB(src, stride(width, 1), dst, stride(width, 4), static_cast<int>(width),
                                        static_cast<int>(height));
                   }});
#endif
  return peers;
}

std::vector<Peer> mono16_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back({"OpenCV", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     const int w = static_cast<int>(width), h = static_cast<int>(height);
                     const cv::Mat in(h, w, CV_16UC1, src);
                     cv::Mat out(h, w, CV_8UC1, dst);
                     in.convertTo(out, CV_8U, 1.0 / 256);
                   }});
#endif
#if QVN_PEER_DC1394
  peers.push_back({"libdc1394", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     dc1394_convert_to_MONO8(src, dst, width, height, DC1394_BYTE_ORDER_UYVY,
                                             DC1394_COLOR_CODING_MONO16, 16);
                   }});
#endif
  return peers;
}

std::vector<Peer> split_peers() {
  std::vector<Peer> peers;
#if QVN_PEER_OPENCV
  peers.push_back({"OpenCV", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     const int w = static_cast<int>(width), h = static_cast<int>(height);
                     const size_t plane = size_t{width} * height;
                     cv::Mat planes[] = {cv::Mat(h, w, CV_8UC1, dst), cv::Mat(h, w, CV_8UC1, dst + plane),
                                         cv::Mat(h, w, CV_8UC1, dst + 2 * plane)};
                     cv::split(cv::Mat(h, w, CV_8UC3, src), planes);
                   }});
#endif
#if QVN_PEER_LIBYUV
  peers.push_back({"libyuv", [](uint8_t* dst, uint8_t* src, uint32_t width, uint32_t height) {
                     const size_t plane = size_t{width} * height;
                     libyuv::SplitRGBPlane(src, stride(width, 3), dst, stride(width, 1), dst + plane,
                                           stride(width, 1), dst + 2 * plane, stride(width, 1),
                                           static_cast<int>(width), static_cast<int>(height));
                   }});
#endif
  return peers;
}
